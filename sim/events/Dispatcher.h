#pragma once

#include <binder/IInterface.h>
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

/** What there is to a Dispatcher whatever its listeners are. */
class DispatcherBase {
 public:
  /** Enough for any burst; what a listener that hangs costs is some megabytes. */
  static constexpr size_t kMaxBehind = 100'000;

  DispatcherBase(const DispatcherBase&) = delete;
  DispatcherBase& operator=(const DispatcherBase&) = delete;

  /** Ends the subscriptions and waits until no listener is being called any more, or the time is over. */
  void stop(std::chrono::milliseconds patience);

 protected:
  using Message = std::function<android::binder::Status(android::IInterface& listener)>;

  explicit DispatcherBase(size_t maxBehind) : maxBehind_(maxBehind) {}
  /** Leaves behind the threads of listeners that hang; they touch nothing of this object's. */
  ~DispatcherBase();

  void subscribe(pid_t process, const android::sp<android::IInterface>& listener);
  void publish(const Message& message);

 private:
  class Subscription;

  const size_t maxBehind_;
  std::mutex mutex_;
  std::map<pid_t, std::shared_ptr<Subscription>> subscriptions_;
};

/**
 * Hands events to the listeners. Each listening process has a queue and a thread of its own, so that it gets
 * all events in order, and one that is slow or hangs keeps nobody else waiting. All members may be called
 * from any thread; none waits for a listener but stop().
 */
template <typename Listener>
class Dispatcher : public DispatcherBase {
 public:
  /** A listener that is more than `maxBehind` events behind is dropped. */
  explicit Dispatcher(size_t maxBehind = kMaxBehind) : DispatcherBase(maxBehind) {}

  /**
   * Has the listener told of what happens from now on, until its process dies or falls too far behind. A
   * process has one listener: a later one takes the place of the earlier.
   */
  void subscribe(pid_t process, const android::sp<Listener>& listener) {
    DispatcherBase::subscribe(process, listener);
  }

  /** `tell` is called with each listener, on the thread of its own. */
  template <typename Tell>
  void publish(Tell tell) {
    DispatcherBase::publish([tell = std::move(tell)](android::IInterface& listener) {
      return tell(static_cast<Listener&>(listener));
    });
  }
};

}  // namespace sim
