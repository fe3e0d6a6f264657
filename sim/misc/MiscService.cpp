#include "misc/MiscService.h"

#include "common/Identity.h"
#include "common/Records.h"
#include "events/Deliver.h"
#include "misc/MiscRecords.h"

namespace sim {

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::IAteEventListener;
using com::qv::IMiscEventListener;

/** The arguments of a listener's method. */
struct Arguments {
  std::tuple<> operator()(std::monostate) const { return {}; }
  template <typename Value>
  std::tuple<Value> operator()(const Value& value) const {
    return {value};
  }
};

template <typename Listener, typename Method, typename Payload>
Status send(Listener& listener, Method method, const Payload& payload) {
  return std::visit([&](const auto& value) { return deliver(listener, method, Arguments{}(value)); },
                    payload);
}

Status send(IAteEventListener& listener, const AteEvent& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case AteEventType::name:      \
    return send(listener, &IAteEventListener::name, event.payload);
#include <com/qv/AteEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

Status send(IMiscEventListener& listener, const MiscEvent& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case MiscEventType::name:     \
    return send(listener, &IMiscEventListener::name, event.payload);
#include <com/qv/MiscEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

template <typename Listener>
auto publisher(Dispatcher<Listener>& dispatcher, const std::function<void(const std::string&)>& trace) {
  return [&dispatcher, trace](const auto& event) {
    trace(toString(event));
    dispatcher.publish([event](Listener& listener) { return send(listener, event); });
  };
}

constexpr int32_t kUdiskMiB = 16'000;
constexpr int32_t kUsedMiB = 12;
constexpr int32_t kKibPerSecond = 16;
constexpr int32_t kMulticastPort = 5004;

}  // namespace

#define METHOD(code, name, ...) SIM_FORWARD(MiscMethods, device_, name __VA_OPT__(, ) __VA_ARGS__)
#include <com/qv/MiscService.def>
#undef METHOD

MiscMethods::MiscMethods(double speed, const std::function<void(const std::string&)>& trace)
    : device_(speed, MiscDevice::Sinks{.ate = publisher(ateListeners_, trace),
                                       .misc = publisher(miscListeners_, trace)}) {}

void MiscService::stopEvents(std::chrono::milliseconds timeout) {
  ateListeners_.stop(timeout);
  miscListeners_.stop(timeout);
}

Status MiscService::getAteDisplay(CommonParcelable* info) {
  const MiscDevice::TestInfo test = device_.use([](MiscDevice& device) { return device.testInfo(); });
  TestInfoRecord record{};
  record.running = test.running;
  record.test = test.test;
  record.passed = test.passed;
  record.failed = test.failed;
  copyText(record.text, test.text);
  copyText(record.device, identity::kName);
  *info = pack(record);
  return Status::ok();
}

Status MiscService::registerAteEventListener(const android::sp<IAteEventListener>& listener) {
  return ateListeners_.subscribeCaller(listener);
}
Status MiscService::registerMiscEventListener(const android::sp<IMiscEventListener>& listener) {
  return miscListeners_.subscribeCaller(listener);
}

Status MiscService::getUdiskCapacity(CommonParcelable* capacity) {
  if (device_.use([](MiscDevice& device) { return device.getUdiskStatus(); }) == 0) {
    return refuse("There is no USB disk", Status::EX_ILLEGAL_STATE);
  }
  UdiskCapacityRecord record{};
  record.totalMiB = kUdiskMiB;
  record.usedMiB = kUsedMiB;
  record.freeMiB = kUdiskMiB - kUsedMiB;
  copyText(record.path, "/mnt/udisk");
  copyText(record.label, "RECORDINGS");
  *capacity = pack(record);
  return Status::ok();
}

Status MiscService::getUdiskRecordsFiles(std::vector<CommonParcelable>* files) {
  if (device_.use([](MiscDevice& device) { return device.getUdiskStatus(); }) == 0) return Status::ok();
  for (const Recording& recording : kRecordings) {
    RecordingRecord record{};
    record.seconds = static_cast<int32_t>(std::chrono::ceil<std::chrono::seconds>(recording.length).count());
    record.kib = record.seconds * kKibPerSecond;
    copyText(record.file, recording.file);
    files->push_back(pack(record));
  }
  return Status::ok();
}

Status MiscService::getMqttMulticastInfo(CommonParcelable* info) {
  const auto action = device_.use([](MiscDevice& device) { return device.multicast(); });
  if (!action) return refuse("There is no multicast", Status::EX_ILLEGAL_STATE);
  MulticastRecord record{};
  copyText(record.action, *action);
  copyText(record.address, "239.0.2.1");
  record.port = kMulticastPort;
  record.priority = 1;
  *info = pack(record);
  return Status::ok();
}

}  // namespace sim
