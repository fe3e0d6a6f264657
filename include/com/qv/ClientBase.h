#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/IBinder.h>
#include <com/qv/Export.h>
#include <utils/String16.h>

namespace com::qv {

/**
 * A process's connection to one service. The constructor looks the service up, which blocks until
 * the service is registered or the service manager gives up, and starts the binder threads.
 */
class COM_QV_EXPORT ClientBase : public android::IBinder::DeathRecipient {
 public:
  using DeathHook = void (*)(ClientBase* client, const android::wp<android::IBinder>& who);

  /** Runs the death hook, if it is set, on a binder thread, and logs the death. */
  void binderDied(const android::wp<android::IBinder>& who) override;

  const android::String16 name;
  /** Called first when the service dies. Set before the client is linked to the death. */
  DeathHook deathHook = nullptr;
  /** The binder that the service manager returned; null if the service was not found. */
  const android::sp<android::IBinder> binder;
  const bool connected;

 protected:
  /** `tag` is the log tag of the derived client. */
  ClientBase(const android::String16& name, const char* tag);
  ~ClientBase() override;
};

}  // namespace com::qv
