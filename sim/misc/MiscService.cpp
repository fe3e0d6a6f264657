#include "misc/MiscService.h"

#include <binder/IPCThreadState.h>

#include "common/Identity.h"
#include "common/Records.h"
#include "misc/MiscRecords.h"
#include "phone/Phone.h"

namespace sim {

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::IAteEventListener;
using com::qv::IMiscEventListener;

/** The answers of getUdiskStatus(); a call that fails gives 3. */
constexpr int32_t kNoUdisk = 0;
constexpr int32_t kUdiskReady = 1;

Status send(IAteEventListener& listener, Status (IAteEventListener::*method)(), const AteEvent&) {
  return (listener.*method)();
}
Status send(IAteEventListener& listener, Status (IAteEventListener::*method)(const std::string&),
            const AteEvent& event) {
  return (listener.*method)(event.text);
}
Status send(IMiscEventListener& listener, Status (IMiscEventListener::*method)(), const MiscEvent&) {
  return (listener.*method)();
}
Status send(IMiscEventListener& listener, Status (IMiscEventListener::*method)(int32_t),
            const MiscEvent& event) {
  return (listener.*method)(event.value);
}

Status send(IAteEventListener& listener, const AteEvent& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case AteEventType::name:      \
    return send(listener, &IAteEventListener::name, event);
#include <com/qv/AteEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

Status send(IMiscEventListener& listener, const MiscEvent& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case MiscEventType::name:     \
    return send(listener, &IMiscEventListener::name, event);
#include <com/qv/MiscEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

template <typename Listener>
Status subscribe(Dispatcher<Listener>& dispatcher, const android::sp<Listener>& listener) {
  if (listener == nullptr) return Status::fromExceptionCode(Status::EX_NULL_POINTER, "There is no listener");
  dispatcher.subscribe(android::IPCThreadState::self()->getCallingPid(), listener);
  return Status::ok();
}

Status done(bool accepted, const char* whyNot) {
  return accepted ? Status::ok() : Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, whyNot);
}

/** The same two whenever there is a disk. */
constexpr int32_t kUdiskMiB = 16'000;
constexpr int32_t kUsedMiB = 12;
constexpr int32_t kKibPerSecond = 16;
constexpr int32_t kMulticastPort = 5004;

}  // namespace

MiscService::MiscService(double speed, const std::function<void(const std::string&)>& trace)
    : device_(speed, MiscDevice::Sinks{
                         .ate =
                             [this, trace](const AteEvent& event) {
                               trace(toString(event));
                               ateListeners_.publish(
                                   [event](IAteEventListener& listener) { return send(listener, event); });
                             },
                         .misc =
                             [this, trace](const MiscEvent& event) {
                               trace(toString(event));
                               miscListeners_.publish(
                                   [event](IMiscEventListener& listener) { return send(listener, event); });
                             },
                     }) {}

void MiscService::stopEvents(std::chrono::milliseconds patience) {
  ateListeners_.stop(patience);
  miscListeners_.stop(patience);
}

/* Test mode */

Status MiscService::localAteStart(int32_t test) {
  return done(device_.use([&](MiscDevice& device) { return device.startTest(test); }),
              "There is no such test, or one runs");
}
Status MiscService::localAteStop(int32_t) {
  return done(device_.use([](MiscDevice& device) { return device.stopTest(); }), "No test runs");
}
Status MiscService::ateTouchScreenResult(int32_t result, int32_t) {
  constexpr int32_t kPassed = 0;
  return done(device_.use([&](MiscDevice& device) { return device.touchScreenResult(result == kPassed); }),
              "The touch screen is not being tested");
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
  return subscribe(ateListeners_, listener);
}
Status MiscService::registerMiscEventListener(const android::sp<IMiscEventListener>& listener) {
  return subscribe(miscListeners_, listener);
}

/* Display */

Status MiscService::switchDsskeyPage(int32_t module, int32_t page) {
  return done(device_.use([&](MiscDevice& device) { return device.switchPage(module, page); }),
              "There is no such page");
}
Status MiscService::backlightAlwaysActive(bool on) {
  device_.use([&](MiscDevice& device) { device.keepBacklight(on); });
  return Status::ok();
}
Status MiscService::backlightStartPresetting() {
  device_.use([](MiscDevice& device) { device.startPresetting(); });
  return Status::ok();
}
Status MiscService::balcklightPresetLevel(int32_t level) {
  return done(device_.use([&](MiscDevice& device) { return device.presetLevel(level); }),
              "There is no such level, or levels are not being tried");
}
Status MiscService::backlightStopPresetting() {
  device_.use([](MiscDevice& device) { device.stopPresetting(); });
  return Status::ok();
}
Status MiscService::notifyLcdScreenShotReady() {
  device_.use([](MiscDevice& device) { device.screenshotReady(); });
  return Status::ok();
}

/* USB disk */

Status MiscService::getUdiskStatus(int32_t* status) {
  *status = device_.use([](MiscDevice& device) { return device.hasUdisk(); }) ? kUdiskReady : kNoUdisk;
  return Status::ok();
}
Status MiscService::getUdiskCapacity(CommonParcelable* capacity) {
  if (!device_.use([](MiscDevice& device) { return device.hasUdisk(); })) {
    return done(false, "There is no USB disk");
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
  if (!device_.use([](MiscDevice& device) { return device.hasUdisk(); })) return Status::ok();
  for (const Recording& recording : kRecordings) {
    RecordingRecord record{};
    record.seconds = static_cast<int32_t>(std::chrono::ceil<std::chrono::seconds>(recording.length).count());
    record.kib = record.seconds * kKibPerSecond;
    copyText(record.file, recording.file);
    files->push_back(pack(record));
  }
  return Status::ok();
}
Status MiscService::playRecFileStart(const std::string& file, int32_t* result) {
  *result = device_.use([&](MiscDevice& device) { return device.play(file); }) ? 0 : kRefused;
  return Status::ok();
}
Status MiscService::playRecFileStop() {
  device_.use([](MiscDevice& device) { device.stopPlaying(); });
  return Status::ok();
}
Status MiscService::playRecFilePause() {
  return done(device_.use([](MiscDevice& device) { return device.pause(); }), "Nothing plays");
}
Status MiscService::playRecFileResume() {
  return done(device_.use([](MiscDevice& device) { return device.resume(); }), "Nothing is paused");
}
Status MiscService::getPlayRecFileState(int32_t* state) {
  *state = static_cast<int32_t>(device_.use([](MiscDevice& device) { return device.playState(); }));
  return Status::ok();
}

/* MQTT multicast */

Status MiscService::getMqttMulticastInfo(CommonParcelable* info) {
  const auto action = device_.use([](MiscDevice& device) { return device.multicast(); });
  if (!action) return done(false, "There is no multicast");
  MulticastRecord record{};
  copyText(record.action, *action);
  copyText(record.address, "239.0.2.1");
  record.port = kMulticastPort;
  record.priority = 1;
  *info = pack(record);
  return Status::ok();
}
Status MiscService::hasMqttMulticastInfo(bool* has) {
  *has = device_.use([](MiscDevice& device) { return device.multicast().has_value(); });
  return Status::ok();
}

}  // namespace sim
