#pragma once

#include <atomic>
#include <cstdint>

namespace com::qv {

/**
 * A mutex for a few instructions' work, to be had for a few: each call of the library takes one, and a
 * std::mutex costs sixty. A thread that finds it taken sleeps. Not recursive.
 */
class FutexMutex {
 public:
  void lock() {
    uint32_t found = kFree;
    if (!state_.compare_exchange_strong(found, kHeld, std::memory_order_acquire, std::memory_order_relaxed)) {
      waitAndLock();
    }
  }
  void unlock() {
    if (state_.exchange(kFree, std::memory_order_release) == kAwaited) wakeOne();
  }

 private:
  enum : uint32_t { kFree, kHeld, kAwaited };

  void waitAndLock();
  void wakeOne();

  std::atomic<uint32_t> state_ = kFree;
  static_assert(sizeof(state_) == sizeof(uint32_t), "the kernel looks at the same word");
};

}  // namespace com::qv
