#include "Device.h"

#include <cstdio>
#include <iterator>

#include "console/Output.h"
#include "database/CallLog.h"

namespace sim {

namespace {

void printEvent(Time time, const Event& event) {
  char seconds[32];
  std::snprintf(seconds, sizeof(seconds), "%9.3f  ", static_cast<double>(time.count()) / 1000);
  Output::self().say(seconds + toString(event) + "\n");
}

void printMiscEvent(const std::string& event) { Output::self().say("           " + event + "\n"); }

/** Feeds the call log, and prints if it is to. */
Phone::Sink observer(const android::sp<DatabaseService>& database, bool verbose) {
  const auto log =
      std::make_shared<CallLog>([database](const CallLogRecord& call) { database->logCall(call); });
  return [log, verbose](Time time, const Event& event) {
    if (verbose) printEvent(time, event);
    log->notice(time, event);
  };
}

#define METHOD(code, name, ...) {code, #name, #__VA_ARGS__},
constexpr MethodRow kCallMethods[] = {
#include <com/qv/CallService.def>
};
constexpr MethodRow kConfigMethods[] = {
#include <com/qv/ConfigService.def>
};
constexpr MethodRow kDatabaseMethods[] = {
#include <com/qv/DatabaseService.def>
};
constexpr MethodRow kMiscMethods[] = {
#include <com/qv/MiscService.def>
};
constexpr MethodRow kRelayMethods[] = {
#include <com/qv/RelayService.def>
};
constexpr MethodRow kExternalKeyMethods[] = {
#include <com/qv/ExternalKeyService.def>
};
constexpr MethodRow kCallEvents[] = {
#include <com/qv/CallEventListener.def>
};
#undef METHOD

constexpr ServiceRow kServiceRows[] = {
    {"call", "com.qv.CallService", kCallMethods, kCallEvents},
    {"config", "com.qv.ConfigService", kConfigMethods, {}},
    {"database", "com.qv.DatabaseService", kDatabaseMethods, {}},
    {"misc", "com.qv.MiscService", kMiscMethods, {}},
    {"relay", "com.qv.RelayService", kRelayMethods, {}},
    {"externalkey", "com.qv.ExternalKeyService", kExternalKeyMethods, {}},
};

}  // namespace

const std::span<const ServiceRow> kServices = kServiceRows;

Device::Device(const Options& options, const std::shared_ptr<Store>& store)
    : settings_(std::make_shared<Settings>(store)),
      databaseService_(new DatabaseService(store)),
      callService_(new CallService(options.speed, observer(databaseService_, options.verbose))),
      configService_(new ConfigService(settings_)),
      miscService_(new MiscService(
          options.speed, options.verbose ? printMiscEvent : [](const std::string&) {})),
      relayService_(new RelayService(options.speed, store)),
      externalKeyService_(new ExternalKeyService(store)),
      services_([this] {
        const android::sp<android::BBinder> served[] = {callService_, configService_, databaseService_,
                                                        miscService_, relayService_,  externalKeyService_};
        std::vector<android::sp<FaultInjector>> services;
        for (size_t i = 0; i < std::size(served); ++i) {
          services.push_back(new FaultInjector(kServiceRows[i].name, served[i], kServiceRows[i].methods,
                                               kServiceRows[i].events));
        }
        return services;
      }()) {
  callService_->distortEvents([weak = android::wp<FaultInjector>(services_[0])](EventType event) {
    const android::sp<FaultInjector> service = weak.promote();
    return service == nullptr ? 0 : service->moreBytesOfEvent(static_cast<uint32_t>(event));
  });
}

std::unique_ptr<Device> Device::start(const Options& options, std::string* error) {
  const std::shared_ptr<Store> store = Store::open(options.stateDirectory, error);
  if (store == nullptr) return nullptr;
  std::unique_ptr<Device> device(new Device(options, store));
  if (!device->load(error) || !device->registerServices(error)) return nullptr;
  return device;
}

bool Device::load(std::string* error) {
  return settings_->load(ConfigService::factoryValues(), error) && databaseService_->prepare(error) &&
         relayService_->load(error) && externalKeyService_->prepare(error);
}

bool Device::registerServices(std::string* error) const {
  for (const android::sp<FaultInjector>& service : services_) {
    if (const android::status_t added = service->revive(); added != android::OK) {
      *error = std::string("can't register ") + service->name() + ": " + android::statusToString(added);
      return false;
    }
  }
  return true;
}

uint64_t Device::kill(FaultInjector& service) {
  const uint64_t deaths = service.die();
  constexpr std::chrono::milliseconds kAtOnce{0};
  if (service.name() == std::string_view("com.qv.CallService")) callService_->stopEvents(kAtOnce);
  if (service.name() == std::string_view("com.qv.MiscService")) miscService_->stopEvents(kAtOnce);
  return deaths;
}

void Device::stopEvents(std::chrono::milliseconds patience) {
  callService_->stopEvents(patience);
  miscService_->stopEvents(patience);
}

}  // namespace sim
