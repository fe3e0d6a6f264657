#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>

#include <com/qv/ICallEventListener.h>

#include "phone/Event.h"

namespace sim {

/**
 * Hands the phone's events to the listeners. Each listening process has a queue and a thread of its own, so
 * that it gets all events in order, and one that is slow or hangs keeps nobody else waiting. All members may
 * be called from any thread; none waits for a listener but stop().
 */
class EventDispatcher {
 public:
  /** Enough for any burst; what a listener that hangs costs is some megabytes. */
  static constexpr size_t kMaxBehind = 100'000;

  /** A listener that is more than `maxBehind` events behind is dropped. */
  explicit EventDispatcher(size_t maxBehind = kMaxBehind) : maxBehind_(maxBehind) {}
  /** Leaves behind the threads of listeners that hang; they touch nothing of this object's. */
  ~EventDispatcher();
  EventDispatcher(const EventDispatcher&) = delete;
  EventDispatcher& operator=(const EventDispatcher&) = delete;

  /**
   * Has the listener told of what happens from now on, until its process dies or falls too far behind. A
   * process has one listener: a later one takes the place of the earlier.
   */
  void subscribe(pid_t process, const android::sp<com::qv::ICallEventListener>& listener);

  void publish(const Event& event);

  /** Ends the subscriptions and waits until no listener is being called any more, or the time is over. */
  void stop(std::chrono::milliseconds patience);

 private:
  class Subscription;

  const size_t maxBehind_;
  std::mutex mutex_;
  std::map<pid_t, std::shared_ptr<Subscription>> subscriptions_;
};

}  // namespace sim
