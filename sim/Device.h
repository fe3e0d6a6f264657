#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Options.h"
#include "call/CallService.h"
#include "config/ConfigService.h"
#include "database/DatabaseService.h"
#include "externalkey/ExternalKeyService.h"
#include "faults/FaultInjector.h"
#include "misc/MiscService.h"
#include "relay/RelayService.h"
#include "store/Store.h"

namespace sim {

/** The methods of a service, by its short name: call, config, database, misc, relay or externalkey. Empty if
 * there is none. */
struct ServiceRow {
  const char* shortName;
  const char* name;
  std::span<const MethodRow> methods;
  /** What its listeners are told, as far as records come with it. */
  std::span<const MethodRow> events;
};
extern const std::span<const ServiceRow> kServices;

/** All services of the device, and what they keep. */
class Device {
 public:
  /** Null, with the reason in `error`, if the state can't be read or a service can't be registered. */
  static std::unique_ptr<Device> start(const Options& options, std::string* error);

  RealTime<Phone>& phone() { return callService_->phone(); }
  RealTime<MiscDevice>& misc() { return miscService_->device(); }

  DatabaseService& database() { return *databaseService_; }
  RealTime<Relays>& relays() { return relayService_->relays(); }

  const std::vector<android::sp<FaultInjector>>& services() const { return services_; }
  /** Has a service die for its callers; its listeners hear no more of it. */
  uint64_t kill(FaultInjector& service);

  /** No more events; waits until no listener is being called, or the time is over. */
  void stopEvents(std::chrono::milliseconds patience);

 private:
  Device(const Options& options, const std::shared_ptr<Store>& store);

  bool load(std::string* error);
  bool registerServices(std::string* error) const;

  const std::shared_ptr<Settings> settings_;
  const android::sp<DatabaseService> databaseService_;
  const android::sp<CallService> callService_;
  const android::sp<ConfigService> configService_;
  const android::sp<MiscService> miscService_;
  const android::sp<RelayService> relayService_;
  const android::sp<ExternalKeyService> externalKeyService_;
  const std::vector<android::sp<FaultInjector>> services_;
};

}  // namespace sim
