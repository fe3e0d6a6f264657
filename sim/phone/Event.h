#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace sim {

enum class CallState : int32_t {
  kDialling = 1,
  /** The remote phone rings. */
  kRinging = 2,
  /** This phone rings. */
  kIncoming = 3,
  kTalking = 4,
  kHeld = 5,
  kConference = 6,
  kConferenceHeld = 7,
  kEnded = 8,
};

const char* toString(CallState state);

struct CallInfo {
  int32_t line = 0;
  int32_t chan = 0;
  std::string name;
  std::string number;
  bool incoming = false;
  bool muted = false;
  bool video = false;
  CallState state = CallState::kDialling;

  bool operator==(const CallInfo&) const = default;
};

struct ConferenceInfo {
  int32_t conference;
  std::vector<int32_t> members;

  bool operator==(const ConferenceInfo&) const = default;
};

struct KeyInfo {
  int32_t code;
  int32_t status;

  bool operator==(const KeyInfo&) const = default;
};

/** The number is empty at the end of automatic redial. */
struct AutoRedialInfo {
  int32_t maxTimes = 0;
  int32_t intervalSeconds = 0;
  std::string number;
  int32_t times = 0;

  bool operator==(const AutoRedialInfo&) const = default;
};

struct CompletionInfo {
  int32_t line = 0;
  std::string number;
  /** True: the number has become free. False: completion is offered. */
  bool free = false;

  bool operator==(const CompletionInfo&) const = default;
};

/** The events, with the names of the listener's methods. */
enum class EventType {
#define METHOD(code, name, ...) name = (code),
#include <com/qv/CallEventListener.def>
#undef METHOD
};

/** The event determines the alternative: the one for the parameters of the listener's method. */
using EventPayload = std::variant<std::monostate, int32_t, CallInfo, ConferenceInfo, KeyInfo, AutoRedialInfo,
                                  CompletionInfo, std::string>;

struct Event {
  EventType type;
  EventPayload payload;

  bool operator==(const Event&) const = default;
};

/** The event's name and payload in one line. */
std::string toString(const Event& event);
std::string toString(const CallInfo& info);

}  // namespace sim
