#pragma once

#include <sys/uio.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace android::transport {

/** A list of memory pieces, consumed a packet at a time. */
class ScatterGather {
 public:
  static constexpr size_t kMost = 3;

  void add(const void* base, size_t size) {
    if (size > 0) pieces_[count_++] = {const_cast<void*>(base), size};
    size_ += size;
  }

  size_t size() const { return size_; }

  /** Copies the next `size` bytes between the pieces and `memory`. */
  void copyTo(uint8_t* memory, size_t size) {
    for (const iovec& piece : next(size)) {
      std::memcpy(memory, piece.iov_base, piece.iov_len);
      memory += piece.iov_len;
    }
  }
  void copyFrom(const uint8_t* memory, size_t size) {
    for (const iovec& piece : next(size)) {
      std::memcpy(piece.iov_base, memory, piece.iov_len);
      memory += piece.iov_len;
    }
  }

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

}  // namespace android::transport
