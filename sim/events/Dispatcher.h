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

/** The part of Dispatcher that does not depend on the type of the listeners. */
class DispatcherBase {
 public:
  /** Exceeds any burst; a listener that hangs costs some megabytes. */
  static constexpr size_t kMaxQueued = 100'000;

  DispatcherBase(const DispatcherBase&) = delete;
  DispatcherBase& operator=(const DispatcherBase&) = delete;

  /** Ends all subscriptions; waits for the listeners' current calls until the timeout. */
  void stop(std::chrono::milliseconds timeout);

 protected:
  using Message = std::function<android::binder::Status(android::IInterface& listener)>;

  explicit DispatcherBase(size_t maxQueued) : maxQueued_(maxQueued) {}
  /** Leaves the threads of hanging listeners behind; they do not use this object. */
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
 * Sends events to listeners. Each listening process has a queue and a thread of its own, so that it
 * gets all events in order and does not delay the others when it is slow or hangs. Thread-safe.
 * Only stop() waits for listeners.
 */
template <typename Listener>
class Dispatcher : public DispatcherBase {
 public:
  /** A listener with more than `maxQueued` pending events is dropped. */
  explicit Dispatcher(size_t maxQueued = kMaxQueued) : DispatcherBase(maxQueued) {}

  /** Subscribes a listener to the events from now on, until its process dies or its queue is full.
   * A process has one listener: a later one replaces the earlier. */
  void subscribe(pid_t process, const android::sp<Listener>& listener) {
    DispatcherBase::subscribe(process, listener);
  }

  /** Subscribes a listener of the process whose call is being served; null is EX_NULL_POINTER. */
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
