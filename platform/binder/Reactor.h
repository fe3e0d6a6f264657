#pragma once

#include <signal.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <utils/Errors.h>

#include "CallbackExecutor.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * The thread that watches descriptors. It calls their handlers, one at a time, without holding a
 * lock. A handler must not block, must not run the application's code, and must not log:
 * callbacks() does that for it.
 */
class Reactor {
 public:
  using Handler = std::function<void()>;
  /** Names a watched descriptor; never used twice. 0 names none. */
  using Key = uint64_t;

  /** Calls `handler` while `fd` has one of the epoll events. `key` is set before the first call.
   * Logs nothing. */
  status_t add(int fd, uint32_t events, Handler handler, Key* key);
  void setEvents(Key key, uint32_t events);
  /** Ends the watch, before the descriptor is closed. The handler may still run once if another
   * thread calls this. */
  void remove(Key key);

  /** Calls `handler` once. To be used by handlers only. */
  void runAfter(std::chrono::milliseconds delay, Handler handler);

  CallbackExecutor& callbacks() { return callbacks_; }

  /** The signal mask of the application's threads. Valid once a descriptor was added. */
  const sigset_t& applicationMask() const { return applicationMask_; }

 private:
  using Clock = std::chrono::steady_clock;

  struct Watched {
    int fd;
    std::shared_ptr<Handler> handler;
  };

  /** Under the lock. */
  status_t start();
  void run();
  int timeoutMs() const;
  void runTimers();

  CallbackExecutor callbacks_;
  std::mutex mutex_;
  bool hasFirstThread_ = false;
  sigset_t applicationMask_ = {};
  UniqueFd epoll_;
  Key lastKey_ = 0;
  std::unordered_map<Key, Watched> watched_;
  /** Used by the reactor's thread only. */
  std::multimap<Clock::time_point, Handler> timers_;
};

}  // namespace android::transport
