#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <binder/Parcel.h>
#include <utils/Errors.h>

#include "Deadline.h"
#include "Frame.h"
#include "Reactor.h"
#include "ScatterGather.h"
#include "SharedSlots.h"
#include "Spin.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * A connection that carries frames between a caller and a server thread, one at a time. A frame
 * goes through a shared slot, and what doesn't fit follows over the socket. The channel ends
 * with its socket. After an error the channel can't be used again.
 *
 * One thread at a time uses a channel. retire() may be called from any thread.
 */
class Channel {
 public:
  Channel(UniqueFd socket, SharedSlots slots);
  ~Channel();
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  /** Registers the socket with the reactor, which calls `onEnd` when the peer closes it. To be called
   * once, before any other method. */
  status_t watchEnd(Reactor* reactor, std::function<void()> onEnd = {});

  /**
   * Sends a frame with the sizes of `data`, which may be null, and `objects`. DEAD_OBJECT if the peer
   * is gone, WOULD_BLOCK if it has not taken the previous frame by the deadline, FAILED_TRANSACTION
   * for other errors. The call may have entered the SpinLimiter: after a request, and after a reply
   * without objects, wait for the next frame.
   */
  status_t send(FrameHeader header, const Parcel* data = nullptr,
                const std::vector<ObjectEntry>& objects = {}, const Deadline& deadline = {});

  /**
   * Waits for a frame. Its objects are left in objects(). DEAD_OBJECT at the end of the connection,
   * WOULD_BLOCK at the deadline, FAILED_TRANSACTION if the frame is not valid, without memory for
   * its data, and for other errors.
   */
  status_t receive(FrameHeader* header, Parcel* data, const Deadline& deadline = {});

  /** Serving side: waits until there is a request to receive. DEAD_OBJECT at the end, and once the
   * channel was retired. */
  status_t awaitRequest();

  /** Serving side: makes awaitRequest() return DEAD_OBJECT unless a request is pending. False if no
   * thread is in awaitRequest(). */
  bool retire();
  /** Serving side: the number of requests so far. */
  uint32_t requests() const { return state_->requests.load(std::memory_order_relaxed); }

  /** True once the reactor has noticed that the peer is gone. */
  bool hasEnded() const { return state_->stage.load(std::memory_order_relaxed) == kEnded; }

  /** True while the peer has not taken the last frame. Stays true if the channel ends before. */
  bool hasUntaken() { return !state_->slots.out().isEmpty(); }
  /** Waits until the peer has taken the last frame; false if the channel ends before. */
  bool awaitTaken() { return !hasUntaken() || awaitRoom({}) == OK; }

  /** The objects of the frame received last. */
  const std::vector<ObjectEntry>& objects() const { return objects_; }

  const SpinBackoff& backoff() const { return backoff_; }

 private:
  using Clock = std::chrono::steady_clock;

  enum Stage : uint32_t { kOpen, kRetired, kEnded };

  /** Shared with the reactor, since threads that sleep on a slot's futex don't see the socket close. */
  struct State {
    explicit State(SharedSlots s) : slots(std::move(s)) {}

    SharedSlots slots;
    std::atomic<uint32_t> stage{kOpen};
    std::atomic<bool> sleeps{false};
    std::atomic<bool> awaitsRequest{false};
    std::atomic<uint32_t> requests{0};
  };

  /** Wakes the threads of this side, and again after a while if one still sleeps: a hostile peer can
   * undo the wake-up. */
  static void end(Reactor* reactor, const std::shared_ptr<State>& state);

  void expectFrame(const FrameHeader& sent, bool isOtherAwake);
  void endSpin();
  void spin();
  /** Sleep until there is a frame, or room for one. awaitFrame() returns DEAD_OBJECT once the stage
   * is `last` or later. */
  status_t awaitFrame(const Deadline& deadline, Stage last = kEnded);
  status_t awaitRoom(const Deadline& deadline);
  status_t unpack(FrameHeader* header, Parcel* data);

  UniqueFd socket_;
  const std::shared_ptr<State> state_;
  Reactor* reactor_ = nullptr;
  Reactor::Key watchKey_ = 0;
  /** The next wait begins with a spin. */
  bool spins_ = false;
  /** The hint of the last request. */
  bool backToBack_ = false;
  SpinBackoff backoff_;
  Clock::time_point lastReply_;
  std::vector<ObjectEntry> objects_;
};

}  // namespace android::transport
