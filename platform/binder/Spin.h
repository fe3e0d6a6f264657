#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>

namespace android::transport {

/**
 * Decides for one channel whether a wait spins before it sleeps. After a spin without success twice
 * as many waits as before sleep at once, after a successful one half as many.
 */
class SpinBackoff {
 public:
  static constexpr uint32_t kMostSkipped = 1023;

  /** True if this wait spins. */
  bool shouldSpin() {
    if (toSkip_ == 0) return true;
    --toSkip_;
    return false;
  }
  void succeeded() {
    ++spins_;
    penalty_ /= 2;
  }
  void failed() {
    ++spins_;
    penalty_ = std::min(2 * penalty_ + 1, kMostSkipped);
    toSkip_ = penalty_;
  }

  /** The number of spins so far. */
  uint64_t spins() const { return spins_; }

 private:
  uint32_t penalty_ = 0;
  uint32_t toSkip_ = 0;
  uint64_t spins_ = 0;
};

/** Limits the threads of this process that spin at a time to fewer than it has processors, so that
 * one is left for the sender of the frames. */
class SpinLimiter {
 public:
  static SpinLimiter& self();

  /** False with a single processor, or with BINDER_SPIN_US=0. */
  bool isEnabled() const { return duration_.count() > 0; }
  /** The duration of a spin. */
  std::chrono::nanoseconds duration() const { return duration_; }

  bool enter() {
    if (isPaused()) return false;
    if (count_.fetch_add(1, std::memory_order_relaxed) < limit_) return true;
    leave();
    return false;
  }
  void leave() { count_.fetch_sub(1, std::memory_order_relaxed); }

  /** Pauses spinning after a preempted spin, so that its cost is amortised. */
  void wasPreempted(std::chrono::nanoseconds time);

  /** True if more threads are in calls than there are processors. */
  bool isCrowded() const { return calls_.load(std::memory_order_relaxed) > limit_ + 1; }

  /** True while a thread of this process is in a call. */
  bool isCalling() const { return calls_.load(std::memory_order_relaxed) > 0; }

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
  bool isPaused() const {
    const Clock::rep until = pausedUntil_.load(std::memory_order_relaxed);
    return until != 0 && Clock::now().time_since_epoch().count() < until;
  }

  int limit_ = 0;
  std::chrono::nanoseconds duration_{0};
  std::atomic<int> count_{0};
  std::atomic<int> calls_{0};
  std::atomic<Clock::rep> pausedUntil_{0};
};

}  // namespace android::transport
