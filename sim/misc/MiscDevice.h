#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "clock/TimerQueue.h"
#include "common/Service.h"
#include "misc/MiscEvent.h"

namespace sim {

/** A recording on the USB disk. */
struct Recording {
  std::string_view file;
  Time length;
};

inline constexpr std::array kRecordings = {
    Recording{"call-200.wav", Time(2000)},
    Recording{"call-201.wav", Time(3000)},
    Recording{"doorbell.wav", Time(60'000)},
};

enum PlayState : int32_t { kStopped = 0, kPlaying = 1, kPaused = 2 };

/**
 * The model of the misc service: test mode, display, USB disk, multicast. The methods of the
 * service forward to those with the same names. A refusal changes nothing. Each event goes to a
 * sink, in order, during the call that causes it; sinks must not call this object. Time passes only
 * in advanceTo(). Not thread-safe.
 */
class MiscDevice {
 public:
  struct Sinks {
    std::function<void(const AteEvent&)> ate;
    std::function<void(const MiscEvent&)> misc;
  };

  /** The tests; kAll runs all of them in turn. */
  enum Test : int32_t { kAll = 0, kDisplay = 1, kTouchScreen = 2, kRestart = 3 };
  enum TouchResult : int32_t { kPassed = 0, kFailed = 1 };

  static constexpr int32_t kLcdSwitches = 3;
  static constexpr Time kLcdTime{500};
  static constexpr Time kTouchLimit{10'000};
  static constexpr int32_t kPages = 4;
  static constexpr int32_t kMaxLevel = 10;

  explicit MiscDevice(Sinks sinks) : sinks_(std::move(sinks)) {}
  MiscDevice(const MiscDevice&) = delete;
  MiscDevice& operator=(const MiscDevice&) = delete;

  std::optional<Time> nextTimer() const { return timers_.next(); }
  void advanceTo(Time time) { timers_.advanceTo(time); }

  struct TestInfo {
    bool running = false;
    int32_t test = kAll;
    int32_t passed = 0;
    int32_t failed = 0;
    std::string text;
  };

  Refusal localAteStart(int32_t test);
  Refusal localAteStop(int32_t);
  /** Any other result than kPassed is a failure. */
  Refusal ateTouchScreenResult(int32_t result, int32_t);
  const TestInfo& testInfo() const { return info_; }

  Refusal switchDsskeyPage(int32_t module, int32_t page);
  void backlightAlwaysActive(bool on) { backlightKept_ = on; }
  void backlightStartPresetting();
  Refusal balcklightPresetLevel(int32_t level);
  void backlightStopPresetting() { presetLevel_.reset(); }
  /** The current brightness. */
  int32_t backlightLevel() const { return presetLevel_.value_or(kDefaultLevel); }
  void notifyLcdScreenShotReady();

  void setUdisk(bool present);
  /** 1 with a disk, 0 without. The C function returns 3 if the call fails. */
  int32_t getUdiskStatus() const { return hasUdisk_; }
  int32_t playRecFileStart(std::string_view file);
  void playRecFileStop();
  Refusal playRecFilePause();
  Refusal playRecFileResume();
  int32_t getPlayRecFileState() const { return playState_; }

  void setMulticast(std::optional<std::string> action) { multicast_ = std::move(action); }
  const std::optional<std::string>& multicast() const { return multicast_; }
  bool hasMqttMulticastInfo() const { return multicast_.has_value(); }

  /* Actions of the user, or of the web interface. */
  void requestScreenshot();
  void ring(int32_t value) { sinks_.misc({MiscEventType::wkRingHdl, value}); }
  void cancelScan() { sinks_.misc({MiscEventType::wkScanCancelHdl, {}}); }

  /** One line for the user. */
  std::string describe() const;

 private:
  static constexpr int32_t kDefaultLevel = 5;

  void emit(AteEventType type) { sinks_.ate({type, {}}); }
  void showContext(const std::string& text);
  void runNextTest();
  void switchLcd(int32_t times);
  void finishTest(bool passed);
  void endTestMode();

  const Sinks sinks_;
  TimerQueue timers_;

  TestInfo info_;
  /** The tests that have not started, the next one last. */
  std::vector<Test> tests_;
  bool touching_ = false;
  TimerQueue::Id testTimer_ = 0;

  int32_t page_ = 0;
  bool backlightKept_ = false;
  /** Set during presetting. */
  std::optional<int32_t> presetLevel_;
  bool screenshotRequested_ = false;

  bool hasUdisk_ = true;
  PlayState playState_ = kStopped;
  TimerQueue::Id playTimer_ = 0;
  /** While playing: the time at which it ends. */
  Time playEnd_{0};
  /** While paused: the rest of the recording. */
  Time playLeft_{0};

  std::optional<std::string> multicast_ = "page-all";
};

}  // namespace sim
