#pragma once

#include <sys/types.h>

namespace android::transport {

/** The process and the user on whose behalf the current thread runs. */
struct CallingIdentity {
  pid_t pid;
  uid_t uid;

  static CallingIdentity get();
  static void set(CallingIdentity identity);
};

}  // namespace android::transport
