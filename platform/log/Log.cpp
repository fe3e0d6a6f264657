#include <android/log.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <string_view>

// No static destructors here: threads log while the process exits.

namespace {

constexpr size_t kPrintSize = 1024;
constexpr std::string_view kPriorityLetters = "??VDIWEFS";

// PIPE_BUF: a write() of that size to a pipe is atomic.
constexpr size_t kWriteSize = 4096;
constexpr int kTagLimit = 96;
constexpr size_t kPrefixSize = 160;

std::atomic<__android_logger_function> currentLogger{__android_log_stderr_logger};
std::atomic<int32_t> minimumPriority{ANDROID_LOG_DEFAULT};

// Logging preserves the caller's errno.
class ErrnoKeeper {
 public:
  ErrnoKeeper() = default;
  ErrnoKeeper(const ErrnoKeeper&) = delete;
  ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;
  ~ErrnoKeeper() { errno = saved_; }

 private:
  const int saved_ = errno;
};

// The lowest priority of the tag that passes the rules of ANDROID_LOG_TAGS. The last matching rule
// counts; malformed rules are ignored.
int32_t thresholdFor(std::string_view tag, std::string_view rules) {
  constexpr std::string_view kSeparators = " \t,";
  int32_t others = ANDROID_LOG_VERBOSE;
  int32_t own = ANDROID_LOG_UNKNOWN;
  while (!rules.empty()) {
    const std::string_view rule = rules.substr(0, rules.find_first_of(kSeparators));
    rules.remove_prefix(std::min(rule.size() + 1, rules.size()));
    const size_t colon = rule.find(':');
    const std::string_view name = rule.substr(0, colon);
    const bool forOthers = name == "*";
    int32_t priority = forOthers ? ANDROID_LOG_DEBUG : ANDROID_LOG_VERBOSE;
    if (colon != std::string_view::npos) {
      const std::string_view letter = rule.substr(colon + 1);
      if (letter.size() != 1) continue;
      const size_t found = kPriorityLetters.find(static_cast<char>(letter[0] & ~0x20), ANDROID_LOG_VERBOSE);
      if (found == std::string_view::npos) continue;
      priority = static_cast<int32_t>(found);
    }
    if (forOthers) others = priority;
    if (name == tag) own = priority;
  }
  return own != ANDROID_LOG_UNKNOWN ? own : others;
}

const char* orProgramName(const char* tag) { return tag != nullptr ? tag : program_invocation_short_name; }

const char* orEmpty(const char* message) { return message != nullptr ? message : ""; }

bool wantedOnStderr(int32_t priority, const char* tag) {
  static const char* const rules = [] {
    const char* const value = getenv("ANDROID_LOG_TAGS");
    return value != nullptr ? strdup(value) : nullptr;
  }();
  return rules == nullptr || priority >= thresholdFor(tag, rules);
}

// Collects prefixed lines and writes as many at a time as one atomic write() takes.
class LineWriter {
 public:
  LineWriter(int32_t priority, const char* tag) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    tm local;
    localtime_r(&now.tv_sec, &local);
    const size_t stamp = strftime(prefix_, sizeof(prefix_), "%m-%d %H:%M:%S", &local);
    const bool known = priority >= 0 && static_cast<size_t>(priority) < kPriorityLetters.size();
    const int rest = snprintf(prefix_ + stamp, sizeof(prefix_) - stamp,
                              ".%03ld %5d %5d %c %-8.*s: ", now.tv_nsec / 1'000'000, getpid(), gettid(),
                              known ? kPriorityLetters[static_cast<size_t>(priority)] : '?', kTagLimit, tag);
    prefixLength_ = stamp + static_cast<size_t>(rest);
  }
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;
  ~LineWriter() { flush(); }

  // A line that is too long for one write is split.
  void put(std::string_view line) {
    do {
      if (prefixLength_ + line.size() + 1 > sizeof(buffer_) - used_) flush();
      append({prefix_, prefixLength_});
      const std::string_view part = line.substr(0, sizeof(buffer_) - used_ - 1);
      append(part);
      append("\n");
      line.remove_prefix(part.size());
    } while (!line.empty());
  }

 private:
  void append(std::string_view bytes) { used_ += bytes.copy(buffer_ + used_, sizeof(buffer_) - used_); }

  void flush() {
    for (size_t done = 0; done < used_;) {
      const ssize_t written = write(STDERR_FILENO, buffer_ + done, used_ - done);
      if (written < 0 && errno != EINTR) break;
      done += static_cast<size_t>(std::max<ssize_t>(written, 0));
    }
    used_ = 0;
  }

  char prefix_[kPrefixSize];
  size_t prefixLength_;
  char buffer_[kWriteSize];
  size_t used_ = 0;
};

}  // namespace

int __android_log_write(int prio, const char* tag, const char* text) {
  if (__android_log_is_loggable(prio, tag, ANDROID_LOG_VERBOSE) == 0) return -EPERM;
  __android_log_message message = {sizeof(message), LOG_ID_MAIN, prio, tag, nullptr, 0, text};
  __android_log_write_log_message(&message);
  return 1;
}

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = __android_log_vprint(prio, tag, fmt, args);
  va_end(args);
  return result;
}

int __android_log_vprint(int prio, const char* tag, const char* fmt, va_list ap) {
  const ErrnoKeeper keeper;
  char text[kPrintSize];
  if (vsnprintf(text, sizeof(text), fmt, ap) < 0) text[0] = '\0';
  return __android_log_write(prio, tag, text);
}

void __android_log_write_log_message(struct __android_log_message* log_message) {
  const ErrnoKeeper keeper;
  log_message->tag = orProgramName(log_message->tag);
  log_message->message = orEmpty(log_message->message);
  currentLogger.load(std::memory_order_acquire)(log_message);
}

void __android_log_set_logger(__android_logger_function logger) {
  currentLogger.store(logger != nullptr ? logger : __android_log_stderr_logger, std::memory_order_release);
}

void __android_log_stderr_logger(const struct __android_log_message* log_message) {
  const char* const tag = orProgramName(log_message->tag);
  if (!wantedOnStderr(log_message->priority, tag)) return;
  LineWriter writer(log_message->priority, tag);
  std::string_view rest = orEmpty(log_message->message);
  do {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    writer.put(line);
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  } while (!rest.empty());
}

int __android_log_is_loggable(int prio, const char*, int default_prio) {
  const int32_t minimum = __android_log_get_minimum_priority();
  return prio >= (minimum != ANDROID_LOG_DEFAULT ? minimum : default_prio) ? 1 : 0;
}

int32_t __android_log_set_minimum_priority(int32_t priority) {
  return minimumPriority.exchange(priority, std::memory_order_relaxed);
}

int32_t __android_log_get_minimum_priority(void) { return minimumPriority.load(std::memory_order_relaxed); }
