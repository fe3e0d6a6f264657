#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Deadline.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * Holds one frame, or its beginning, in memory of two processes. One side puts frames in and the
 * other takes them out, and each can sleep until that is possible.
 *
 * A hostile process may change all of it at any time: everything is read once and checked
 * afterwards.
 */
class SharedSlot {
 public:
  static constexpr size_t kSize = 64 * 1024;
  /** The most bytes that fit in. */
  static constexpr size_t kCapacity = kSize - 64;

  bool isFull() const {
    const uint32_t state = state_.load(std::memory_order_acquire);
    return state != kEmpty && state != kAwaited;
  }
  bool isEmpty() const {
    const uint32_t state = state_.load(std::memory_order_acquire);
    return state != kFull && state != kCongested;
  }

  /** Hands `size` bytes over to the receiver. True if the receiver was awake. */
  bool fill(size_t size) {
    size_ = static_cast<uint32_t>(size);
    if (state_.exchange(kFull, std::memory_order_acq_rel) != kAwaited) return true;
    wake();
    return false;
  }
  /** The receiver has read the frame. */
  void empty() {
    if (state_.exchange(kEmpty, std::memory_order_acq_rel) == kCongested) wake();
  }

  /** The size of the frame, as its sender claims. */
  size_t size() const { return *const_cast<const volatile uint32_t*>(&size_); }
  uint8_t* bytes() { return bytes_; }

  /** Sleeps unless `isOver` holds; may return early. False at the deadline. The thread that makes
   * `isOver` hold calls rouse...() afterwards. */
  template <class Condition>
  bool sleepUntilFull(Condition isOver, const Deadline& deadline) {
    return !prepareSleep(kEmpty, kAwaited) || isOver() || sleep(kEmpty, kAwaited, deadline);
  }
  template <class Condition>
  bool sleepUntilEmpty(Condition isOver, const Deadline& deadline) {
    return !prepareSleep(kFull, kCongested) || isOver() || sleep(kFull, kCongested, deadline);
  }
  /** Wakes the thread of this side, which checks its condition again. */
  void rouseReceiver() { rouse(kAwaited, kEmpty); }
  void rouseSender() { rouse(kCongested, kFull); }

 private:
  enum State : uint32_t {
    kEmpty,
    /** Empty, and the receiver sleeps. */
    kAwaited,
    kFull,
    /** Full, and the sender sleeps. */
    kCongested
  };

  /** False if the slot is in neither state. */
  bool prepareSleep(uint32_t awake, uint32_t asleep) {
    uint32_t state = awake;
    return state_.compare_exchange_strong(state, asleep) || state == asleep;
  }
  bool sleep(uint32_t awake, uint32_t asleep, const Deadline& deadline);
  void rouse(uint32_t asleep, uint32_t awake);
  void wake();

  std::atomic<uint32_t> state_;
  uint32_t size_;
  alignas(64) uint8_t bytes_[kCapacity];
};
static_assert(sizeof(SharedSlot) == SharedSlot::kSize && std::atomic<uint32_t>::is_always_lock_free);

/** The two shared slots of a channel. */
class SharedSlots {
 public:
  SharedSlots() = default;
  SharedSlots(SharedSlots&& other) noexcept;
  SharedSlots& operator=(SharedSlots&& other) noexcept;
  ~SharedSlots();

  /** New ones for the calling side, and their memory for the other side. None, with errno, after a
   * failure. */
  static SharedSlots make(UniqueFd* shared);
  /** Those of a caller, for the serving side. None if their memory is not as make() makes it. */
  static SharedSlots accept(const UniqueFd& shared);

  explicit operator bool() const { return memory_ != nullptr; }
  SharedSlot& in() { return *in_; }
  SharedSlot& out() { return *out_; }

 private:
  static SharedSlots map(int fd);

  SharedSlot* memory_ = nullptr;
  SharedSlot* in_ = nullptr;
  SharedSlot* out_ = nullptr;
};

}  // namespace android::transport
