#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace android::transport {

/** The end of a wait; none waits for ever. */
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/** The time left, rounded up; 0 once it has passed. */
inline int millisecondsUntil(std::chrono::steady_clock::time_point time) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
  return std::max(0, static_cast<int>(left.count()));
}

}  // namespace android::transport
