#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IMiscService.h>
#include <vesk/call.h>
#include <vesk/config.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "ChildProcess.h"
#include "Storm.h"

/* The services that are killed. The result of a call depends on its arguments, so that the caller
 * detects the result of another call. */

using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::CommonParcelable;

namespace {

/** The listeners of a service. Removes those whose calls fail. */
template <class Listener>
class Listeners {
 public:
  void add(const sp<Listener>& listener) {
    const std::lock_guard lock(mutex_);
    listeners_.push_back(listener);
  }

  template <class Event>
  void notify(Event event) {
    std::unique_lock lock(mutex_);
    const std::vector<sp<Listener>> current = listeners_;
    lock.unlock();
    std::vector<sp<Listener>> gone;
    for (const sp<Listener>& listener : current) {
      if (!event(*listener).isOk()) gone.push_back(listener);
    }
    lock.lock();
    for (const sp<Listener>& listener : gone) std::erase(listeners_, listener);
  }

 private:
  std::mutex mutex_;
  std::vector<sp<Listener>> listeners_;
};

class CallService : public com::qv::DefaultCallService {
 public:
  Status registerCallEventListener(const sp<com::qv::ICallEventListener>& listener) override {
    listeners_.add(listener);
    return Status::ok();
  }
  /** Values that are multiples of 8 also send an event to all listeners. */
  Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    const int value = std::atoi(number.c_str());
    if (value % 8 == 0) {
      vesk_call_info info{};
      info.line = value;
      info.chan = storm::answerTo(value);
      std::fill_n(info.name, sizeof(info.name) - 1, storm::filling(value));
      const CommonParcelable record(&info, sizeof(info));
      listeners_.notify([&](auto& listener) { return listener.callStateChangedEvent(record); });
    }
    *result = storm::answerTo(value + line);
    return Status::ok();
  }

 private:
  Listeners<com::qv::ICallEventListener> listeners_;
};

class MiscService : public com::qv::DefaultMiscService {
 public:
  Status registerAteEventListener(const sp<com::qv::IAteEventListener>& /*listener*/) override {
    return Status::ok();
  }
  Status registerMiscEventListener(const sp<com::qv::IMiscEventListener>& listener) override {
    listeners_.add(listener);
    return Status::ok();
  }
  Status playRecFileStart(const std::string& file, int32_t* result) override {
    const int value = std::atoi(file.c_str());
    if (value % 8 == 0) {
      listeners_.notify([&](auto& listener) { return listener.wkRingHdl(storm::answerTo(value) | 1); });
    }
    *result = storm::answerTo(value);
    return Status::ok();
  }

 private:
  Listeners<com::qv::IMiscEventListener> listeners_;
};

class ConfigService : public com::qv::DefaultConfigService {
 public:
  Status setDefaultExtLine(int32_t line, int32_t* result) override {
    *result = storm::answerTo(line);
    return Status::ok();
  }
  Status getLineInfo(int32_t index, CommonParcelable* info) override {
    const std::string bytes(VESK_LINE_INFO_SIZE, storm::filling(index));
    *info = CommonParcelable(bytes.data(), bytes.size());
    return Status::ok();
  }
};

template <class Service>
sp<android::IBinder> make() {
  return new Service;
}

constexpr struct {
  const char* name;
  sp<android::IBinder> (*make)();
} kServices[] = {{"com.qv.CallService", make<CallService>},
                 {"com.qv.MiscService", make<MiscService>},
                 {"com.qv.ConfigService", make<ConfigService>}};

/** Replies to a message with its leaks. The test sends it after the applications have ended. */
CHILD_ROLE(service) {
  const storm::Resources before = storm::atStart();
  const auto& service = kServices[std::stoul(args.at(0))];
  android::ProcessState::self()->startThreadPool();
  if (android::defaultServiceManager()->addService(String16(service.name), service.make()) != android::OK) {
    return 1;
  }
  parent.ready();
  if (parent.channel().receive(-1).empty()) return 0;
  parent.channel().send(service.name + (" " + storm::findLeaks(storm::withTransport(before))));
  parent.waitForEnd();
  return 0;
}

}  // namespace
