#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

/** The entry point of a fuzzer, which libFuzzer or Replay.cpp calls for each input. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

/** Aborts the program if the condition is false. */
#define FUZZ_CHECK(condition) ((condition) ? void() : vesk::fuzz::checkFailed(#condition, __FILE__, __LINE__))

namespace vesk::fuzz {

[[noreturn]] inline void checkFailed(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: failed: %s\n", file, line, condition);
  std::abort();
}

using Bytes = std::span<const uint8_t>;

/** Reads an input from the front. Numbers past its end are zero. */
class Input {
 public:
  explicit Input(Bytes bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }

  /** The next `size` bytes, or as many as are left. */
  Bytes take(size_t size) {
    const Bytes taken = bytes_.first(std::min(size, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  Bytes rest() { return take(bytes_.size()); }

  /** A number in host byte order. */
  template <class T>
  T number() {
    T value = 0;
    const Bytes bytes = take(sizeof(value));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  uint8_t byte() { return number<uint8_t>(); }

  /** Up to 255 bytes, after a byte with their number. */
  Bytes block() { return take(byte()); }
  std::string text() {
    const Bytes bytes = block();
    return {bytes.begin(), bytes.end()};
  }

 private:
  Bytes bytes_;
};

/** Reads every byte, so that a sanitizer reports invalid ones. */
inline void touch(Bytes bytes) {
  for (const uint8_t& byte : bytes) static_cast<void>(*static_cast<const volatile uint8_t*>(&byte));
}
inline void touch(const void* bytes, size_t size) { touch({static_cast<const uint8_t*>(bytes), size}); }
inline void touch(const std::string& text) { touch(text.c_str(), text.size() + 1); }

}  // namespace vesk::fuzz
