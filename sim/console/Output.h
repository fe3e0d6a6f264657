#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace sim {

/** Writes the standard output on a thread of its own, so that callers never block. If stdout isn't
 * read, lines beyond kMaxLines are discarded, and the output states their number. Thread-safe. */
class Output {
 public:
  static constexpr size_t kMaxLines = 10'000;

  /** The only instance, which is never destroyed. */
  static Output& self();

  /** Queues lines that each end with a newline. */
  void say(std::string lines);
  /** Waits until all lines are written, or until the timeout. */
  void flush(std::chrono::milliseconds timeout);
  /** For a terminal: from now on each write replaces the line of the prompt and makes the eventfd
   * `fd` readable. */
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
