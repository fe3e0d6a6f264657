#include "phone/Event.h"

namespace sim {

namespace {

const char* toString(EventType type) {
  switch (type) {
#define METHOD(code, name, ...) \
  case EventType::name:         \
    return #name;
#include <com/qv/CallEventListener.def>
#undef METHOD
  }
  return "?";
}

struct PayloadText {
  std::string operator()(std::monostate) const { return ""; }
  std::string operator()(int32_t value) const { return " " + std::to_string(value); }
  std::string operator()(const CallInfo& info) const { return " " + sim::toString(info); }
  std::string operator()(const ConferenceInfo& info) const {
    std::string text = " " + std::to_string(info.conference) + ", members";
    for (const int32_t member : info.members) text += " " + std::to_string(member);
    return text;
  }
  std::string operator()(const KeyInfo& key) const {
    return " " + std::to_string(key.code) + (key.status != 0 ? " pressed" : " released");
  }
  std::string operator()(const AutoRedialInfo& info) const {
    if (info.number.empty()) return " over";
    return " " + info.number + ", " + std::to_string(info.times) + " of " + std::to_string(info.maxTimes) +
           " times, every " + std::to_string(info.intervalSeconds) + " s";
  }
  std::string operator()(const CompletionInfo& info) const {
    return " line " + std::to_string(info.line) + ", " + info.number + (info.free ? ", free" : ", offered");
  }
  std::string operator()(const std::string& text) const { return " '" + text + "'"; }
};

}  // namespace

const char* toString(CallState state) {
  switch (state) {
    case CallState::kDialling:
      return "dialling";
    case CallState::kRinging:
      return "ringing";
    case CallState::kIncoming:
      return "incoming";
    case CallState::kTalking:
      return "talking";
    case CallState::kHeld:
      return "held";
    case CallState::kConference:
      return "in conference";
    case CallState::kConferenceHeld:
      return "held in conference";
    case CallState::kEnded:
      return "ended";
  }
  return "?";
}

std::string toString(const CallInfo& info) {
  std::string text = "line " + std::to_string(info.line) + ", chan " + std::to_string(info.chan) + ", " +
                     (info.number.empty() ? "no number" : info.number);
  if (!info.name.empty()) text += " (" + info.name + ")";
  text += std::string(", ") + toString(info.state);
  if (info.muted) text += ", muted";
  if (info.video) text += ", video";
  return text;
}

std::string toString(const Event& event) {
  return toString(event.type) + std::visit(PayloadText{}, event.payload);
}

}  // namespace sim
