/* Serves three methods of the call service, and refuses the others with
 * EX_UNSUPPORTED_OPERATION. */
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>

#include <cstdio>
#include <mutex>

namespace {

using android::binder::Status;

class CallService : public com::qv::DefaultCallService {
 public:
  Status registerCallEventListener(const android::sp<com::qv::ICallEventListener>& listener) override {
    const std::lock_guard lock(mutex_);
    listener_ = listener;
    return Status::ok();
  }

  Status getFirstValidLine(int32_t* line) override {
    *line = 1;
    return Status::ok();
  }

  Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    std::printf("line %d calls %s\n", line, number.c_str());
    *result = -1;
    // Methods run on binder threads, several at once. Never call out under a lock.
    std::unique_lock lock(mutex_);
    const android::sp<com::qv::ICallEventListener> listener = listener_;
    lock.unlock();
    if (listener != nullptr) listener->makeCallRetEvent("Nobody is there");
    return Status::ok();
  }

 private:
  std::mutex mutex_;
  android::sp<com::qv::ICallEventListener> listener_;
};

}  // namespace

int main() {
  const android::String16 name("com.qv.CallService");
  if (android::defaultServiceManager()->addService(name, new CallService) != android::OK) return 1;
  android::IPCThreadState::self()->joinThreadPool();
}
