#include "phone/Phone.h"

namespace sim {

int32_t Phone::refuseCall(const std::string& why) {
  emit(EventType::makeCallRetEvent, why);
  return kRefused;
}

int32_t Phone::openDialler(int32_t line, const std::string& number, bool video) {
  if (line == 0) line = getFirstValidLine();
  if (!isRegistered(line)) return refuseCall(notRegistered(line));
  if (number.size() > kMaxNumberLength) return refuseCall(kBadNumber);
  if (dialler_ != 0) end(calls_.at(dialler_));
  const int32_t chan = freeChannel();
  if (chan == 0) return refuseCall(kNoChannel);

  holdCallsInProgress();
  Call& call = add(chan, line, number);
  call.info.video = video;
  dialler_ = chan;
  setTone(number.empty() ? Tone::kDial : Tone::kNone);
  emit(EventType::dialCallStartEvent, call.info);
  makeCurrent(chan);
  if (!number.empty()) emit(EventType::dialingInfoChangedEvent, call.info);
  return chan;
}

int32_t Phone::dial(Call& call) {
  dialler_ = 0;
  lastDialled_ = Destination{call.info.line, call.info.number};
  call.ongoing = true;
  setTone(Tone::kNone);
  emit(EventType::newOngoingCallEvent, call.info);
  makeCurrent(call.info.chan);
  setTimer(call, kSetupTime, &Phone::reachFarEnd);
  return call.info.chan;
}

int32_t Phone::makeAvCall(int32_t line, const std::string& number, bool video) {
  if (number.empty()) return refuseCall(kBadNumber);
  const int32_t chan = openDialler(line, number, video);
  return chan == kRefused ? kRefused : dial(calls_.at(chan));
}

int32_t Phone::playMwi(int32_t line, const std::string& number) {
  return makeCall(line, number.empty() ? std::string(kVoiceMailNumber) : number);
}

Refusal Phone::redialCall() {
  if (!lastDialled_) return "No number has been dialled yet";
  const Destination last = *lastDialled_;
  if (makeCall(last.line, last.number) == kRefused) return "The call can't be made";
  return {};
}

Refusal Phone::createNewCall(int32_t line) {
  if (openDialler(line, "", false) == kRefused) return "The call can't be made";
  return {};
}

int32_t Phone::edialWithLine(int32_t line, const std::string& number) {
  return openDialler(line, number, false);
}

int32_t Phone::edialChangeLine(int32_t line) {
  if (dialler_ == 0) return kRefused;
  if (!isRegistered(line)) return refuseCall(notRegistered(line));
  Call& call = calls_.at(dialler_);
  call.info.line = line;
  emit(EventType::dialingInfoChangedEvent, call.info);
  return dialler_;
}

int32_t Phone::edialMakeCall() {
  if (dialler_ == 0) return kRefused;
  Call& call = calls_.at(dialler_);
  if (call.info.number.empty()) return refuseCall(kBadNumber);
  return dial(call);
}

Refusal Phone::dialNumberUpdateRequest(const std::string& number) {
  if (dialler_ == 0) return "Nothing is being dialled";
  if (number.size() > kMaxNumberLength) return kBadNumber;
  Call& call = calls_.at(dialler_);
  setNumber(call, number);
  setTone(number.empty() ? Tone::kDial : Tone::kNone);
  emit(EventType::dialingInfoChangedEvent, call.info);
  return {};
}

Refusal Phone::dialSelectionRequest(int32_t selection) {
  emit(EventType::dialSelectionEvent, selection);
  return {};
}

bool Phone::isEngaged(const Contact& contact) {
  if (contact.engagedFor == Time(0)) return false;
  if (contact.engagedFor == kNever) return true;
  const auto [entry, first] =
      engagedUntil_.try_emplace(std::string(contact.number), now() + contact.engagedFor);
  return now() < entry->second;
}

void Phone::reachFarEnd(Call& call) {
  if (call.contact == nullptr) return fail(call, "Number not in service", Tone::kCongestion);
  if (isEngaged(*call.contact)) return farEndIsEngaged(call);
  setState(call, CallState::kRinging);
  setTone(Tone::kRingback);
  if (call.contact->answersAfter == kNever) {
    setTimer(call, kRingLimit, &Phone::farEndDoesNotAnswer);
  } else {
    setTimer(call, call.contact->answersAfter, &Phone::farEndAnswers);
  }
}

/** Also serves incoming calls: both kinds behave alike once answered. */
void Phone::farEndAnswers(Call& call) {
  call.answered = true;
  talk(call);
  if (call.contact != nullptr) call.info.video = call.info.video || call.contact->video;
  emit(EventType::callInfoChangedEvent, call.info);
  if (call.info.video) emit(EventType::updateCallVideoStreamEvent, videoStreams());
  setTimer(call, call.contact != nullptr ? call.contact->hangsUpAfter : kNever, &Phone::end);
  if (autoRedial_ && autoRedial_->chan == call.info.chan) stopAutoRedial();
}

void Phone::farEndDoesNotAnswer(Call& call) { fail(call, "No answer", Tone::kNone); }

void Phone::farEndIsEngaged(Call& call) {
  lastEngaged_ = Destination{call.info.line, call.info.number};
  fail(call, "Engaged", Tone::kBusy);
  if (!autoRedial_) offerCompletion(*lastEngaged_);
}

Phone::Call* Phone::findUnanswered(int32_t chan) {
  Call* call = find(chan);
  return call != nullptr && call->ongoing && !call->info.incoming && !call->answered ? call : nullptr;
}

Refusal Phone::farEndAnswer(int32_t chan) {
  Call* call = findUnanswered(chan);
  if (call == nullptr) return kNotWaiting;
  farEndAnswers(*call);
  return {};
}

Refusal Phone::farEndEngage(int32_t chan) {
  Call* call = findUnanswered(chan);
  if (call == nullptr) return kNotWaiting;
  engagedUntil_.try_emplace(call->info.number, now() + kEngagedTime);
  farEndIsEngaged(*call);
  return {};
}

Refusal Phone::farEndHangUp(int32_t chan) {
  Call* call = find(chan);
  if (call == nullptr || !call->ongoing) return "There is no call that can be ended";
  if (call->answered || call->info.incoming) {
    end(*call);
  } else {
    fail(*call, "Declined", Tone::kBusy);
  }
  return {};
}

void Phone::fail(Call& call, const std::string& why, Tone tone) {
  const bool redialling = autoRedial_ && autoRedial_->chan == call.info.chan;
  if (redialling) autoRedial_->chan = 0;

  emit(EventType::makeCallRetEvent, why);
  end(call);
  setTone(tone);
  if (redialling) autoRedialFailed();
}

}  // namespace sim
