#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

/* Shared by the processes of the stress test. */

namespace storm {

/** The result of a call, different for each value. Never negative, since failures are. */
inline int answerTo(int value) {
  return static_cast<int>((static_cast<uint32_t>(value) * 2654435761U ^ 0x5bd1e995U) & 0x7fffffff);
}

/** The fill byte of the record for `value`. */
inline char filling(int value) { return static_cast<char>('a' + static_cast<unsigned>(value) % 26); }

/** Resources that a process must release when they are no longer needed. */
struct Resources {
  ptrdiff_t files;
  ptrdiff_t threads;

  static Resources now() { return {entries("/proc/self/fd"), entries("/proc/self/task")}; }

  bool within(const Resources& limit) const { return files <= limit.files && threads <= limit.threads; }
  std::string text() const {
    return std::to_string(files) + " descriptors, " + std::to_string(threads) + " threads";
  }

 private:
  static ptrdiff_t entries(const char* directory) {
    std::error_code error;
    return std::distance(std::filesystem::directory_iterator(directory, error), {});
  }
};

/** The resources before the transport is used. The first thread is started here, because the thread
 * sanitizer starts one of its own with it. */
inline Resources atStart() {
  std::thread([] {}).join();
  return Resources::now();
}

/** Adds the resources that the transport keeps: the reactor thread and its callback thread, an
 * epoll set and the listening socket. */
inline Resources withTransport(const Resources& before) { return {before.files + 2, before.threads + 2}; }

/** Waits until the resources are within the limit. Returns an empty text, or a description of the
 * excess. */
inline std::string findLeaks(const Resources& limit) {
  using Clock = std::chrono::steady_clock;
  for (const auto end = Clock::now() + std::chrono::seconds(20); Clock::now() < end;) {
    if (Resources::now().within(limit)) return "";
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return "leaked: " + Resources::now().text() + " instead of " + limit.text();
}

}  // namespace storm
