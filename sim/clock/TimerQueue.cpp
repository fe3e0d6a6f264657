#include "clock/TimerQueue.h"

#include <algorithm>

namespace sim {

TimerQueue::Id TimerQueue::after(Time delay, std::function<void()> action) {
  if (delay == kNever) return 0;
  timers_.emplace(Key{now_ + delay, ++lastId_}, std::move(action));
  return lastId_;
}

void TimerQueue::cancel(Id id) {
  std::erase_if(timers_, [id](const auto& timer) { return timer.first.second == id; });
}

std::optional<Time> TimerQueue::next() const {
  if (timers_.empty()) return std::nullopt;
  return timers_.begin()->first.first;
}

void TimerQueue::advanceTo(Time time) {
  while (!timers_.empty() && timers_.begin()->first.first <= time) {
    auto due = timers_.extract(timers_.begin());
    now_ = std::max(now_, due.key().first);
    due.mapped()();
  }
  now_ = std::max(now_, time);
}

}  // namespace sim
