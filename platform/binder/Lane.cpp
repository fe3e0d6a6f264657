#include "Lane.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <span>

#include "ParcelAccess.h"

namespace android::transport {

namespace {

/** Walks over some pieces of memory, a packet at a time. */
class Pieces {
 public:
  static constexpr size_t kMost = 3;

  void add(const void* base, size_t size) {
    if (size > 0) pieces_[count_++] = {const_cast<void*>(base), size};
    size_ += size;
  }

  size_t size() const { return size_; }

  /** The next `size` bytes, valid until the next call. */
  std::span<iovec> next(size_t size) {
    size_t used = 0;
    size_ -= size;
    for (size_t i = first_; size > 0; ++i) {
      const size_t part = std::min(size, pieces_[i].iov_len);
      packet_[used++] = {pieces_[i].iov_base, part};
      pieces_[i].iov_base = static_cast<uint8_t*>(pieces_[i].iov_base) + part;
      pieces_[i].iov_len -= part;
      size -= part;
      if (pieces_[i].iov_len == 0) first_ = i + 1;
    }
    return {packet_, used};
  }

 private:
  iovec pieces_[kMost];
  iovec packet_[kMost];
  size_t first_ = 0;
  size_t count_ = 0;
  size_t size_ = 0;
};

template <class Call>
ssize_t retryOnInterrupt(Call call) {
  ssize_t result;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

status_t statusOfErrno() {
  return errno == EPIPE || errno == ECONNRESET || errno == ENOTCONN ? DEAD_OBJECT : FAILED_TRANSACTION;
}

msghdr messageOf(std::span<iovec> packet) {
  msghdr message = {};
  message.msg_iov = packet.data();
  message.msg_iovlen = packet.size();
  return message;
}

bool isValid(const FrameHeader& header) {
  return header.magic == kMagic && header.dataSize <= kMaxDataSize &&
         header.objectCount <= header.dataSize / sizeof(FlatBinder);
}

}  // namespace

bool waitReadable(int socket, int timeoutMs) {
  pollfd poller{socket, POLLIN, 0};
  return retryOnInterrupt([&] { return ::poll(&poller, 1, timeoutMs); }) > 0;
}

status_t Lane::send(FrameHeader header, const Parcel* data, const std::vector<ObjectEntry>& objects) {
  Pieces pieces;
  pieces.add(&header, sizeof(header));
  if (data != nullptr) {
    header.dataSize = static_cast<uint32_t>(data->dataSize());
    header.objectCount = static_cast<uint32_t>(objects.size());
    pieces.add(data->data(), data->dataSize());
    pieces.add(objects.data(), objects.size() * sizeof(ObjectEntry));
  }
  for (size_t packetSize = kFirstPacketSize; pieces.size() > 0; packetSize = kPacketSize) {
    const msghdr message = messageOf(pieces.next(std::min(pieces.size(), packetSize)));
    if (retryOnInterrupt([&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL); }) < 0) {
      return statusOfErrno();
    }
  }
  return OK;
}

status_t Lane::trySend(const FrameHeader& header) {
  const auto send = [&] {
    return ::send(socket_.get(), &header, sizeof(header), MSG_NOSIGNAL | MSG_DONTWAIT);
  };
  if (retryOnInterrupt(send) >= 0) return OK;
  return errno == EAGAIN || errno == EWOULDBLOCK ? WOULD_BLOCK : statusOfErrno();
}

status_t Lane::receive(FrameHeader* header, Parcel* data) {
  const ssize_t first =
      retryOnInterrupt([&] { return ::recv(socket_.get(), buffer_.data(), buffer_.size(), MSG_TRUNC); });
  if (first < 0) return statusOfErrno();
  if (first == 0) return DEAD_OBJECT;
  const auto packetSize = static_cast<size_t>(first);
  if (packetSize < sizeof(*header) || packetSize > buffer_.size()) return FAILED_TRANSACTION;
  std::memcpy(header, buffer_.data(), sizeof(*header));
  if (!isValid(*header)) return FAILED_TRANSACTION;

  Pieces pieces;
  uint8_t* const contents = ParcelAccess::prepare(data, header->dataSize);
  if (contents == nullptr) return FAILED_TRANSACTION;
  pieces.add(contents, header->dataSize);
  objects_.clear();
  if (header->objectCount > 0) {
    objects_.resize(header->objectCount);
    pieces.add(objects_.data(), objects_.size() * sizeof(ObjectEntry));
  }

  const uint8_t* buffered = buffer_.data() + sizeof(*header);
  const size_t bufferedSize = packetSize - sizeof(*header);
  if (bufferedSize != std::min(pieces.size(), buffer_.size() - sizeof(*header))) return FAILED_TRANSACTION;
  for (const iovec& piece : pieces.next(bufferedSize)) {
    std::memcpy(piece.iov_base, buffered, piece.iov_len);
    buffered += piece.iov_len;
  }

  while (pieces.size() > 0) {
    const size_t expected = std::min(pieces.size(), kPacketSize);
    msghdr message = messageOf(pieces.next(expected));
    const ssize_t received = retryOnInterrupt([&] { return ::recvmsg(socket_.get(), &message, MSG_TRUNC); });
    if (received < 0) return statusOfErrno();
    if (received == 0) return DEAD_OBJECT;
    if (static_cast<size_t>(received) != expected) return FAILED_TRANSACTION;
  }
  return OK;
}

}  // namespace android::transport
