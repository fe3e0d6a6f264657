#include "misc/MiscDevice.h"

#include <algorithm>

namespace sim {

namespace {

constexpr const char* kAteNames[] = {
#define METHOD(code, name, ...) #name,
#include <com/qv/AteEventListener.def>
#undef METHOD
};
constexpr const char* kMiscNames[] = {
#define METHOD(code, name, ...) #name,
#include <com/qv/MiscEventListener.def>
#undef METHOD
};

}  // namespace

std::string toString(const AteEvent& event) {
  const std::string name = kAteNames[static_cast<size_t>(event.type) - 1];
  const auto* text = std::get_if<std::string>(&event.payload);
  return text == nullptr ? name : name + " '" + *text + "'";
}

std::string toString(const MiscEvent& event) {
  const std::string name = kMiscNames[static_cast<size_t>(event.type) - 1];
  const auto* value = std::get_if<int32_t>(&event.payload);
  return value == nullptr ? name : name + " " + std::to_string(*value);
}

/* Test mode */

void MiscDevice::showContext(const std::string& text) {
  info_.text = text;
  sinks_.ate({AteEventType::updateContextEvent, text});
}

Refusal MiscDevice::localAteStart(int32_t test) {
  if (info_.running) return "A test is running";
  if (test < kAll || test > kRestart) return "There is no such test";
  info_ = {.running = true, .test = test, .passed = 0, .failed = 0, .text = {}};
  if (test == kAll) {
    tests_ = {kRestart, kTouchScreen, kDisplay};
  } else {
    tests_ = {static_cast<Test>(test)};
  }
  emit(AteEventType::onlineAteStartedEvent);
  runNextTest();
  return {};
}

void MiscDevice::runNextTest() {
  if (tests_.empty()) {
    showContext(info_.failed == 0 ? "Passed" : "Failed");
    return endTestMode();
  }
  const Test test = tests_.back();
  tests_.pop_back();
  switch (test) {
    case kDisplay:
      showContext("Display");
      return switchLcd(kLcdSwitches);
    case kTouchScreen:
      showContext("Touch screen");
      touching_ = true;
      emit(AteEventType::touchScreenStartEvent);
      testTimer_ = timers_.after(kTouchLimit, [this] { ateTouchScreenResult(kFailed, 0); });
      return;
    default:
      showContext("Restart");
      emit(AteEventType::systemRebootEvent);
      return finishTest(true);
  }
}

void MiscDevice::switchLcd(int32_t times) {
  if (times == 0) return finishTest(true);
  testTimer_ = timers_.after(kLcdTime, [this, times] {
    emit(AteEventType::lcdSwitchEvent);
    switchLcd(times - 1);
  });
}

void MiscDevice::finishTest(bool passed) {
  ++(passed ? info_.passed : info_.failed);
  runNextTest();
}

Refusal MiscDevice::ateTouchScreenResult(int32_t result, int32_t) {
  if (!std::exchange(touching_, false)) return "The touch screen is not being tested";
  timers_.cancel(testTimer_);
  emit(AteEventType::touchScreenStopEvent);
  showContext(result == kPassed ? "Touch screen passed" : "Touch screen failed");
  finishTest(result == kPassed);
  return {};
}

Refusal MiscDevice::localAteStop(int32_t) {
  if (!info_.running) return "No test is running";
  timers_.cancel(testTimer_);
  if (std::exchange(touching_, false)) emit(AteEventType::touchScreenStopEvent);
  endTestMode();
  return {};
}

void MiscDevice::endTestMode() {
  tests_.clear();
  info_.running = false;
  emit(AteEventType::onlineAteStopedEvent);
}

/* Display */

Refusal MiscDevice::switchDsskeyPage(int32_t module, int32_t page) {
  constexpr int32_t kPhoneItself = 0;
  if (module != kPhoneItself || page < 0 || page >= kPages) return "There is no such page";
  page_ = page;
  return {};
}

void MiscDevice::backlightStartPresetting() {
  if (!presetLevel_) presetLevel_ = kDefaultLevel;
}

Refusal MiscDevice::balcklightPresetLevel(int32_t level) {
  if (!presetLevel_) return "Presetting has not been started";
  if (level < 1 || level > kMaxLevel) return "There is no such level";
  presetLevel_ = level;
  return {};
}

void MiscDevice::requestScreenshot() {
  screenshotRequested_ = true;
  sinks_.misc({MiscEventType::webscreenshot, {}});
}

void MiscDevice::notifyLcdScreenShotReady() {
  // No event for an answer: an application that answers each event would cause an endless loop.
  if (!std::exchange(screenshotRequested_, false)) requestScreenshot();
}

/* USB disk */

void MiscDevice::setUdisk(bool present) {
  hasUdisk_ = present;
  if (!present) playRecFileStop();
}

int32_t MiscDevice::playRecFileStart(std::string_view file) {
  const auto found = std::ranges::find(kRecordings, file, &Recording::file);
  if (!hasUdisk_ || found == kRecordings.end()) return kRefused;
  playState_ = kPaused;
  playLeft_ = found->length;
  playRecFileResume();
  return 0;
}

void MiscDevice::playRecFileStop() {
  timers_.cancel(playTimer_);
  playState_ = kStopped;
}

Refusal MiscDevice::playRecFilePause() {
  if (playState_ != kPlaying) return "Nothing is being played";
  timers_.cancel(playTimer_);
  playState_ = kPaused;
  playLeft_ = playEnd_ - timers_.now();
  return {};
}

Refusal MiscDevice::playRecFileResume() {
  if (playState_ != kPaused) return "Nothing is paused";
  timers_.cancel(playTimer_);
  playState_ = kPlaying;
  playEnd_ = timers_.now() + playLeft_;
  playTimer_ = timers_.after(playLeft_, [this] { playState_ = kStopped; });
  return {};
}

std::string MiscDevice::describe() const {
  static constexpr const char* kStates[] = {"stopped", "playing", "paused"};
  return "page " + std::to_string(page_) + ", backlight " + std::to_string(backlightLevel()) +
         (backlightKept_ ? " (kept on)" : "") + ", USB disk " + (hasUdisk_ ? "in" : "out") + ", recording " +
         kStates[playState_] + ", test " + (info_.running ? "running" : "off") + ", multicast " +
         multicast_.value_or("none") + "\n";
}

}  // namespace sim
