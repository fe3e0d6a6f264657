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

  /**
   * Runs the death hook, if it is set, then logs the death. Called on a thread of the platform. If
   * the service dies during the connect, called on a new thread or, if none can be started, on the
   * connecting thread.
   */
  void binderDied(const android::wp<android::IBinder>& who) override;

  const android::String16 name;
  /** Called when the service dies. To be set before linkToDeath() is called for the client. */
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
