#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace sim {

/** Durations, and points in time counted from the start of the phone. */
using Time = std::chrono::milliseconds;

/** For durations: longer than anything. */
constexpr Time kNever = Time::max();

/** Timers on a clock that moves only when it is told to. Not for use by several threads at once. */
class TimerQueue {
 public:
  /** 0 is no timer. */
  using Id = uint64_t;

  /** Has `action` run once, `delay` from now; kNever makes no timer. */
  Id after(Time delay, std::function<void()> action);

  /** Forgets a timer. One that has run already, or 0, is left alone. */
  void cancel(Id id);

  Time now() const { return now_; }

  /** When the next timer is due. */
  std::optional<Time> next() const;

  /**
   * Moves the clock and runs what is due, in order of time and then of setting. Each action sees its own time
   * as now(), and what it sets for a time up to `time` is run as well. The clock never moves back.
   */
  void advanceTo(Time time);

 private:
  using Key = std::pair<Time, Id>;

  Time now_{0};
  Id lastId_ = 0;
  std::map<Key, std::function<void()>> timers_;
};

}  // namespace sim
