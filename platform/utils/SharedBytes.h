#pragma once

#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>

namespace android {

// Bytes with a reference count in front. The count may change on any thread; only the holder of the
// single reference may write to the bytes.
class SharedBytes {
 public:
  // With one reference. Throws std::bad_alloc.
  static SharedBytes* make(size_t size) {
    const size_t whole = std::min(size, SIZE_MAX - sizeof(SharedBytes)) + sizeof(SharedBytes);
    return new (std::allocator<char>().allocate(whole)) SharedBytes;
  }
  // The object whose bytes begin at this address.
  static SharedBytes* at(uint8_t* bytes) { return reinterpret_cast<SharedBytes*>(bytes) - 1; }

  uint8_t* bytes() { return reinterpret_cast<uint8_t*>(this + 1); }

  // Acquire, so that the reads of former holders happen before the caller's writes.
  bool hasOneReference() const { return references_.load(std::memory_order_acquire) == 1; }
  void addReference() { references_.fetch_add(1, std::memory_order_relaxed); }
  void release() {
    // The last reference, often the only one there ever was, needs no atomic decrement.
    if (hasOneReference() || references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      ::operator delete(this);
    }
  }

 private:
  SharedBytes() = default;

  alignas(8) std::atomic<uint32_t> references_{1};
};

}  // namespace android
