#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Frame.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * Holds one frame for a receiver that looks for it, in memory of two processes. Only while the receiver says
 * that it looks does the sender put anything here; otherwise it takes the socket, on which a receiver can
 * sleep. Nobody ever sleeps on a mailbox, and so nobody has to be woken.
 *
 * The other side may be hostile and change anything at any time: whatever is read here is read once, and
 * checked after that.
 */
class Mailbox {
 public:
  /** The receiver begins to look. The mailbox is idle or out of order. */
  void open() { state_.store(kOpen, std::memory_order_relaxed); }

  /** The receiver looks no longer, or the sender, who has claimed nothing, sends it to the socket. False if
   * it was not open; for the receiver, the sender has begun to write then. */
  bool close() { return exchange(kOpen, kIdle); }

  bool isOpen() const { return state_.load(std::memory_order_acquire) == kOpen; }
  bool isFull() const { return state_.load(std::memory_order_acquire) == kFull; }
  bool isIdle() const { return state_.load(std::memory_order_acquire) == kIdle; }

  /** The receiver has what was in it. */
  void empty() { state_.store(kIdle, std::memory_order_relaxed); }

  /** Whether the receiver looks; then the sender has to fill the mailbox. */
  bool claim() { return exchange(kOpen, kWriting); }
  void fill(size_t size) {
    size_ = static_cast<uint32_t>(size);
    state_.store(kFull, std::memory_order_release);
  }

  /** How much is in a full one, as its sender says. */
  size_t size() const { return *const_cast<const volatile uint32_t*>(&size_); }
  uint8_t* bytes() { return bytes_; }

 private:
  enum State : uint32_t { kIdle, kOpen, kWriting, kFull };

  bool exchange(uint32_t from, uint32_t to) {
    // The sender looks here for every frame, mostly in vain.
    if (state_.load(std::memory_order_relaxed) != from) return false;
    return state_.compare_exchange_strong(from, to, std::memory_order_acq_rel, std::memory_order_relaxed);
  }

  std::atomic<uint32_t> state_;
  uint32_t size_;
  alignas(64) uint8_t bytes_[kFirstPacketSize];
};
static_assert(sizeof(Mailbox) == 16 * 1024 && std::atomic<uint32_t>::is_always_lock_free);

/** The two mailboxes of a lane. */
class Mailboxes {
 public:
  Mailboxes() = default;
  Mailboxes(Mailboxes&& other) noexcept;
  Mailboxes& operator=(Mailboxes&& other) noexcept;
  ~Mailboxes();

  /** New ones, for the calling side, and what the other side needs to have them, too. None if there is no
   * memory for them. */
  static Mailboxes make(UniqueFd* shared);
  /** Those that a caller has made, for the serving side. None if they are not as make() makes them. */
  static Mailboxes accept(const UniqueFd& shared);

  explicit operator bool() const { return memory_ != nullptr; }
  Mailbox& in() { return *in_; }
  Mailbox& out() { return *out_; }

 private:
  static Mailboxes map(int fd);

  Mailbox* memory_ = nullptr;
  Mailbox* in_ = nullptr;
  Mailbox* out_ = nullptr;
};

}  // namespace android::transport
