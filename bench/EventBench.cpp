/* An event from a service process to the callback of one application, and to 64 of them in turn,
 * compared with bare sockets. */
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/ICallService.h>
#include <vesk/vesk_client.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "BarePairs.h"
#include "FrameSizes.h"
#include "Measure.h"

using android::sp;
using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;
using namespace vesk::bench;

namespace {

constexpr size_t kApplications = 64;

class CallService : public com::qv::DefaultCallService {
 public:
  Status registerCallEventListener(const sp<ICallEventListener>& listener) override {
    const std::lock_guard lock(mutex_);
    listeners_.push_back(listener);
    return Status::ok();
  }

  std::vector<sp<ICallEventListener>> listeners() {
    const std::lock_guard lock(mutex_);
    return listeners_;
  }

 private:
  std::mutex mutex_;
  std::vector<sp<ICallEventListener>> listeners_;
};

CommonParcelable callInfo() {
  static constexpr char kBytes[VESK_CALL_INFO_SIZE] = {};
  return {kBytes, sizeof(kBytes)};
}

class Listener : public com::qv::DefaultCallEventListener {
 public:
  Status callInfoChangedEvent(const CommonParcelable&) override { return Status::ok(); }
};

FrameSizes eventSizes() {
  return frameSizes<com::qv::BpCallEventListener, Listener>(
      [](auto* proxy) { proxy->callInfoChangedEvent(callInfo()); });
}

void application() {
  const auto onCallInfo = [](void* info) { benchmark::DoNotOptimize(info); };
  if (!connect_call_service(nullptr, nullptr, nullptr, nullptr, nullptr, onCallInfo, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr)) {
    fatal("connect");
  }
  for (;;) ::pause();
}

}  // namespace

int main(int argc, char** argv) {
  const PrivateRuntimeDir runtimeDir;
  const BarePairs pairs(kApplications, eventSizes());
  std::vector<std::unique_ptr<Child>> bare;
  std::vector<std::unique_ptr<Child>> applications;
  for (size_t i = 0; i < kApplications; ++i) {
    bare.push_back(std::make_unique<Child>([&, i] { pairs.serve(i); }));
    applications.push_back(std::make_unique<Child>(application));
  }
  const sp<CallService> service = new CallService;
  if (android::defaultServiceManager()->addService(android::String16("com.qv.CallService"), service) !=
      android::OK) {
    fatal("addService");
  }
  android::ProcessState::self()->startThreadPool();
  while (service->listeners().size() < kApplications) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  const std::vector<sp<ICallEventListener>> listeners = service->listeners();

  const auto send = [&](size_t application) {
    if (!listeners[application]->callInfoChangedEvent(callInfo()).isOk()) fatal("an event failed");
  };
  const auto pids = [](const std::vector<std::unique_ptr<Child>>& children) {
    std::vector<pid_t> result;
    result.reserve(children.size());
    for (const auto& child : children) result.push_back(child->pid());
    return result;
  };
  registerCalls("event", "stream", pids(bare), [&] { pairs.call(0); });
  registerCalls("event", "library", pids(applications), [&] { send(0); });
  const std::vector<int> once = {1};
  registerThreads("broadcast_to_64", "stream", once, [&](size_t) {
    for (size_t i = 0; i < kApplications; ++i) pairs.call(i);
  });
  registerThreads("broadcast_to_64", "library", once, [&](size_t) {
    for (size_t i = 0; i < kApplications; ++i) send(i);
  });

  return run(argc, argv);
}
