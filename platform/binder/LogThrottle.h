#pragma once

#include <atomic>

namespace android::transport {

/** Keeps a failure that goes on from being logged again and again. */
class LogThrottle {
 public:
  /** Whether `error` is one, and another than last time. 0 for a success, after which any error is
   * news. */
  bool shouldLog(int error) { return last_.exchange(error) != error && error != 0; }

 private:
  std::atomic<int> last_{0};
};

}  // namespace android::transport
