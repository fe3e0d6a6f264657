#include "phone/Phone.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

std::string noCall(int32_t chan) {
  return chan == 0 ? "There is no call" : "There is no call on channel " + std::to_string(chan);
}

}  // namespace

Phone::Phone(Sink sink, std::span<const Contact> directory) : sink_(std::move(sink)), directory_(directory) {}

Phone::Call* Phone::find(int32_t chan) { return const_cast<Call*>(std::as_const(*this).find(chan)); }

const Phone::Call* Phone::find(int32_t chan) const {
  const auto found = calls_.find(chan == 0 ? current_ : chan);
  return found == calls_.end() ? nullptr : &found->second;
}

Phone::Call* Phone::findTalking() {
  const auto found = std::ranges::find_if(
      calls_, [](const auto& entry) { return entry.second.info.state == CallState::kTalking; });
  return found == calls_.end() ? nullptr : &found->second;
}

int32_t Phone::freeChannel() const {
  for (int32_t chan = 1; chan <= kChannels; ++chan) {
    if (!calls_.contains(chan)) return chan;
  }
  return 0;
}

Phone::Call& Phone::add(int32_t chan, int32_t line, const std::string& number) {
  Call& call = calls_[chan];
  call.info.line = line;
  call.info.chan = chan;
  setNumber(call, number);
  return call;
}

void Phone::setNumber(Call& call, const std::string& number) {
  call.contact = findContact(directory_, number);
  call.info.number = number;
  call.info.name = call.contact != nullptr ? call.contact->name : "";
}

void Phone::setState(Call& call, CallState state) {
  call.info.state = state;
  emit(EventType::callStateChangedEvent, call.info);
}

void Phone::setTimer(Call& call, Time delay, void (Phone::*action)(Call&)) {
  timers_.cancel(call.timer);
  // The reference stays valid: end() cancels the timer, and the map does not move its elements.
  call.timer = timers_.after(delay, [this, &call, action] { (this->*action)(call); });
}

void Phone::makeCurrent(int32_t chan) {
  if (std::exchange(current_, chan) != chan) emit(EventType::currentCallChangedEvent, chan);
}

/**
 * If `chan` was the current call, the next one is a call in progress or else the lowest channel.
 */
void Phone::leaveToOthers(int32_t chan) {
  if (current_ != chan) return;
  const auto isInProgress = [](const auto& entry) {
    const CallState state = entry.second.info.state;
    return state == CallState::kTalking || state == CallState::kConference;
  };
  auto next = std::ranges::find_if(calls_, isInProgress);
  if (next == calls_.end()) next = calls_.begin();
  makeCurrent(next == calls_.end() ? 0 : next->first);
}

/** Only one call, or the conference, can be in progress. */
void Phone::holdCallsInProgress() {
  if (Call* talking = findTalking()) setState(*talking, CallState::kHeld);
  for (auto& [member, call] : calls_) {
    if (call.info.state == CallState::kConference) setState(call, CallState::kConferenceHeld);
  }
}

void Phone::talk(Call& call) {
  holdCallsInProgress();
  setState(call, CallState::kTalking);
  makeCurrent(call.info.chan);
  setTone(Tone::kNone);
}

void Phone::end(Call& call) {
  const auto ended = calls_.extract(call.info.chan);
  const int32_t chan = call.info.chan;
  timers_.cancel(call.timer);
  if (dialler_ == chan) dialler_ = 0;
  if (current_ == chan) setTone(Tone::kNone);

  if (call.ongoing) {
    setState(call, CallState::kEnded);
    emit(EventType::deleteOngoingCallEvent, chan);
  }
  if (!call.info.incoming) emit(EventType::dialCallStopEvent, chan);
  if (call.info.video && call.answered) emit(EventType::updateCallVideoStreamEvent, videoStreams());
  leaveConference(chan);
  leaveToOthers(chan);
  if (autoRedial_ && autoRedial_->chan == chan) stopAutoRedial();

  if (call.answered && call.contact != nullptr && !call.info.incoming) {
    engagedUntil_.erase(call.info.number);
    scheduleIncomingCall(call.contact->callsBackAfter, call.info.line, call.info.number);
  }
}

int32_t Phone::videoStreams() const {
  return static_cast<int32_t>(std::ranges::count_if(
      calls_, [](const auto& entry) { return entry.second.info.video && entry.second.answered; }));
}

Refusal Phone::incomingCall(int32_t line, const std::string& number) {
  if (line == 0) line = getFirstValidLine();
  if (!isRegistered(line)) return notRegistered(line);
  if (number.empty() || number.size() > kMaxNumberLength) return kBadNumber;
  const int32_t chan = freeChannel();
  if (chan == 0) return kNoChannel;

  Call& call = add(chan, line, number);
  call.info.incoming = true;
  call.info.state = CallState::kIncoming;
  call.info.video = call.contact != nullptr && call.contact->video;
  call.ongoing = true;
  emit(EventType::newOngoingCallEvent, call.info);
  if (current_ == 0) {
    makeCurrent(chan);
    setTone(Tone::kRing);
  }
  setTimer(call, kRingLimit, &Phone::end);
  return {};
}

void Phone::scheduleIncomingCall(Time delay, int32_t line, const std::string& number) {
  timers_.after(delay, [this, line, number] { incomingCall(line, number); });
}

Refusal Phone::headsetAnswerCall() {
  emit(EventType::keycodeEvent, KeyInfo{kHeadsetKey, 1});
  emit(EventType::keycodeEvent, KeyInfo{kHeadsetKey, 0});

  const auto isIncoming = [](const auto& entry) { return entry.second.info.state == CallState::kIncoming; };
  const auto first = std::ranges::find_if(calls_, isIncoming);
  if (first == calls_.end()) return "There is no incoming call";
  Call* current = find(0);
  farEndAnswers(current->info.state == CallState::kIncoming ? *current : first->second);
  return {};
}

Refusal Phone::closeCall(int32_t chan) {
  Call* call = find(chan);
  if (call == nullptr) return noCall(chan);
  end(*call);
  return {};
}

Refusal Phone::setCallHoldStatus(int32_t chan, bool hold) {
  Call* call = find(chan);
  if (call == nullptr) return noCall(chan);
  if (findMember(call->info.chan) != nullptr) {
    return hold ? conferenceHoldMember(call->info.chan) : conferenceResumeMember(call->info.chan);
  }
  if (call->info.state != (hold ? CallState::kTalking : CallState::kHeld)) {
    return std::string("The call is ") + toString(call->info.state);
  }
  if (hold) {
    setState(*call, CallState::kHeld);
  } else {
    talk(*call);
  }
  return {};
}

Refusal Phone::setCurrentCall(int32_t chan) {
  if (!calls_.contains(chan)) return noCall(chan);
  makeCurrent(chan);
  return {};
}

Refusal Phone::switchCallMutedState() {
  Call* call = find(0);
  if (call == nullptr) return noCall(0);
  call->info.muted = !call->info.muted;
  emit(EventType::callInfoChangedEvent, call->info);
  return {};
}

bool Phone::getCallHaveIvr() const {
  const Call* call = find(0);
  return call != nullptr && call->answered && call->contact != nullptr && call->contact->ivr;
}

std::vector<CallInfo> Phone::calls() const {
  std::vector<CallInfo> infos;
  for (const auto& [chan, call] : calls_) infos.push_back(call.info);
  return infos;
}

std::string Phone::describe() const {
  std::string text;
  for (const auto& [chan, call] : calls_) {
    text += (chan == current_ ? "* " : "  ") + toString(call.info) + "\n";
  }
  return text + "tone " + std::to_string(tone_) + ", DTMF type " + std::to_string(dtmfType_) +
         ", key multiplexing " + (keysMultiplexed_ ? "on" : "off") + ", door LED " +
         (doorLedOn() ? "on" : "off") + "\n";
}

}  // namespace sim
