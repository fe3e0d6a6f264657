#pragma once

#include <sys/types.h>

#include <array>
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
 * A connection that carries frames, one at a time. All that is known of the carrier stands here: a socket
 * that keeps packets whole, so that a frame that fits the first packet costs one send and one receive, and
 * mailboxes for receivers that look for a frame before they sleep. After any error the connection is of no
 * more use.
 */
class Lane {
 public:
  enum class Side { kCalls, kServes };

  Lane(UniqueFd socket, Side side) : socket_(std::move(socket)), awaitsShare_(side == Side::kServes) {}
  ~Lane() { endLookout(); }

  /** Offers the other side mailboxes, if this process ever looks for frames. Before any frame is sent. */
  void share();

  /**
   * Sends a frame; `data` may be null, the sizes in `header` are filled in. DEAD_OBJECT if the other side is
   * gone, FAILED_TRANSACTION for other errors. A request, and a reply without objects, is to be followed by a
   * receive() of what comes next.
   */
  status_t send(FrameHeader header, const Parcel* data = nullptr,
                const std::vector<ObjectEntry>& objects = {});

  /** Sends a frame without data, if that can be done in time; else WOULD_BLOCK, and the lane is as it was. */
  status_t trySend(const FrameHeader& header, int timeoutMs = 0);

  /**
   * Waits for a frame. Its objects are left in objects(). DEAD_OBJECT at the end of the connection,
   * FAILED_TRANSACTION if what came is no frame or there is no memory for it.
   */
  status_t receive(FrameHeader* header, Parcel* data);

  /** Waits for the answer to an acquire. */
  bool waitReadable(int timeoutMs) const { return transport::waitReadable(socket_.get(), timeoutMs); }

  /** The objects of the frame received last. */
  const std::vector<ObjectEntry>& objects() const { return objects_; }

  const Patience& patience() const { return patience_; }

 private:
  using Clock = std::chrono::steady_clock;

  bool expectsFrameSoon(const FrameHeader& sent, bool byMailbox, size_t objectCount);
  status_t sendPackets(Pieces* pieces);
  void endLookout();
  /** Looks into the mailbox until something is there (or is about to come by the socket), for a while. */
  status_t lookOut(bool* found);
  /** The size of the next packet, which is in the buffer; as recv(). */
  ssize_t receivePacket();
  status_t unpack(const uint8_t* packet, size_t size, FrameHeader* header, Parcel* data);

  UniqueFd socket_;
  /** A share frame may come first. */
  bool awaitsShare_;
  /** This side has said that it looks into its mailbox. */
  bool looksOut_ = false;
  /** What the hint of the last request said. */
  bool backToBack_ = false;
  Patience patience_;
  Clock::time_point lastReply_;
  Mailboxes mailboxes_;
  std::vector<ObjectEntry> objects_;
  std::array<uint8_t, kFirstPacketSize> buffer_;
};

}  // namespace android::transport
