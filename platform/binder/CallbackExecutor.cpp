#include "CallbackExecutor.h"

#include <android/log.h>

#include <utility>

#include "Transport.h"

namespace android::transport {

bool CallbackExecutor::start(const sigset_t& mask) {
  mask_ = mask;
  return startThread("binder:spare", mask, [this] { runWaiting(); });
}

void CallbackExecutor::run(const char* name, std::function<void()> work) {
  if (startThread(name, mask_, work)) return;
  __android_log_print(ANDROID_LOG_ERROR, "binder", "no thread for %s, which waits for those before it", name);
  const std::lock_guard lock(mutex_);
  waiting_.push_back(std::move(work));
  added_.notify_one();
}

void CallbackExecutor::runWaiting() {
  for (;;) {
    std::unique_lock lock(mutex_);
    added_.wait(lock, [this] { return !waiting_.empty(); });
    const std::function<void()> work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    work();
  }
}

}  // namespace android::transport
