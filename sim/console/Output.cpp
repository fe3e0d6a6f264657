#include "console/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string_view>
#include <thread>
#include <utility>

namespace sim {

namespace {

void writeAll(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
    if (written < 0 && errno != EINTR) return;
    if (written > 0) text.remove_prefix(static_cast<size_t>(written));
  }
}

}  // namespace

Output& Output::self() {
  static Output& output = *new Output;
  return output;
}

Output::Output() {
  std::thread([this] { run(); }).detach();
}

void Output::say(std::string lines) {
  if (lines.empty()) return;
  {
    const std::lock_guard lock(mutex_);
    if (lines_.size() == kMaxLines) {
      ++dropped_;
      return;
    }
    lines_.push_back(std::move(lines));
  }
  changed_.notify_all();
}

void Output::flush(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, timeout, [this] { return lines_.empty() && !writing_; });
}

void Output::aroundPrompt(int fd) {
  const std::lock_guard lock(mutex_);
  promptFd_ = fd;
}

void Output::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !lines_.empty(); });
    std::string text = std::move(lines_.front());
    lines_.pop_front();
    if (lines_.empty() && dropped_ > 0) {
      text += "... and " + std::to_string(std::exchange(dropped_, 0)) + " lines discarded\n";
    }
    writing_ = true;
    const int promptFd = promptFd_;
    lock.unlock();
    if (promptFd >= 0) text.insert(0, "\r\033[K");
    writeAll(text);
    const uint64_t one = 1;
    if (promptFd >= 0 && write(promptFd, &one, sizeof(one)) < 0) {
      // The counter is full: the prompt will be redrawn.
    }
    lock.lock();
    writing_ = false;
    changed_.notify_all();
  }
}

}  // namespace sim
