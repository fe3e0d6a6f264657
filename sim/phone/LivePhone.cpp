#include "phone/LivePhone.h"

namespace sim {

LivePhone::LivePhone(double speed, Phone::Sink sink)
    : speed_(speed), phone_(std::move(sink)), timers_([this] { runTimers(); }) {}

LivePhone::~LivePhone() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  timers_.join();
}

Time LivePhone::toPhoneTime(Clock::time_point time) const {
  return std::chrono::floor<Time>((time - start_) * speed_);
}

LivePhone::Clock::time_point LivePhone::toRealTime(Time time) const {
  return start_ +
         std::chrono::ceil<Clock::duration>(std::chrono::duration<double, Time::period>(time) / speed_);
}

void LivePhone::runTimers() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    phone_.advanceTo(toPhoneTime(Clock::now()));
    if (const std::optional<Time> next = phone_.nextTimer()) {
      changed_.wait_until(lock, toRealTime(*next));
    } else {
      changed_.wait(lock);
    }
  }
}

}  // namespace sim
