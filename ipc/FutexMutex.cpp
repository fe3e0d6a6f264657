#include "ipc/FutexMutex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace com::qv {

// Not with the waiting of std::atomic, whose table of waiters would become a symbol of the library.

void FutexMutex::waitAndLock() {
  // Who has slept can't tell whether others still do: it takes the lock as one that is awaited.
  while (state_.exchange(kAwaited, std::memory_order_acquire) != kFree) {
    ::syscall(SYS_futex, &state_, FUTEX_WAIT_PRIVATE, kAwaited, nullptr, nullptr, 0);
  }
}

void FutexMutex::wakeOne() { ::syscall(SYS_futex, &state_, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0); }

}  // namespace com::qv
