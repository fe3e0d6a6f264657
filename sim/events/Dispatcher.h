#pragma once

#include <binder/IInterface.h>
#include <binder/IPCThreadState.h>
#include <binder/Status.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace sim {

/** The base of Dispatcher, independent of the type of the listeners. */
class DispatcherBase {
 public:
  /** More than any burst of events. The queue of a listener that hangs takes some megabytes. */
  static constexpr size_t kMaxQueued = 100'000;

  DispatcherBase(const DispatcherBase&) = delete;
  DispatcherBase& operator=(const DispatcherBase&) = delete;

  /** Ends all subscriptions; waits for the listeners' current calls until the timeout. */
  void stop(std::chrono::milliseconds timeout);

 protected:
  using Message = std::function<android::binder::Status(android::IInterface& listener)>;

  explicit DispatcherBase(size_t maxQueued) : maxQueued_(maxQueued) {}
  /** Does not wait for the threads of listeners that hang; they do not use this object. */
  ~DispatcherBase();

  void subscribe(pid_t process, const android::sp<android::IInterface>& listener);
  void publish(const Message& message);

 private:
  class Subscription;

  const size_t maxQueued_;
  std::mutex mutex_;
  std::map<pid_t, std::shared_ptr<Subscription>> subscriptions_;
};

/**
 * Sends events to listeners. Each listening process has a queue and a thread of its own: it gets
 * all events in order, and does not delay other processes if it is slow or hangs. Only stop() waits
 * for listeners. Thread-safe.
 */
template <typename Listener>
class Dispatcher : public DispatcherBase {
 public:
  /** A listener with more than `maxQueued` pending events is dropped. */
  explicit Dispatcher(size_t maxQueued = kMaxQueued) : DispatcherBase(maxQueued) {}

  /** Subscribes a listener to all further events, until its process dies or its queue is full. A
   * process has one listener: a later one replaces the earlier one. */
  void subscribe(pid_t process, const android::sp<Listener>& listener) {
    DispatcherBase::subscribe(process, listener);
  }

  /** Subscribes a listener of the calling process; EX_NULL_POINTER for null. */
  android::binder::Status subscribeCaller(const android::sp<Listener>& listener) {
    using android::binder::Status;
    if (listener == nullptr)
      return Status::fromExceptionCode(Status::EX_NULL_POINTER, "There is no listener");
    subscribe(android::IPCThreadState::self()->getCallingPid(), listener);
    return Status::ok();
  }

  /** `send` is called with each listener, on that listener's thread. */
  template <typename Send>
  void publish(Send send) {
    DispatcherBase::publish([send = std::move(send)](android::IInterface& listener) {
      return send(static_cast<Listener&>(listener));
    });
  }
};

}  // namespace sim
