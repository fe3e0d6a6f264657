#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "clock/TimerQueue.h"
#include "common/Service.h"
#include "phone/Directory.h"
#include "phone/Event.h"

namespace sim {

/** Longer numbers are refused. */
constexpr size_t kMaxNumberLength = 63;

enum class Tone : int32_t { kNone = 0, kDial = 1, kRingback = 2, kBusy = 3, kCongestion = 4, kRing = 5 };

struct Snapshot {
  int32_t chan;
  int32_t index;
  Time takenAt;
  std::string name;
  std::string number;
};

/**
 * The model of the call service: a telephone with lines, channels and remote parties. Each
 * method of the service, described in docs/simulated-device.md, forwards to the method of the same
 * name. Channel 0 stands for the current call, line 0 for the first registered line. Each event goes
 * to the sink, in order, during the method or the advanceTo() that causes it; the sink must not call
 * this object. Time
 * passes only in advanceTo(). Not thread-safe.
 */
class Phone {
 public:
  using Sink = std::function<void(Time, const Event&)>;

  static constexpr int32_t kLines = 3;
  /** Lines 1 and 2 are registered with a server, line 3 is not. */
  static constexpr int32_t kRegisteredLines = 2;
  static constexpr int32_t kChannels = 8;
  /** There is at most one conference. */
  static constexpr int32_t kConferenceNumber = 1;
  static constexpr int32_t kHeadsetKey = 226;
  static constexpr int32_t kAutoRedialTimes = 5;
  static constexpr int32_t kAutoRedialSeconds = 5;
  /** The call setup time: from dialling to ringing or failure. */
  static constexpr Time kSetupTime{500};
  /** The time after which an unanswered call ends. */
  static constexpr Time kRingLimit{30'000};
  static constexpr Time kDoorLedTime{3000};
  static constexpr Time kEngagedTime{8000};

  static bool isRegistered(int32_t line) { return line >= 1 && line <= kRegisteredLines; }

  explicit Phone(Sink sink, std::span<const Contact> directory = kDirectory);
  Phone(const Phone&) = delete;
  Phone& operator=(const Phone&) = delete;

  Time now() const { return timers_.now(); }
  std::optional<Time> nextTimer() const { return timers_.next(); }
  void advanceTo(Time time) { timers_.advanceTo(time); }

  /* Placing, answering, holding and ending calls. */
  int32_t makeCall(int32_t line, const std::string& number) { return makeAvCall(line, number, false); }
  int32_t makeAvCall(int32_t line, const std::string& number, bool video);
  int32_t playMwi(int32_t line, const std::string& number);
  Refusal redialCall();
  Refusal headsetAnswerCall();
  Refusal closeCall(int32_t chan);
  Refusal setCallHoldStatus(int32_t chan, bool hold);
  Refusal setCurrentCall(int32_t chan);
  Refusal switchCallMutedState();
  bool getCallHaveIvr() const;
  int32_t getFirstValidLine() const { return 1; }

  /** Starts an incoming call. */
  Refusal incomingCall(int32_t line, const std::string& number);
  void scheduleIncomingCall(Time delay, int32_t line, const std::string& number);

  /* Actions of the remote party of an outgoing call or, for farEndHangUp(), of any call. */
  Refusal farEndAnswer(int32_t chan);
  Refusal farEndHangUp(int32_t chan);
  /** The number stays engaged for kEngagedTime. */
  Refusal farEndEngage(int32_t chan);

  /** A key is pressed or released. */
  void key(int32_t code, bool pressed) { emit(EventType::keycodeEvent, KeyInfo{code, pressed}); }

  /* Dialling. */
  Refusal createNewCall(int32_t line);
  int32_t edialWithLine(int32_t line, const std::string& number);
  int32_t edialChangeLine(int32_t line);
  int32_t edialMakeCall();
  Refusal dialNumberUpdateRequest(const std::string& number);
  Refusal dialSelectionRequest(int32_t selection);

  /* Conferences. */
  Refusal conferenceAddMembers(const std::vector<int32_t>& chans);
  Refusal conferenceRemoveMember(int32_t chan);
  Refusal conferenceHoldMember(int32_t chan);
  Refusal conferenceResumeMember(int32_t chan);
  Refusal conferenceMuteMember(int32_t chan, bool mute);
  Refusal conferenceMuteAllMember(int32_t conference, bool mute);

  /* Automatic redial and call completion. */
  Refusal callAutoRedial();
  Refusal autoRedialsoftbtnMakeCall();
  Refusal autoRedialsoftbtnCancel();
  Refusal callCompletion();
  Refusal callCompleteDialConfirm(int32_t line, const std::string& number);
  Refusal callCompleteCancel(int32_t line, const std::string& number);

  /* Tones, keys, video, door. */
  Refusal playToneRequest(int32_t tone);
  Refusal stopToneRequest();
  Refusal keyMultiPlexing(bool on);
  Refusal setDtmfType(int32_t type);
  Refusal ctrlLedDooropen();
  Refusal setVideoDisplayArea(int32_t chan);
  Refusal setVideoMultiStreamArea(int32_t, int32_t);
  Refusal videoSnapshot(int32_t chan);
  Refusal deleteSnapshot(int32_t chan);
  int32_t getSnapshotNums(int32_t chan) const;
  int32_t requestSnapShotData(int32_t chan) const;
  /** Empty if there is none. */
  std::optional<Snapshot> snapshot(int32_t chan, int32_t index) const;

  /* State that the user can see and hear. */
  std::vector<CallInfo> calls() const;
  int32_t tone() const { return tone_; }
  bool doorLedOn() const { return doorLedTimer_ != 0; }
  /** The state as lines for the user. */
  std::string describe() const;

 private:
  struct Call {
    CallInfo info;
    /** Null for an unknown number. */
    const Contact* contact = nullptr;
    /** The next action of the remote party. */
    TimerQueue::Id timer = 0;
    /** True after newOngoingCallEvent; false for a dialler. */
    bool ongoing = false;
    bool answered = false;
  };

  struct Destination {
    int32_t line;
    std::string number;
  };

  struct AutoRedial {
    Destination to;
    int32_t times = 0;
    /** The channel of the current attempt, or 0. */
    int32_t chan = 0;
    TimerQueue::Id timer = 0;
  };

  struct Completion {
    int32_t line;
    TimerQueue::Id timer = 0;
    bool free = false;
  };

  static constexpr const char* kNoChannel = "All channels are in use";
  static constexpr const char* kNotWaiting = "There is no call that waits for its far end";
  static constexpr const char* kBadNumber = "The number is empty or too long";

  void emit(EventType type, EventPayload payload = {}) { sink_(now(), {type, std::move(payload)}); }
  /** Emits the reason as a makeCallRetEvent, and returns kRefused. */
  int32_t refuseCall(const std::string& why);

  Call* find(int32_t chan);
  const Call* find(int32_t chan) const;
  /** The call that is talking outside of the conference; null without one. */
  Call* findTalking();
  int32_t freeChannel() const;
  static std::string notRegistered(int32_t line) {
    return "Line " + std::to_string(line) + " is not registered";
  }
  Call& add(int32_t chan, int32_t line, const std::string& number);
  void setNumber(Call& call, const std::string& number);
  void setState(Call& call, CallState state);
  void setTimer(Call& call, Time delay, void (Phone::*action)(Call&));
  void makeCurrent(int32_t chan);
  void leaveToOthers(int32_t chan);
  void holdCallsInProgress();
  void talk(Call& call);
  void end(Call& call);
  void fail(Call& call, const std::string& why, Tone tone);
  void setTone(Tone tone) { tone_ = static_cast<int32_t>(tone); }
  int32_t videoStreams() const;

  int32_t openDialler(int32_t line, const std::string& number, bool video);
  int32_t dial(Call& call);
  bool isEngaged(const Contact& contact);
  void reachFarEnd(Call& call);
  void farEndIsEngaged(Call& call);
  /** Null unless it is an outgoing call that has not been answered. */
  Call* findUnanswered(int32_t chan);
  void farEndAnswers(Call& call);
  void farEndDoesNotAnswer(Call& call);

  Call* findMember(int32_t chan);
  void leaveConference(int32_t chan);

  void autoRedialNow();
  void autoRedialFailed();
  void stopAutoRedial();
  void emitAutoRedial(const AutoRedial& redial);
  void offerCompletion(const Destination& to);
  void completionIsFree(const std::string& number);

  const Sink sink_;
  const std::span<const Contact> directory_;
  TimerQueue timers_;

  /** By channel. */
  std::map<int32_t, Call> calls_;
  int32_t current_ = 0;
  /** The channel of the dialler, or 0. */
  int32_t dialler_ = 0;
  /** In the order of joining. */
  std::vector<int32_t> members_;

  std::optional<Destination> lastDialled_;
  std::optional<Destination> lastEngaged_;
  std::map<std::string, Time> engagedUntil_;
  std::optional<AutoRedial> autoRedial_;
  std::optional<Destination> completionOffer_;
  /** By number. */
  std::map<std::string, Completion> completions_;

  int32_t tone_ = 0;
  int32_t dtmfType_ = 0;
  bool keysMultiplexed_ = false;
  TimerQueue::Id doorLedTimer_ = 0;
  /** By channel; a snapshot outlives its call. */
  std::map<int32_t, std::vector<Snapshot>> snapshots_;
};

}  // namespace sim
