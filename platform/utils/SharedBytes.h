#pragma once

#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>

namespace android {

// Bytes with several holders, who may let go on any thread, and their number in front of them. Whoever wants
// to change them has to be the only holder.
class SharedBytes {
 public:
  // For one holder. Without memory for them the standard library raises what it raises elsewhere.
  static SharedBytes* make(size_t size) {
    const size_t whole = std::min(size, SIZE_MAX - sizeof(SharedBytes)) + sizeof(SharedBytes);
    return new (std::allocator<char>().allocate(whole)) SharedBytes;
  }
  // Those that begin here.
  static SharedBytes* at(uint8_t* bytes) { return reinterpret_cast<SharedBytes*>(bytes) - 1; }

  uint8_t* bytes() { return reinterpret_cast<uint8_t*>(this + 1); }

  void hold(uint32_t times) { holders_.fetch_add(times, std::memory_order_relaxed); }
  // Whether they are held by nobody else than the caller, who does so `times`. Those who let go read nothing
  // more.
  bool hasNoneBut(uint32_t times) const { return holders_.load(std::memory_order_acquire) == times; }
  void letGo(uint32_t times) {
    // The last holder needs no exchange, and is mostly the only one there ever was.
    if (hasNoneBut(times) || holders_.fetch_sub(times, std::memory_order_acq_rel) == times) {
      ::operator delete(this);
    }
  }

 private:
  SharedBytes() = default;

  alignas(8) std::atomic<uint32_t> holders_{1};
};

}  // namespace android
