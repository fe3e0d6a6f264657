#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "clock/TimerQueue.h"

namespace sim {

/** Runs a model in real time, or a multiple of it. Thread-safe. A model is a class with the methods
 * advanceTo() and nextTimer(), such as Phone. */
template <typename Model>
class RealTime {
 public:
  /** `speed` is the number of model seconds in a real second; `args` are passed to the model's
   * constructor. A lock is held while the model runs, and while it calls its sinks. */
  template <typename... Args>
  explicit RealTime(double speed, Args&&... args)
      : speed_(speed), model_(std::forward<Args>(args)...), timers_([this] { runTimers(); }) {}

  ~RealTime() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    changed_.notify_one();
    timers_.join();
  }
  RealTime(const RealTime&) = delete;
  RealTime& operator=(const RealTime&) = delete;

  /** Runs `action` on the model under the lock. */
  template <typename Action>
  auto use(Action&& action) {
    const Wake wake{changed_};
    const std::lock_guard lock(mutex_);
    model_.advanceTo(toModelTime(Clock::now()));
    return std::forward<Action>(action)(model_);
  }

 private:
  using Clock = std::chrono::steady_clock;

  /** Wakes the timer thread after the lock is released, since the next timer may have changed. */
  struct Wake {
    std::condition_variable& changed;
    ~Wake() { changed.notify_one(); }
  };

  Time toModelTime(Clock::time_point time) const {
    return std::chrono::floor<Time>((time - start_) * speed_);
  }
  Clock::time_point toRealTime(Time time) const {
    return start_ +
           std::chrono::ceil<Clock::duration>(std::chrono::duration<double, Time::period>(time) / speed_);
  }

  void runTimers() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
      model_.advanceTo(toModelTime(Clock::now()));
      if (const std::optional<Time> next = model_.nextTimer()) {
        changed_.wait_until(lock, toRealTime(*next));
      } else {
        changed_.wait(lock);
      }
    }
  }

  const double speed_;
  const Clock::time_point start_ = Clock::now();
  std::mutex mutex_;
  std::condition_variable changed_;
  bool stopping_ = false;
  Model model_;
  std::thread timers_;
};

}  // namespace sim
