#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <binder/Parcel.h>
#include <utils/Errors.h>

#include "Frame.h"
#include "UniqueFd.h"

namespace android::transport {

/** Waits until there is something to receive; false if there is nothing in time. */
bool waitReadable(int socket, int timeoutMs);

/**
 * A connection that carries frames, one at a time. All that is known of the carrier stands here: a socket
 * that keeps packets whole, so that a frame that fits the first packet costs one send and one receive. After
 * any error the connection is of no more use.
 */
class Lane {
 public:
  explicit Lane(UniqueFd socket) : socket_(std::move(socket)) {}

  /**
   * Sends a frame; `data` may be null, the sizes in `header` are filled in. DEAD_OBJECT if the other side is
   * gone, FAILED_TRANSACTION for other errors.
   */
  status_t send(FrameHeader header, const Parcel* data = nullptr,
                const std::vector<ObjectEntry>& objects = {});

  /** Sends a frame without data, if that can be done without waiting; else WOULD_BLOCK, and the lane is as it
   * was. */
  status_t trySend(const FrameHeader& header);

  /**
   * Waits for a frame. Its objects are left in objects(). DEAD_OBJECT at the end of the connection,
   * FAILED_TRANSACTION if what came is no frame or there is no memory for it.
   */
  status_t receive(FrameHeader* header, Parcel* data);

  bool waitReadable(int timeoutMs) const { return transport::waitReadable(socket_.get(), timeoutMs); }

  /** The objects of the frame received last. */
  const std::vector<ObjectEntry>& objects() const { return objects_; }

 private:
  /** The receiver doesn't know yet how long the frame is: its first packet has to fit this. The others are
   * larger. */
  static constexpr size_t kFirstPacketSize = 8 * 1024;
  static constexpr size_t kPacketSize = 64 * 1024;

  UniqueFd socket_;
  std::vector<ObjectEntry> objects_;
  std::array<uint8_t, kFirstPacketSize> buffer_;
};

}  // namespace android::transport
