#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/IBinder.h>
#include <com/qv/Export.h>
#include <utils/String16.h>

namespace com::qv {

/**
 * A process's connection to one service. The constructor looks the service up, which blocks until it is there
 * or the service manager gives up, and starts the binder threads.
 */
class COM_QV_EXPORT ClientBase : public android::IBinder::DeathRecipient {
 public:
  using DeathHook = void (*)(ClientBase* client, const android::wp<android::IBinder>& who);

  /** Runs the death hook, if there is one, on a binder thread. */
  void binderDied(const android::wp<android::IBinder>& who) override;

  const android::String16 name;
  /** What else happens when the service dies. Set before the client is linked to the death. */
  DeathHook deathHook = nullptr;
  /** The service as the service manager gave it; null if it was not found. */
  const android::sp<android::IBinder> binder;
  const bool connected;

 protected:
  /** `tag` is the log tag of the derived client. */
  ClientBase(const android::String16& name, const char* tag);
  ~ClientBase() override;
};

}  // namespace com::qv
