#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <binder/Parcel.h>
#include <utils/Errors.h>

#include "Frame.h"
#include "Mailboxes.h"
#include "Patience.h"
#include "Pieces.h"
#include "UniqueFd.h"

namespace android::transport {

/** Waits until there is something to receive; false if there is nothing in time. */
bool waitReadable(int socket, int timeoutMs);

/**
 * A connection that carries frames, one at a time. All that is known of the carrier stands here. A lane
 * begins as a socket that keeps packets whole. The caller may offer mailboxes, and when the server has
 * answered that it has them, too, every frame goes by them; what doesn't fit in follows over the socket,
 * whose end is still that of the lane. After any error the connection is of no more use.
 */
class Lane {
 public:
  enum class Side { kCalls, kServes };

  Lane(UniqueFd socket, Side side) : socket_(std::move(socket)), awaitsShare_(side == Side::kServes) {}
  ~Lane();
  Lane(const Lane&) = delete;
  Lane& operator=(const Lane&) = delete;

  /** Offers the other side mailboxes. Before any frame is sent. */
  void share();

  /**
   * Sends a frame; `data` may be null, the sizes in `header` are filled in. DEAD_OBJECT if the other side is
   * gone, FAILED_TRANSACTION for other errors. A request, and a reply without objects, is to be followed by a
   * receive() of what comes next.
   */
  status_t send(FrameHeader header, const Parcel* data = nullptr,
                const std::vector<ObjectEntry>& objects = {});

  /** Sends a frame without data, if that can be done in time; else WOULD_BLOCK, and the lane is as it was. */
  status_t trySend(FrameHeader header, int timeoutMs = 0);

  /**
   * Waits for a frame. Its objects are left in objects(). DEAD_OBJECT at the end of the connection,
   * FAILED_TRANSACTION if what came is no frame or there is no memory for it.
   */
  status_t receive(FrameHeader* header, Parcel* data);

  /** Waits for the answer to an acquire; false if there is nothing in time. */
  bool waitReadable(int timeoutMs);

  /** Whether the other side is known to be gone. */
  bool hasEnded() const { return ended_.load(std::memory_order_relaxed); }

  /** For the reactor, which alone notices the end of the connection while all sleep at mailboxes. Whether
   * this is to be said again, since a thread may still sleep: the other side can undo what wakes it. */
  bool end();

  /** Whether the other side has not taken the frame that was sent to it last by mailbox. */
  bool hasUntaken() { return isShared_ && !mailboxes_.out().isEmpty(); }

  int socket() const { return socket_.get(); }

  /** The objects of the frame received last. */
  const std::vector<ObjectEntry>& objects() const { return objects_; }

  const Patience& patience() const { return patience_; }

 private:
  using Clock = std::chrono::steady_clock;

  status_t sendByMailbox(FrameHeader* header, Pieces* pieces);
  status_t sendPackets(Pieces* pieces);
  void expectFrame(const FrameHeader& sent, bool isOtherAwake);
  void endLookout();
  /** Looks into the mailbox for a while. */
  void lookOut();
  /** Sleep until there is something, or room, in a mailbox. DEAD_OBJECT at the end of the connection,
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
  /** Both sides have the mailboxes, and know it. */
  bool isShared_ = false;
  /** The next wait begins with a look. */
  bool looksOut_ = false;
  /** What the hint of the last request said. */
  bool backToBack_ = false;
  /** The reactor has the lane. */
  bool isWatched_ = false;
  std::atomic<bool> ended_{false};
  std::atomic<bool> sleeps_{false};
  Patience patience_;
  Clock::time_point lastReply_;
  Mailboxes mailboxes_;
  std::vector<ObjectEntry> objects_;
  std::array<uint8_t, kFirstPacketSize> buffer_;
};

}  // namespace android::transport
