#pragma once

#include <sys/random.h>

#include <cstdint>

namespace android::transport {

/** Never 0, which stands for none. */
inline uint64_t randomNumber() {
  uint64_t number = 0;
  // Reading so few bytes fails only by a signal early at boot.
  while (number == 0) {
    if (::getrandom(&number, sizeof(number), 0) != sizeof(number)) number = 0;
  }
  return number;
}

}  // namespace android::transport
