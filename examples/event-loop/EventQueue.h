#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>
#include <utility>
#include <vector>

/**
 * Passes events from the library's threads to the main loop: callbacks call post(); the loop polls
 * fd() and calls take().
 */
template <class Event>
class EventQueue {
 public:
  /** Readable while there are events. */
  int fd() const { return fd_; }

  /** Safe to call on any thread. Does not wait. */
  void post(Event event) {
    {
      const std::lock_guard lock(mutex_);
      events_.push_back(std::move(event));
    }
    // Does not fail: the counter stays far below its limit.
    eventfd_write(fd_, 1);
  }

  /** The events since the last call, in order. */
  std::vector<Event> take() {
    // First, so that an event in between makes the descriptor readable again.
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
