#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <binder/Parcel.h>
#include <utils/Errors.h>

#include "Frame.h"
#include "Reactor.h"
#include "ScatterGather.h"
#include "SharedSlots.h"
#include "Spin.h"
#include "UniqueFd.h"

namespace android::transport {

/** Waits until there is something to receive; false if there is nothing by the deadline. */
bool waitReadable(int socket, const Deadline& deadline);

/**
 * A connection that carries frames, one at a time. All that is known of the carrier stands here. A channel
 * begins as a socket that keeps packets whole. The caller may offer shared slots, and when the server has
 * answered that it has them, too, every frame goes by them; what doesn't fit in follows over the socket,
 * whose end is still that of the channel. After any error the connection is of no more use.
 */
class Channel {
 public:
  enum class Side { kCalls, kServes };

  Channel(UniqueFd socket, Side side) : socket_(std::move(socket)), awaitsShare_(side == Side::kServes) {}
  ~Channel();
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  /** Offers the other side shared slots. Before any frame is sent. */
  void share();

  /**
   * Sends a frame; `data` may be null, the sizes in `header` are filled in. DEAD_OBJECT if the other side is
   * gone, FAILED_TRANSACTION for other errors. A request, and a reply without objects, is to be followed by a
   * receive() of what comes next.
   */
  status_t send(FrameHeader header, const Parcel* data = nullptr,
                const std::vector<ObjectEntry>& objects = {});

  /** Sends a frame without data, if that can be done by the deadline; else WOULD_BLOCK, and the channel is
   * unchanged. */
  status_t trySend(FrameHeader header, std::chrono::steady_clock::time_point deadline = {});

  /**
   * Waits for a frame. Its objects are left in objects(). DEAD_OBJECT at the end of the connection,
   * FAILED_TRANSACTION if what came is no frame or there is no memory for it.
   */
  status_t receive(FrameHeader* header, Parcel* data);

  /** Waits for the answer to an acquire; false if there is nothing by the deadline. */
  bool waitReadable(const Deadline& deadline);

  /** Whether the other side is known to be gone. */
  bool hasEnded() const { return end_->ended.load(std::memory_order_relaxed); }

  /** Whether the other side has not taken the frame that was sent to it last by shared slot. */
  bool hasUntaken() { return isShared_ && !end_->slots.out().isEmpty(); }

  int socket() const { return socket_.get(); }

  /** The objects of the frame received last. */
  const std::vector<ObjectEntry>& objects() const { return objects_; }

  const SpinBackoff& backoff() const { return backoff_; }

 private:
  using Clock = std::chrono::steady_clock;

  /** Shared with the reactor, which alone notices the end of the connection while all threads sleep at the
   * shared slots. */
  struct End {
    SharedSlots slots;
    std::atomic<bool> ended{false};
    std::atomic<bool> sleeps{false};

    /** Wakes the threads of this side, and again after a while if one still sleeps: the other side can undo
     * what wakes it. */
    static void report(Reactor* reactor, const std::shared_ptr<End>& end);
  };

  status_t sendBySharedSlot(FrameHeader* header, ScatterGather* pieces);
  status_t sendPackets(ScatterGather* pieces);
  void expectFrame(const FrameHeader& sent, bool isOtherAwake);
  bool watchEnd();
  void endSpin();
  /** Looks into the shared slot for a while. */
  void spin();
  /** Sleep until there is something, or room, in a shared slot. DEAD_OBJECT at the end of the connection,
   * WOULD_BLOCK when it is time to give up. */
  status_t awaitFrame(const Deadline& deadline = {});
  status_t awaitRoom(const Deadline& deadline = {});
  /** The size of the next packet, which is in the buffer; as recv(). */
  ssize_t receivePacket();
  void acceptShare(const UniqueFd& shared);
  /** What has come of a frame, up to `most` bytes, and whatever is still to come by the socket. */
  status_t unpack(const uint8_t* bytes, size_t size, size_t most, FrameHeader* header, Parcel* data);

  UniqueFd socket_;
  /** A share frame may come first. */
  bool awaitsShare_;
  /** Both sides have the shared slots, and know it. */
  bool isShared_ = false;
  /** The next wait begins with a look. */
  bool spins_ = false;
  /** What the hint of the last request said. */
  bool backToBack_ = false;
  SpinBackoff backoff_;
  Clock::time_point lastReply_;
  /** Set while the reactor watches for the end. */
  Reactor::Key watchKey_ = 0;
  std::shared_ptr<End> end_ = std::make_shared<End>();
  std::vector<ObjectEntry> objects_;
  std::array<uint8_t, kFirstPacketSize> buffer_;
};

}  // namespace android::transport
