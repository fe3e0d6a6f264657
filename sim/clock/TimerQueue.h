#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace sim {

/** A duration, or a point in time since the start of the device. */
using Time = std::chrono::milliseconds;

/** An infinite duration. */
constexpr Time kNever = Time::max();

/** Timers on a clock that only advanceTo() moves. Not thread-safe. */
class TimerQueue {
 public:
  /** 0 stands for no timer. */
  using Id = uint64_t;

  /** Sets a timer that runs `action` once, `delay` from now; sets none for kNever. */
  Id after(Time delay, std::function<void()> action);

  /** Removes a timer. Does nothing for 0, or a timer that has run. */
  void cancel(Id id);

  Time now() const { return now_; }

  /** The time of the next timer; empty without timers. */
  std::optional<Time> next() const;

  /**
   * Moves the clock and runs the timers that are due, in the order of their times; timers of the
   * same time run in the order of the calls to after(). During an action, now() is the time of its
   * timer. If an action sets a timer for a time up to `time`, that timer runs, too. The clock never
   * moves back.
   */
  void advanceTo(Time time);

 private:
  using Key = std::pair<Time, Id>;

  Time now_{0};
  Id lastId_ = 0;
  std::map<Key, std::function<void()>> timers_;
};

}  // namespace sim
