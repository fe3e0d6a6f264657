#include <com/qv/ClientBase.h>

#include <android/log.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <utils/String8.h>

#include "ipc/PlatformCompat.h"

namespace com::qv {

using android::String8;

ClientBase::ClientBase(const android::String16& serviceName, const char* tag)
    : name(serviceName),
      binder(android::defaultServiceManager()->getService(serviceName)),
      connected(binder != nullptr) {
  if (!connected) {
    __android_log_print(ANDROID_LOG_INFO, tag, "Connect %s failed!!! ", bytesOf(String8(name)));
    return;
  }
  android::ProcessState::self()->startThreadPool();
  __android_log_print(ANDROID_LOG_INFO, tag, "Connect %s done. ", bytesOf(String8(name)));
}

ClientBase::~ClientBase() = default;

void ClientBase::binderDied(const android::wp<android::IBinder>& who) {
  if (deathHook != nullptr) deathHook(this, who);
  // The tag is "CallClient" for the clients of every service.
  __android_log_print(ANDROID_LOG_INFO, "CallClient", "%s is died. ", bytesOf(String8(name)));
}

}  // namespace com::qv
