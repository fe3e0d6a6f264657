#include "phone/Phone.h"

namespace sim {

namespace {

constexpr const char* kNoAutoRedial = "Nothing is being redialled";

}  // namespace

void Phone::emitAutoRedial(const AutoRedial& redial) {
  emit(EventType::autoRedialInfoChangedEvent,
       AutoRedialInfo{kAutoRedialTimes, kAutoRedialSeconds, redial.to.number, redial.times});
}

Refusal Phone::callAutoRedial() {
  if (!lastEngaged_) return "No number was engaged";
  if (autoRedial_) stopAutoRedial();
  completionOffer_.reset();
  autoRedial_ = AutoRedial{.to = *lastEngaged_};
  emitAutoRedial(*autoRedial_);
  autoRedial_->timer = timers_.after(std::chrono::seconds(kAutoRedialSeconds), [this] { autoRedialNow(); });
  return {};
}

void Phone::autoRedialNow() {
  timers_.cancel(autoRedial_->timer);
  if (!calls_.empty()) {
    // The user's own calls go first.
    autoRedial_->timer = timers_.after(std::chrono::seconds(kAutoRedialSeconds), [this] { autoRedialNow(); });
    return;
  }
  ++autoRedial_->times;
  emitAutoRedial(*autoRedial_);
  autoRedial_->chan = makeCall(autoRedial_->to.line, autoRedial_->to.number);
}

void Phone::autoRedialFailed() {
  if (autoRedial_->times == kAutoRedialTimes) return stopAutoRedial();
  autoRedial_->timer = timers_.after(std::chrono::seconds(kAutoRedialSeconds), [this] { autoRedialNow(); });
}

void Phone::stopAutoRedial() {
  AutoRedial over = *autoRedial_;
  autoRedial_.reset();
  timers_.cancel(over.timer);
  over.to.number.clear();
  emitAutoRedial(over);
}

Refusal Phone::autoRedialsoftbtnMakeCall() {
  if (!autoRedial_) return kNoAutoRedial;
  if (!calls_.empty()) return "There is another call";
  autoRedialNow();
  return {};
}

Refusal Phone::autoRedialsoftbtnCancel() {
  if (!autoRedial_) return kNoAutoRedial;
  if (Call* attempt = autoRedial_->chan != 0 ? find(autoRedial_->chan) : nullptr) {
    end(*attempt);
  } else {
    stopAutoRedial();
  }
  return {};
}

void Phone::offerCompletion(const Destination& to) {
  completionOffer_ = to;
  emit(EventType::callCompletionInfoChangedEvent, CompletionInfo{to.line, to.number, false});
}

Refusal Phone::callCompletion() {
  if (!completionOffer_) return "No call completion is on offer";
  const Destination to = *completionOffer_;
  completionOffer_.reset();
  const auto until = engagedUntil_.find(to.number);
  const Time wait = until == engagedUntil_.end() ? kNever : std::max(Time(0), until->second - now());
  Completion& completion = completions_[to.number];
  timers_.cancel(completion.timer);
  completion = {to.line, timers_.after(wait, [this, number = to.number] { completionIsFree(number); })};
  return {};
}

void Phone::completionIsFree(const std::string& number) {
  Completion& completion = completions_.at(number);
  completion.free = true;
  emit(EventType::callCompletionInfoChangedEvent, CompletionInfo{completion.line, number, true});
}

Refusal Phone::callCompleteDialConfirm(int32_t line, const std::string& number) {
  const auto completion = completions_.find(number);
  if (completion == completions_.end() || !completion->second.free) return number + " has not become free";
  completions_.erase(completion);
  if (makeCall(line, number) == kRefused) return "The call can't be made";
  return {};
}

Refusal Phone::callCompleteCancel(int32_t, const std::string& number) {
  const auto completion = completions_.find(number);
  if (completion == completions_.end()) return "No call completion is waiting for " + number;
  timers_.cancel(completion->second.timer);
  completions_.erase(completion);
  return {};
}

}  // namespace sim
