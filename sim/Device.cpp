#include "Device.h"

#include <binder/IServiceManager.h>

#include <cstdio>

#include "database/CallLog.h"

namespace sim {

namespace {

void printEvent(Time time, const Event& event) {
  std::printf("%9.3f  %s\n", static_cast<double>(time.count()) / 1000, toString(event).c_str());
  std::fflush(stdout);
}

void printMiscEvent(const std::string& event) {
  std::printf("           %s\n", event.c_str());
  std::fflush(stdout);
}

/** Feeds the call log, and prints if it is to. */
Phone::Sink observer(const android::sp<DatabaseService>& database, bool verbose) {
  const auto log =
      std::make_shared<CallLog>([database](const CallLogRecord& call) { database->logCall(call); });
  return [log, verbose](Time time, const Event& event) {
    if (verbose) printEvent(time, event);
    log->notice(time, event);
  };
}

}  // namespace

Device::Device(const Options& options, const std::shared_ptr<Store>& store)
    : settings_(std::make_shared<Settings>(store)),
      databaseService_(new DatabaseService(store)),
      callService_(new CallService(options.speed, observer(databaseService_, options.verbose))),
      configService_(new ConfigService(settings_)),
      miscService_(new MiscService(
          options.speed, options.verbose ? printMiscEvent : [](const std::string&) {})),
      relayService_(new RelayService(options.speed, store)),
      externalKeyService_(new ExternalKeyService(store)) {}

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
  const struct {
    const char* name;
    android::sp<android::IBinder> service;
  } services[] = {
      {"com.qv.CallService", callService_},         {"com.qv.ConfigService", configService_},
      {"com.qv.DatabaseService", databaseService_}, {"com.qv.MiscService", miscService_},
      {"com.qv.RelayService", relayService_},       {"com.qv.ExternalKeyService", externalKeyService_},
  };
  for (const auto& [name, service] : services) {
    const android::status_t added =
        android::defaultServiceManager()->addService(android::String16(name), service);
    if (added != android::OK) {
      *error = std::string("can't register ") + name + ": " + android::statusToString(added);
      return false;
    }
  }
  return true;
}

void Device::stopEvents(std::chrono::milliseconds patience) {
  callService_->stopEvents(patience);
  miscService_->stopEvents(patience);
}

}  // namespace sim
