#include "misc/MiscDevice.h"

#include <algorithm>

namespace sim {

std::string toString(const AteEvent& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case AteEventType::name:      \
    return event.text.empty() ? #name : #name " '" + event.text + "'";
#include <com/qv/AteEventListener.def>
#undef METHOD
  }
  return "?";
}

std::string toString(const MiscEvent& event) {
  switch (event.type) {
    case MiscEventType::webscreenshot:
      return "webscreenshot";
    case MiscEventType::wkRingHdl:
      return "wkRingHdl " + std::to_string(event.value);
    case MiscEventType::wkScanCancelHdl:
      return "wkScanCancelHdl";
  }
  return "?";
}

/* Test mode */

void MiscDevice::show(const std::string& text) {
  info_.text = text;
  sinks_.ate({AteEventType::updateContextEvent, text});
}

bool MiscDevice::startTest(int32_t test) {
  if (info_.running || test < kAll || test > kRestart) return false;
  info_ = {.running = true, .test = test, .passed = 0, .failed = 0, .text = {}};
  if (test == kAll) {
    tests_ = {kRestart, kTouchScreen, kDisplay};
  } else {
    tests_ = {static_cast<Test>(test)};
  }
  tell(AteEventType::onlineAteStartedEvent);
  runNextTest();
  return true;
}

void MiscDevice::runNextTest() {
  if (tests_.empty()) {
    show(info_.failed == 0 ? "Passed" : "Failed");
    return endTest();
  }
  const Test test = tests_.back();
  tests_.pop_back();
  switch (test) {
    case kDisplay:
      show("Display");
      return switchLcd(kLcdSwitches);
    case kTouchScreen:
      show("Touch screen");
      touching_ = true;
      tell(AteEventType::touchScreenStartEvent);
      testTimer_ = timers_.after(kTouchLimit, [this] { touchScreenResult(false); });
      return;
    default:
      show("Restart");
      tell(AteEventType::systemRebootEvent);
      return finish(true);
  }
}

void MiscDevice::switchLcd(int32_t times) {
  if (times == 0) return finish(true);
  testTimer_ = timers_.after(kLcdTime, [this, times] {
    tell(AteEventType::lcdSwitchEvent);
    switchLcd(times - 1);
  });
}

void MiscDevice::finish(bool passed) {
  ++(passed ? info_.passed : info_.failed);
  runNextTest();
}

bool MiscDevice::touchScreenResult(bool passed) {
  if (!std::exchange(touching_, false)) return false;
  timers_.cancel(testTimer_);
  tell(AteEventType::touchScreenStopEvent);
  show(passed ? "Touch screen passed" : "Touch screen failed");
  finish(passed);
  return true;
}

bool MiscDevice::stopTest() {
  if (!info_.running) return false;
  timers_.cancel(testTimer_);
  if (std::exchange(touching_, false)) tell(AteEventType::touchScreenStopEvent);
  endTest();
  return true;
}

void MiscDevice::endTest() {
  tests_.clear();
  info_.running = false;
  tell(AteEventType::onlineAteStopedEvent);
}

/* Display */

bool MiscDevice::switchPage(int32_t module, int32_t page) {
  constexpr int32_t kPhoneItself = 0;
  if (module != kPhoneItself || page < 0 || page >= kPages) return false;
  page_ = page;
  return true;
}

void MiscDevice::startPresetting() {
  if (!presetLevel_) presetLevel_ = kDefaultLevel;
}

bool MiscDevice::presetLevel(int32_t level) {
  if (!presetLevel_ || level < 1 || level > kMaxLevel) return false;
  presetLevel_ = level;
  return true;
}

void MiscDevice::askForScreenshot() {
  screenshotAsked_ = true;
  sinks_.misc({MiscEventType::webscreenshot});
}

void MiscDevice::screenshotReady() {
  // An application that answers the event with another notice must not go round in circles.
  if (!std::exchange(screenshotAsked_, false)) askForScreenshot();
}

/* USB disk */

void MiscDevice::putUdisk(bool present) {
  hasUdisk_ = present;
  if (!present) stopPlaying();
}

bool MiscDevice::play(std::string_view file) {
  const auto found = std::ranges::find(kRecordings, file, &Recording::file);
  if (!hasUdisk_ || found == kRecordings.end()) return false;
  playState_ = PlayState::kPaused;
  playLeft_ = found->length;
  return resume();
}

void MiscDevice::stopPlaying() {
  timers_.cancel(playTimer_);
  playState_ = PlayState::kStopped;
}

bool MiscDevice::pause() {
  if (playState_ != PlayState::kPlaying) return false;
  timers_.cancel(playTimer_);
  playState_ = PlayState::kPaused;
  playLeft_ = playEnd_ - timers_.now();
  return true;
}

bool MiscDevice::resume() {
  if (playState_ != PlayState::kPaused) return false;
  timers_.cancel(playTimer_);
  playState_ = PlayState::kPlaying;
  playEnd_ = timers_.now() + playLeft_;
  playTimer_ = timers_.after(playLeft_, [this] { playState_ = PlayState::kStopped; });
  return true;
}

std::string MiscDevice::describe() const {
  static constexpr const char* kPlaying[] = {"stopped", "playing", "paused"};
  return "page " + std::to_string(page_) + ", backlight " + std::to_string(backlightLevel()) +
         (backlightKept_ ? " (kept on)" : "") + ", USB disk " + (hasUdisk_ ? "in" : "out") + ", recording " +
         kPlaying[static_cast<int32_t>(playState_)] + ", test " + (info_.running ? "running" : "off") +
         ", multicast " + multicast_.value_or("none");
}

}  // namespace sim
