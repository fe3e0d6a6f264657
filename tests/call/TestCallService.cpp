#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/ICallService.h>
#include <unistd.h>
#include <vesk/call.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "ChildProcess.h"

using android::sp;
using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;
using vesk::test::Channel;

namespace {

/** A call service whose makeCall takes the number as a command. */
class TestCallService : public com::qv::DefaultCallService {
 public:
  explicit TestCallService(Channel* toTest) : toTest_(toTest) {}

  Status registerCallEventListener(const sp<ICallEventListener>& listener) override {
    const std::lock_guard lock(mutex_);
    listeners_.push_back(listener);
    return Status::ok();
  }

  Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    *result = line;
    if (number == "notify" && line > 0) *result = notify(&ICallEventListener::callInfoChangedEvent, line);
    if (number == "hang") {
      toTest_->send("hanging");
      pause();
    }
    if (number == "storm") startStorm();
    return Status::ok();
  }

  Status getFirstValidLine(int32_t* line) override {
    *line = 1;
    return Status::ok();
  }

  void stopStorm() {
    std::thread storm;
    {
      const std::lock_guard lock(mutex_);
      storm.swap(storm_);
    }
    storming_ = false;
    if (storm.joinable()) storm.join();
  }

 private:
  void startStorm() {
    const std::lock_guard lock(mutex_);
    storming_ = true;
    storm_ = std::thread([this] {
      // One in sixteen is one that the listener logs.
      for (int32_t i = 1; storming_; ++i) {
        notify(i % 16 == 0 ? &ICallEventListener::callInfoChangedEvent
                           : &ICallEventListener::callStateChangedEvent,
               i);
      }
    });
  }

  /** Calls every listener, and forgets those that fail. The number of the others. */
  int32_t notify(Status (ICallEventListener::*event)(const CommonParcelable&), int32_t line) {
    vesk_call_info info{};
    info.line = line;
    const CommonParcelable record(&info, sizeof(info));
    int32_t reached = 0;
    for (const sp<ICallEventListener>& listener : listeners()) {
      if ((*listener.*event)(record).isOk()) {
        ++reached;
      } else {
        forget(listener);
      }
    }
    return reached;
  }

  std::vector<sp<ICallEventListener>> listeners() const {
    const std::lock_guard lock(mutex_);
    return listeners_;
  }

  void forget(const sp<ICallEventListener>& listener) {
    const std::lock_guard lock(mutex_);
    std::erase(listeners_, listener);
  }

  Channel* const toTest_;
  mutable std::mutex mutex_;
  std::vector<sp<ICallEventListener>> listeners_;
  std::atomic<bool> storming_ = false;
  std::thread storm_;
};

CHILD_ROLE(callService) {
  const sp<TestCallService> service = new TestCallService(&parent.channel());
  android::ProcessState::self()->startThreadPool();
  const android::String16 name("com.qv.CallService");
  if (android::defaultServiceManager()->addService(name, service) != android::OK) return 1;
  parent.ready();
  parent.waitForEnd();
  service->stopStorm();
  return 0;
}

}  // namespace
