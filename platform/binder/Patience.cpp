#include "Patience.h"

#include <sched.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace android::transport {

namespace {

/** Longer than it takes to wake a thread on a sleeping processor, so that two sides that both sleep get into
 * step. */
constexpr int kDefaultPatienceUs = 50;
constexpr int kMostPatienceUs = 1000;

int patienceUs() {
  const char* const text = std::getenv("BINDER_SPIN_US");
  if (text == nullptr) return kDefaultPatienceUs;
  const char* const end = text + std::strlen(text);
  int value = 0;
  const auto result = std::from_chars(text, end, value);
  const bool isValid =
      result.ec == std::errc() && result.ptr == end && value >= 0 && value <= kMostPatienceUs;
  return isValid ? value : kDefaultPatienceUs;
}

int processors() {
  cpu_set_t set;
  return ::sched_getaffinity(0, sizeof(set), &set) == 0 ? CPU_COUNT(&set) : 1;
}

}  // namespace

Lookouts& Lookouts::self() {
  static Lookouts& lookouts = *new Lookouts();
  return lookouts;
}

Lookouts::Lookouts() : limit_(processors() - 1) {
  if (limit_ > 0) patienceNs_ = int64_t{patienceUs()} * 1000;
}

}  // namespace android::transport
