#pragma once

#include <cerrno>

namespace android::transport {

/** Repeats a system call while signals interrupt it. */
template <class Call>
auto retryOnInterrupt(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace android::transport
