#pragma once

#include <sys/types.h>

#include <cstdint>

namespace android {

/** What the calling thread knows of the transaction it serves. */
class IPCThreadState {
 public:
  static IPCThreadState* self();

  /** The process and the user that the transaction in progress came from; this process and its user outside
   * of one. */
  pid_t getCallingPid() const;
  uid_t getCallingUid() const;

  /** Forgets the caller, so that this process counts as it; the value restores it. */
  int64_t clearCallingIdentity();
  void restoreCallingIdentity(int64_t token);

  /** Lets binder threads run and waits for ever. `isMain` is there for the platform's sake. */
  void joinThreadPool(bool isMain = true);
};

}  // namespace android
