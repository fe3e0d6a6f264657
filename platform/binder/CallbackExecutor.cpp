#include "CallbackExecutor.h"

#include <android/log.h>

#include <chrono>
#include <utility>

#include "Thread.h"

namespace android::transport {

namespace {
/** Callbacks often come in groups. */
constexpr std::chrono::seconds kIdleTime(2);
}  // namespace

bool CallbackExecutor::start(const sigset_t& mask) {
  mask_ = mask;
  return startThread("binder:first", mask, [this] { runQueued(true); });
}

void CallbackExecutor::run(std::function<void()> callback) {
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(callback));
    if (queue_.size() <= idleThreads_) {
      added_.notify_one();
      return;
    }
  }
  if (startThread("binder:callback", mask_, [this] { runQueued(false); })) return;
  const std::lock_guard lock(mutex_);
  queue_.push_back([] {
    __android_log_print(ANDROID_LOG_ERROR, "binder", "no thread for a callback, which waits for others");
  });
}

void CallbackExecutor::log(int priority, std::string text) {
  run([priority, text = std::move(text)] { __android_log_print(priority, "binder", "%s", text.c_str()); });
}

void CallbackExecutor::runQueued(bool isFirst) {
  std::unique_lock lock(mutex_);
  for (;;) {
    const auto isAdded = [this] { return !queue_.empty(); };
    ++idleThreads_;
    if (isFirst) {
      added_.wait(lock, isAdded);
    } else {
      added_.wait_for(lock, kIdleTime, isAdded);
    }
    --idleThreads_;
    if (queue_.empty()) return;
    {
      const std::function<void()> callback = std::move(queue_.front());
      queue_.pop_front();
      lock.unlock();
      callback();
    }
    lock.lock();
  }
}

}  // namespace android::transport
