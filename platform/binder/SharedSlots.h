#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Deadline.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * Holds one frame, or its beginning, in memory of two processes. One side puts frames in and the other takes
 * them out, and each can sleep until that is possible.
 *
 * The other side may be hostile and change anything at any time: whatever is read here is read once, and
 * checked after that.
 */
class SharedSlot {
 public:
  static constexpr size_t kSize = 64 * 1024;
  /** What fits in. */
  static constexpr size_t kCapacity = kSize - 64;

  bool isFull() const {
    const uint32_t state = state_.load(std::memory_order_acquire);
    return state != kEmpty && state != kAwaited;
  }
  bool isEmpty() const {
    const uint32_t state = state_.load(std::memory_order_acquire);
    return state != kFull && state != kCongested;
  }

  /** The sender has put so many bytes in. Whether the receiver was awake. */
  bool fill(size_t size) {
    size_ = static_cast<uint32_t>(size);
    if (state_.exchange(kFull, std::memory_order_acq_rel) != kAwaited) return true;
    wake();
    return false;
  }
  /** The receiver has what was in it. */
  void empty() {
    if (state_.exchange(kEmpty, std::memory_order_acq_rel) == kCongested) wake();
  }

  /** How much is in a full one, as its sender says. */
  size_t size() const { return *const_cast<const volatile uint32_t*>(&size_); }
  uint8_t* bytes() { return bytes_; }

  /** The receiver, or the sender, sleeps; not if `ended` is set, and perhaps not long enough. False when it
   * is time to give up. */
  bool sleepUntilFull(const std::atomic<bool>& ended, const Deadline& deadline) {
    return sleep(kEmpty, kAwaited, ended, deadline);
  }
  bool sleepUntilEmpty(const std::atomic<bool>& ended, const Deadline& deadline) {
    return sleep(kFull, kCongested, ended, deadline);
  }
  /** Has whoever of this side sleeps look again. */
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

  bool sleep(uint32_t awake, uint32_t asleep, const std::atomic<bool>& ended, const Deadline& deadline);
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

  /** New ones, for the calling side, and what the other side needs to have them, too. None if there is no
   * memory for them. */
  static SharedSlots make(UniqueFd* shared);
  /** Those that a caller has made, for the serving side. None if they are not as make() makes them. */
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
