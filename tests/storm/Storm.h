#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

/* Shared by the processes of the storm. */

namespace storm {

/** The answer to a call, which tells it from that to any other. Never negative, as failures are. */
inline int answerTo(int value) {
  return static_cast<int>((static_cast<uint32_t>(value) * 2654435761U ^ 0x5bd1e995U) & 0x7fffffff);
}

/** The bytes of a record that belongs to `value`. */
inline char filling(int value) { return static_cast<char>('a' + static_cast<unsigned>(value) % 26); }

/** Resources that a process must give back once they are not needed any more. */
struct Holdings {
  ptrdiff_t files;
  ptrdiff_t threads;

  static Holdings now() { return {entries("/proc/self/fd"), entries("/proc/self/task")}; }

  bool within(const Holdings& limit) const { return files <= limit.files && threads <= limit.threads; }
  std::string text() const {
    return std::to_string(files) + " descriptors, " + std::to_string(threads) + " threads";
  }

 private:
  static ptrdiff_t entries(const char* directory) {
    std::error_code error;
    return std::distance(std::filesystem::directory_iterator(directory, error), {});
  }
};

/** Before the transport is used. The thread sanitizer starts a thread of its own with the first
 * that is started. */
inline Holdings atStart() {
  std::thread([] {}).join();
  return Holdings::now();
}

/** The reactor and its spare thread, its epoll and its listening socket: once made, they stay. */
inline Holdings withTransport(const Holdings& before) { return {before.files + 2, before.threads + 2}; }

/** Waits until no more is held than that. Empty, or the leftovers. */
inline std::string leftOver(const Holdings& limit) {
  using Clock = std::chrono::steady_clock;
  for (const auto end = Clock::now() + std::chrono::seconds(20); Clock::now() < end;) {
    if (Holdings::now().within(limit)) return "";
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return "left over: " + Holdings::now().text() + " instead of " + limit.text();
}

}  // namespace storm
