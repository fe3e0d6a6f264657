#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>
#include <utility>
#include <vector>

/**
 * The way of events from the threads of the library to the main loop: callbacks post(), the loop polls fd()
 * and take()s what has come.
 */
template <class Event>
class EventQueue {
 public:
  /** Readable while there are events. */
  int fd() const { return fd_; }

  /** On any thread; returns at once. */
  void post(Event event) {
    {
      const std::lock_guard lock(mutex_);
      events_.push_back(std::move(event));
    }
    // Can't fail, as the counter never gets near its limit.
    eventfd_write(fd_, 1);
  }

  /** All events that have come since the last time, in their order. */
  std::vector<Event> take() {
    // Before looking: what comes in between makes the descriptor readable once more.
    eventfd_t count;
    eventfd_read(fd_, &count);
    const std::lock_guard lock(mutex_);
    return std::exchange(events_, {});
  }

 private:
  const int fd_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::mutex mutex_;
  std::vector<Event> events_;
};
