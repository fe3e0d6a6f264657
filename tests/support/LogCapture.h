#pragma once

#include <android/log.h>

#include <mutex>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "WaitUntil.h"

namespace vesk::test {

struct LogLine {
  int priority;
  std::string tag;
  std::string text;
  bool operator==(const LogLine&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const LogLine& line) {
  return out << line.priority << " " << line.tag << " \"" << line.text << "\"";
}

/** Captures the log of this process while it exists; one at a time. */
class LogCapture {
 public:
  LogCapture() {
    lines().take();
    __android_log_set_logger([](const __android_log_message* message) {
      lines().add({message->priority, message->tag, message->message});
    });
  }
  ~LogCapture() { __android_log_set_logger(nullptr); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /** The lines since the previous call. */
  std::vector<LogLine> take() { return lines().take(); }

  /** Waits for the given last line. */
  std::vector<LogLine> takeUntil(const LogLine& last) {
    std::vector<LogLine> taken;
    waitUntil("the last line", [&] {
      for (LogLine& line : take()) taken.push_back(std::move(line));
      return !taken.empty() && taken.back() == last;
    });
    return taken;
  }

 private:
  class Lines {
   public:
    void add(LogLine line) {
      const std::lock_guard lock(mutex_);
      lines_.push_back(std::move(line));
    }
    std::vector<LogLine> take() {
      const std::lock_guard lock(mutex_);
      return std::exchange(lines_, {});
    }

   private:
    std::mutex mutex_;
    std::vector<LogLine> lines_;
  };

  /** Never destroyed: threads may log while the process exits. */
  static Lines& lines() {
    static Lines& lines = *new Lines;
    return lines;
  }
};

}  // namespace vesk::test
