#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

/** What a fuzzer offers: libFuzzer or Replay.cpp calls it with one input after the other. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

/** Ends the program with the condition's text if it doesn't hold. */
#define FUZZ_CHECK(condition) ((condition) ? void() : vesk::fuzz::checkFailed(#condition, __FILE__, __LINE__))

namespace vesk::fuzz {

[[noreturn]] inline void checkFailed(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: failed: %s\n", file, line, condition);
  std::abort();
}

using Bytes = std::span<const uint8_t>;

/** Takes an input apart, from its front. There are zeros behind its end. */
class Input {
 public:
  explicit Input(Bytes bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }

  /** The next bytes, fewer at the end. */
  Bytes take(size_t size) {
    const Bytes taken = bytes_.first(std::min(size, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  Bytes rest() { return take(bytes_.size()); }

  /** A number in the machine's order. */
  template <class T>
  T number() {
    T value = 0;
    const Bytes bytes = take(sizeof(value));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  uint8_t byte() { return number<uint8_t>(); }

  /** Up to 255 bytes, with their number in front. */
  Bytes block() { return take(byte()); }
  std::string text() {
    const Bytes bytes = block();
    return {bytes.begin(), bytes.end()};
  }

 private:
  Bytes bytes_;
};

/** Looks at every byte, so that a sanitizer sees those that may not be looked at. */
inline void touch(Bytes bytes) {
  for (const uint8_t& byte : bytes) static_cast<void>(*static_cast<const volatile uint8_t*>(&byte));
}
inline void touch(const void* bytes, size_t size) { touch({static_cast<const uint8_t*>(bytes), size}); }
inline void touch(const std::string& text) { touch(text.c_str(), text.size() + 1); }

}  // namespace vesk::fuzz
