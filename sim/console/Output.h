#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace sim {

/**
 * The standard output, written by a thread of its own, so that nobody waits for a reader who doesn't read.
 * What is too much is dropped, and how much that was is said. For any thread.
 */
class Output {
 public:
  static constexpr size_t kMaxLines = 10'000;

  /** The only one, which is never destroyed. */
  static Output& self();

  /** Some lines, each with its end. */
  void say(std::string lines);
  /** Waits until everything is written, or the time is over. */
  void flush(std::chrono::milliseconds patience);
  /** On a terminal: each write takes the place of the prompt's line, and makes `fd`, an event counter,
   * readable. */
  void aroundPrompt(int fd);

 private:
  Output();
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> lines_;
  size_t dropped_ = 0;
  bool writing_ = false;
  int promptFd_ = -1;
};

}  // namespace sim
