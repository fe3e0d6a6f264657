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

namespace sim {

/** Named as the methods of the listeners are. */
enum class AteEventType {
#define METHOD(code, name, ...) name = (code),
#include <com/qv/AteEventListener.def>
#undef METHOD
};
enum class MiscEventType {
#define METHOD(code, name, ...) name = (code),
#include <com/qv/MiscEventListener.def>
#undef METHOD
};

struct AteEvent {
  AteEventType type;
  /** For updateContextEvent. */
  std::string text;

  bool operator==(const AteEvent&) const = default;
};

struct MiscEvent {
  MiscEventType type;
  /** For wkRingHdl. */
  int32_t value = 0;

  bool operator==(const MiscEvent&) const = default;
};

std::string toString(const AteEvent& event);
std::string toString(const MiscEvent& event);

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

enum class PlayState : int32_t { kStopped = 0, kPlaying = 1, kPaused = 2 };

/**
 * What of the device the misc service serves: test mode, display, USB disk, multicast. Everything that
 * happens goes to the sinks, in order and during the call that made it happen; they must not call back. Time
 * passes only in advanceTo(). Not for use by several threads at once.
 */
class MiscDevice {
 public:
  struct Sinks {
    std::function<void(const AteEvent&)> ate;
    std::function<void(const MiscEvent&)> misc;
  };

  /** The tests; kAll is all of them, one after the other. */
  enum Test : int32_t { kAll = 0, kDisplay = 1, kTouchScreen = 2, kRestart = 3 };

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

  /* False if it is refused; then nothing has changed. */
  bool startTest(int32_t test);
  bool stopTest();
  bool touchScreenResult(bool passed);
  const TestInfo& testInfo() const { return info_; }

  bool switchPage(int32_t module, int32_t page);
  void keepBacklight(bool on) { backlightKept_ = on; }
  void startPresetting();
  bool presetLevel(int32_t level);
  void stopPresetting() { presetLevel_.reset(); }
  /** What the screen shows now. */
  int32_t backlightLevel() const { return presetLevel_.value_or(kDefaultLevel); }
  void screenshotReady();

  void putUdisk(bool present);
  bool hasUdisk() const { return hasUdisk_; }
  bool play(std::string_view file);
  void stopPlaying();
  bool pause();
  bool resume();
  PlayState playState() const { return playState_; }

  void setMulticast(std::optional<std::string> action) { multicast_ = std::move(action); }
  const std::optional<std::string>& multicast() const { return multicast_; }

  /* What somebody at the desk, or on the web, does. */
  void askForScreenshot();
  void ring(int32_t value) { sinks_.misc({MiscEventType::wkRingHdl, value}); }
  void cancelScan() { sinks_.misc({MiscEventType::wkScanCancelHdl}); }

  /** For a person: one line. */
  std::string describe() const;

 private:
  static constexpr int32_t kDefaultLevel = 5;

  void tell(AteEventType type) { sinks_.ate({type, {}}); }
  void show(const std::string& text);
  void runNextTest();
  void switchLcd(int32_t times);
  void finish(bool passed);
  void endTest();

  const Sinks sinks_;
  TimerQueue timers_;

  TestInfo info_;
  /** Those that are still to come, the next one last. */
  std::vector<Test> tests_;
  bool touching_ = false;
  TimerQueue::Id testTimer_ = 0;

  int32_t page_ = 0;
  bool backlightKept_ = false;
  /** While levels are being tried. */
  std::optional<int32_t> presetLevel_;
  bool screenshotAsked_ = false;

  bool hasUdisk_ = true;
  PlayState playState_ = PlayState::kStopped;
  TimerQueue::Id playTimer_ = 0;
  /** When playing ends; how much is left, while it is paused. */
  Time playEnd_{0};
  Time playLeft_{0};

  std::optional<std::string> multicast_ = "page-all";
};

}  // namespace sim
