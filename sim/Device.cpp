#include "Device.h"

#include <cstdio>

#include "console/Output.h"
#include "database/CallLog.h"

namespace sim {

namespace {

using vesk::interfaces::Interface;

void printEvent(Time time, const Event& event) {
  char seconds[32];
  std::snprintf(seconds, sizeof(seconds), "%9.3f  ", static_cast<double>(time.count()) / 1000);
  Output::self().say(seconds + toString(event) + "\n");
}

void printMiscEvent(const std::string& event) { Output::self().say("           " + event + "\n"); }

/** Feeds the call log and, if `verbose`, the output. */
Phone::Sink observer(const android::sp<DatabaseService>& database, bool verbose) {
  const auto log =
      std::make_shared<CallLog>([database](const CallLogRecord& call) { database->logCall(call); });
  return [log, verbose](Time time, const Event& event) {
    if (verbose) printEvent(time, event);
    log->notice(time, event);
  };
}

std::vector<android::sp<FaultInjector>> injectors(
    const std::vector<android::sp<android::BBinder>>& services) {
  std::vector<android::sp<FaultInjector>> all;
  for (const Interface& interface : vesk::interfaces::services()) {
    all.push_back(new FaultInjector(interface, services[all.size()]));
  }
  return all;
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
      externalKeyService_(new ExternalKeyService(store)),
      services_(injectors({callService_, configService_, databaseService_, miscService_, relayService_,
                           externalKeyService_})) {
  const android::wp<FaultInjector> injector(services_[0]);
  callService_->corruptEvents([injector](EventType type) {
    const android::sp<FaultInjector> call = injector.promote();
    if (call == nullptr) return 0;
    return call->takeExtraBytes(*eventsOf(call->interface())->find(static_cast<uint32_t>(type)));
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
    if (const android::status_t added = service->registerService(); added != android::OK) {
      *error = "can't register " + service->interface().serviceName() + ": " + android::statusToString(added);
      return false;
    }
  }
  return true;
}

FaultInjector& Device::service(const Interface& interface) const {
  return *services_[static_cast<size_t>(&interface - vesk::interfaces::services().data())];
}

uint64_t Device::kill(FaultInjector& service) {
  const uint64_t deaths = service.die();
  constexpr std::chrono::milliseconds kAtOnce{0};
  const std::string_view name = service.interface().name;
  if (name == "call") callService_->stopEvents(kAtOnce);
  if (name == "misc") miscService_->stopEvents(kAtOnce);
  return deaths;
}

void Device::stopEvents(std::chrono::milliseconds timeout) {
  callService_->stopEvents(timeout);
  miscService_->stopEvents(timeout);
}

}  // namespace sim
