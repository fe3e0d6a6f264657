#include "Spin.h"

#include <sched.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace android::transport {

namespace {

/** Longer than it takes to wake a thread on a sleeping processor, so that two sides that both sleep
 * get into step. */
constexpr int kDefaultSpinUs = 50;
constexpr int kMaxSpinUs = 1000;

/** The length of the pause after a preempted spin, in durations of that spin. */
constexpr int kPauseFactor = 64;

int spinUs() {
  const char* const text = std::getenv("BINDER_SPIN_US");
  if (text == nullptr) return kDefaultSpinUs;
  const char* const end = text + std::strlen(text);
  int value = 0;
  const auto result = std::from_chars(text, end, value);
  const bool isValid = result.ec == std::errc() && result.ptr == end && value >= 0 && value <= kMaxSpinUs;
  return isValid ? value : kDefaultSpinUs;
}

int processors() {
  cpu_set_t set;
  return ::sched_getaffinity(0, sizeof(set), &set) == 0 ? CPU_COUNT(&set) : 1;
}

}  // namespace

SpinLimiter& SpinLimiter::self() {
  static SpinLimiter& limiter = *new SpinLimiter();
  return limiter;
}

void SpinLimiter::wasPreempted(std::chrono::nanoseconds time) {
  const Clock::time_point until = Clock::now() + kPauseFactor * time;
  pausedUntil_.store(std::chrono::duration_cast<Clock::duration>(until.time_since_epoch()).count(),
                     std::memory_order_relaxed);
}

SpinLimiter::SpinLimiter() : limit_(processors() - 1) {
  if (limit_ > 0) duration_ = std::chrono::microseconds(spinUs());
}

}  // namespace android::transport
