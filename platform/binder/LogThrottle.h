#pragma once

#include <atomic>

namespace android::transport {

/** Logs a lasting failure once. */
class LogThrottle {
 public:
  /** True if `error` is not 0 and differs from the last one. Pass 0 for a success. */
  bool shouldLog(int error) { return last_.exchange(error) != error && error != 0; }

 private:
  std::atomic<int> last_{0};
};

}  // namespace android::transport
