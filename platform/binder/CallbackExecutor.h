#pragma once

#include <signal.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace android::transport {

/**
 * Runs the application's code for a thread that must not run it itself: each piece on a thread of its own, so
 * that one that takes its time holds up no other; or, while there can be no more threads, on one that stands
 * ready for that.
 */
class CallbackExecutor {
 public:
  /** Starts the thread that stands ready. `mask` is the signal mask of all threads. False if there can be
   * none. */
  bool start(const sigset_t& mask);
  void run(const char* name, std::function<void()> work);

 private:
  void runWaiting();

  sigset_t mask_ = {};
  std::mutex mutex_;
  std::condition_variable added_;
  std::deque<std::function<void()>> waiting_;
};

}  // namespace android::transport
