#include <com/qv/CallClient.h>

#include <android/log.h>

namespace com::qv {

CallClient::CallClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag),
      service(ICallService::asInterface(binder)),
      listener(connected ? new CallEventListener : nullptr) {
  if (!connected) return;
  service->registerCallEventListener(listener);
  // Logged even if the service refuses the listener.
  __android_log_print(ANDROID_LOG_INFO, kLogTag, "CallEventListener is registed.");
}

CallClient::~CallClient() = default;

}  // namespace com::qv
