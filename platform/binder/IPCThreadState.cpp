#include <binder/IPCThreadState.h>

#include <binder/ProcessState.h>
#include <unistd.h>

#include <optional>

#include "CallingIdentity.h"

namespace android {

namespace transport {

namespace {
thread_local std::optional<CallingIdentity> caller;
}

CallingIdentity CallingIdentity::get() { return caller.value_or(CallingIdentity{::getpid(), ::geteuid()}); }

void CallingIdentity::set(CallingIdentity identity) { caller = identity; }

}  // namespace transport

using transport::CallingIdentity;

IPCThreadState* IPCThreadState::self() {
  static IPCThreadState state;
  return &state;
}

pid_t IPCThreadState::getCallingPid() const { return CallingIdentity::get().pid; }

uid_t IPCThreadState::getCallingUid() const { return CallingIdentity::get().uid; }

int64_t IPCThreadState::clearCallingIdentity() {
  const auto [pid, uid] = CallingIdentity::get();
  CallingIdentity::set({::getpid(), ::geteuid()});
  return static_cast<int64_t>(static_cast<uint64_t>(uid) << 32 | static_cast<uint32_t>(pid));
}

void IPCThreadState::restoreCallingIdentity(int64_t token) {
  CallingIdentity::set({static_cast<pid_t>(token & 0xffffffff), static_cast<uid_t>(token >> 32)});
}

void IPCThreadState::joinThreadPool(bool /*isMain*/) {
  ProcessState::self()->startThreadPool();
  // The channels have threads of their own.
  for (;;) ::pause();
}

}  // namespace android
