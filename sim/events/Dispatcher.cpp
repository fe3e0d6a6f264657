#include "events/Dispatcher.h"

#include <android/log.h>

#include <condition_variable>
#include <deque>
#include <thread>

namespace sim {

namespace {

constexpr const char* kTag = "vesk-device";

}  // namespace

/** A process's queue and thread. The thread shares ownership, so a subscription may outlive the
 * dispatcher. */
class DispatcherBase::Subscription : public std::enable_shared_from_this<Subscription> {
 public:
  explicit Subscription(size_t maxQueued) : maxQueued_(maxQueued) {}

  static std::shared_ptr<Subscription> start(size_t maxQueued) {
    auto subscription = std::make_shared<Subscription>(maxQueued);
    std::thread([subscription] { subscription->run(); }).detach();
    return subscription;
  }

  /** The queued events go to the new listener. A dead one ends the subscription. */
  void setListener(const android::sp<android::IInterface>& listener) {
    const android::sp<DeathWatch> watch = new DeathWatch(weak_from_this());
    if (android::IInterface::asBinder(listener)->linkToDeath(watch) == android::DEAD_OBJECT) return end();

    auto previous = std::pair(listener, watch);  // Released after the lock.
    {
      const std::lock_guard lock(mutex_);
      std::swap(previous.first, listener_);
      std::swap(previous.second, watch_);
    }
    changed_.notify_all();
  }

  /** False once the subscription has ended. */
  bool push(const Message& message) {
    {
      const std::lock_guard lock(mutex_);
      if (ended_) return false;
      if (queue_.size() == maxQueued_) {
        __android_log_print(ANDROID_LOG_WARN, kTag, "a listener is %zu events behind and is dropped",
                            maxQueued_);
        ended_ = true;
        return false;
      }
      queue_.push_back(message);
    }
    changed_.notify_all();
    return true;
  }

  void end() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
  }

  bool hasEnded() {
    const std::lock_guard lock(mutex_);
    return ended_;
  }

  void waitUntilIdle(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, deadline, [this] { return !running_; });
  }

 private:
  class DeathWatch : public android::IBinder::DeathRecipient {
   public:
    explicit DeathWatch(std::weak_ptr<Subscription> subscription) : subscription_(std::move(subscription)) {}

    void binderDied(const android::wp<android::IBinder>&) override {
      if (const auto subscription = subscription_.lock()) subscription->end();
    }

   private:
    const std::weak_ptr<Subscription> subscription_;
  };

  void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return ended_ || (!queue_.empty() && listener_ != nullptr); });
      if (ended_) break;
      const Message message = std::move(queue_.front());
      queue_.pop_front();
      const android::sp<android::IInterface> listener = listener_;
      lock.unlock();
      const bool dead = message(*listener).transactionError() == android::DEAD_OBJECT;
      lock.lock();
      if (dead && listener_ == listener) ended_ = true;
    }
    const auto released = std::pair(std::exchange(listener_, nullptr), std::exchange(watch_, nullptr));
    queue_.clear();
    running_ = false;
    lock.unlock();
    changed_.notify_all();
  }

  const size_t maxQueued_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ended_ = false;
  bool running_ = true;
  std::deque<Message> queue_;
  android::sp<android::IInterface> listener_;
  /** The link to death holds a weak reference only. */
  android::sp<DeathWatch> watch_;
};

DispatcherBase::~DispatcherBase() { stop(std::chrono::milliseconds(0)); }

void DispatcherBase::subscribe(pid_t process, const android::sp<android::IInterface>& listener) {
  std::shared_ptr<Subscription> subscription;
  {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<Subscription>& known = subscriptions_[process];
    if (known == nullptr || known->hasEnded()) known = Subscription::start(maxQueued_);
    subscription = known;
  }
  subscription->setListener(listener);
}

void DispatcherBase::publish(const Message& message) {
  const std::lock_guard lock(mutex_);
  std::erase_if(subscriptions_, [&message](const auto& entry) { return !entry.second->push(message); });
}

void DispatcherBase::stop(std::chrono::milliseconds timeout) {
  std::map<pid_t, std::shared_ptr<Subscription>> ending;
  {
    const std::lock_guard lock(mutex_);
    ending.swap(subscriptions_);
  }
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (const auto& [process, subscription] : ending) subscription->end();
  for (const auto& [process, subscription] : ending) subscription->waitUntilIdle(deadline);
}

}  // namespace sim
