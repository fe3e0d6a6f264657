#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>

namespace android::transport {

/**
 * Learns whether it pays to look for a frame before sleeping. Each time that it didn't, twice as
 * many waits as before go by without a look, and each time that it did, half as many.
 */
class SpinBackoff {
 public:
  static constexpr uint32_t kMostSkipped = 1023;

  /** Whether to look this time. */
  bool take() {
    if (toSkip_ == 0) return true;
    --toSkip_;
    return false;
  }
  void paid() {
    ++looks_;
    penalty_ /= 2;
  }
  void failed() {
    ++looks_;
    penalty_ = std::min(2 * penalty_ + 1, kMostSkipped);
    toSkip_ = penalty_;
  }

  /** How many looks there were. */
  uint64_t looks() const { return looks_; }

 private:
  uint32_t penalty_ = 0;
  uint32_t toSkip_ = 0;
  uint64_t looks_ = 0;
};

/** How many threads of this process look for frames at a time: fewer than it has processors, so
 * that there is one for whoever is to send them. */
class SpinLimiter {
 public:
  static SpinLimiter& self();

  /** Whether any thread ever looks. */
  bool isEnabled() const { return duration_.count() > 0; }
  /** For how long. */
  std::chrono::nanoseconds duration() const { return duration_; }

  bool enter() {
    if (rests()) return false;
    if (count_.fetch_add(1, std::memory_order_relaxed) < limit_) return true;
    leave();
    return false;
  }
  void leave() { count_.fetch_sub(1, std::memory_order_relaxed); }

  /** A look took so much longer than it should have, since others had use for the processor: nobody
   * looks for a time that makes little of that. */
  void wasPreempted(std::chrono::nanoseconds time);

  /** Whether so many threads call at once that each processor has enough to do. */
  bool isCrowded() const { return calls_.load(std::memory_order_relaxed) > limit_ + 1; }

  /** A thread of this process is in a call. */
  class Call {
   public:
    Call() { self().calls_.fetch_add(1, std::memory_order_relaxed); }
    ~Call() { self().calls_.fetch_sub(1, std::memory_order_relaxed); }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
  };

 private:
  using Clock = std::chrono::steady_clock;

  SpinLimiter();
  bool rests() const {
    const Clock::rep until = restsUntil_.load(std::memory_order_relaxed);
    return until != 0 && Clock::now().time_since_epoch().count() < until;
  }

  int limit_ = 0;
  std::chrono::nanoseconds duration_{0};
  std::atomic<int> count_{0};
  std::atomic<int> calls_{0};
  std::atomic<Clock::rep> restsUntil_{0};
};

}  // namespace android::transport
