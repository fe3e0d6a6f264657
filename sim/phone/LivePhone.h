#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "phone/Phone.h"

namespace sim {

/** A phone in real time, or a multiple of it, for use by any thread. */
class LivePhone {
 public:
  /** `speed` is how many seconds of the phone's pass in one of ours. The sink is called under a lock. */
  LivePhone(double speed, Phone::Sink sink);
  ~LivePhone();
  LivePhone(const LivePhone&) = delete;
  LivePhone& operator=(const LivePhone&) = delete;

  /** Runs `action` on the phone, with nobody else at it. */
  template <typename Action>
  auto use(Action&& action) {
    const Wake wake{changed_};
    const std::lock_guard lock(mutex_);
    phone_.advanceTo(toPhoneTime(Clock::now()));
    return std::forward<Action>(action)(phone_);
  }

 private:
  using Clock = std::chrono::steady_clock;

  /** Has the timers looked at again once the lock is free. */
  struct Wake {
    std::condition_variable& changed;
    ~Wake() { changed.notify_one(); }
  };

  Time toPhoneTime(Clock::time_point time) const;
  Clock::time_point toRealTime(Time time) const;
  void runTimers();

  const double speed_;
  const Clock::time_point start_ = Clock::now();
  std::mutex mutex_;
  std::condition_variable changed_;
  bool stopping_ = false;
  Phone phone_;
  std::thread timers_;
};

}  // namespace sim
