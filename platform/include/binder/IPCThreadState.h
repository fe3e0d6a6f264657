#pragma once

#include <sys/types.h>

#include <cstdint>

namespace android {

/** The caller of the transaction that the current thread serves. */
class IPCThreadState {
 public:
  static IPCThreadState* self();

  /** The process and the user of the caller; this process and its user outside of a transaction. */
  pid_t getCallingPid() const;
  uid_t getCallingUid() const;

  /** Makes this process count as the caller. The result is the argument of
   * restoreCallingIdentity. */
  int64_t clearCallingIdentity();
  void restoreCallingIdentity(int64_t token);

  /** Starts the binder threads and never returns. `isMain` has no effect. */
  void joinThreadPool(bool isMain = true);
};

}  // namespace android
