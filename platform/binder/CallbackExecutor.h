#pragma once

#include <signal.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

namespace android::transport {

/**
 * Runs code that may block, such as the application's, for threads that must not. Each callback has
 * a thread to itself, so that none waits for another; only while there can be no more threads they
 * queue for those that exist.
 */
class CallbackExecutor {
 public:
  /** Starts the first thread, which never ends. False if there can be none. `mask` is the signal
   * mask of all threads. */
  bool start(const sigset_t& mask);

  /** Never blocks. */
  void run(std::function<void()> callback);

  /** Logs on one of the threads: the application's logger may block or use the binder. */
  void log(int priority, std::string text);

 private:
  void runQueued(bool isFirst);

  sigset_t mask_ = {};
  std::mutex mutex_;
  std::condition_variable added_;
  std::deque<std::function<void()>> queue_;
  size_t idleThreads_ = 0;
};

}  // namespace android::transport
