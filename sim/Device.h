#pragma once

#include <chrono>
#include <memory>
#include <string>
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

/** All services of the device, and their state. */
class Device {
 public:
  /** Null, with the reason in `error`, if reading the state or registering a service fails. */
  static std::unique_ptr<Device> start(const Options& options, std::string* error);

  RealTime<Phone>& phone() { return callService_->phone(); }
  RealTime<MiscDevice>& misc() { return miscService_->device(); }
  RealTime<Relays>& relays() { return relayService_->relays(); }
  DatabaseService& database() { return *databaseService_; }

  const std::vector<android::sp<FaultInjector>>& services() const { return services_; }
  FaultInjector& service(const vesk::interfaces::Interface& interface) const;
  /** Simulates the death of the service's process, and ends the subscriptions of its listeners.
   * Returns the number of deaths so far. */
  uint64_t kill(FaultInjector& service);

  /** Stops all events; waits for the listeners' current calls until the timeout. */
  void stopEvents(std::chrono::milliseconds timeout);

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
  /** In the order of vesk::interfaces::services(). */
  const std::vector<android::sp<FaultInjector>> services_;
};

}  // namespace sim
