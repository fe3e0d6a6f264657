#include <com/qv/MiscClient.h>

#include <android/log.h>

namespace com::qv {

MiscClient::MiscClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag),
      service(IMiscService::asInterface(binder)),
      ateListener(connected ? new AteEventListener : nullptr),
      miscListener(connected ? new MiscEventListener : nullptr) {
  if (!connected) return;
  // Both lines are logged even if the service refuses the listener.
  service->registerAteEventListener(ateListener);
  __android_log_print(ANDROID_LOG_INFO, kLogTag, "AteEventListener is registed.");
  service->registerMiscEventListener(miscListener);
  __android_log_print(ANDROID_LOG_INFO, kLogTag, "MiscEventListener is registed.");
}

MiscClient::~MiscClient() = default;

}  // namespace com::qv
