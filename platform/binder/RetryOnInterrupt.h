#pragma once

#include <cerrno>

namespace android::transport {

/** The result of a system call that no signal has interrupted. */
template <class Call>
auto retryOnInterrupt(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace android::transport
