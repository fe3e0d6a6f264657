#include "call/EventDispatcher.h"

#include <com/qv/CommonParcelable.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <vector>

namespace {

using android::binder::Status;
using sim::Event;
using sim::EventDispatcher;
using sim::EventType;

/** Records the selections that it receives, and can be made to hang in the next one. */
class Listener : public com::qv::DefaultCallEventListener {
 public:
  Status dialSelectionEvent(int32_t value) override {
    std::unique_lock lock(mutex_);
    received_.push_back(value);
    changed_.notify_all();
    changed_.wait(lock, [this] { return !hangs_; });
    return Status::ok();
  }

  void setHangs(bool hangs) {
    const std::lock_guard lock(mutex_);
    hangs_ = hangs;
    changed_.notify_all();
  }

  /** The received selections; waits until there are `count`. */
  std::vector<int32_t> received(size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(30), [&] { return received_.size() >= count; });
    return received_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hangs_ = false;
  std::vector<int32_t> received_;
};

Event selection(int32_t value) { return {EventType::dialSelectionEvent, value}; }

TEST(EventDispatcher, ListenerWithAFullQueueIsDropped) {
  EventDispatcher dispatcher(3);
  const android::sp<Listener> hanging = new Listener;
  const android::sp<Listener> other = new Listener;
  hanging->setHangs(true);
  dispatcher.subscribe(1, hanging);
  dispatcher.subscribe(2, other);
  for (int32_t value = 1; value <= 6; ++value) {
    dispatcher.publish(selection(value));
    other->received(static_cast<size_t>(value));
    // The listener hangs from now on, so later events are queued.
    if (value == 1) hanging->received(1);
  }
  EXPECT_EQ(other->received(6), (std::vector{1, 2, 3, 4, 5, 6}));
  hanging->setHangs(false);

  // The listener can subscribe again.
  dispatcher.subscribe(1, hanging);
  dispatcher.publish(selection(7));
  EXPECT_EQ(hanging->received(2), (std::vector{1, 7}));
  dispatcher.stop(std::chrono::seconds(30));
}

TEST(EventDispatcher, NewListenerTakesTheQueueOver) {
  EventDispatcher dispatcher;
  const android::sp<Listener> first = new Listener;
  const android::sp<Listener> second = new Listener;
  first->setHangs(true);
  dispatcher.subscribe(1, first);
  dispatcher.publish(selection(1));
  first->received(1);
  dispatcher.publish(selection(2));
  dispatcher.subscribe(1, second);
  dispatcher.publish(selection(3));
  first->setHangs(false);
  EXPECT_EQ(second->received(2), (std::vector{2, 3}));
  EXPECT_EQ(first->received(1), (std::vector{1}));
  dispatcher.stop(std::chrono::seconds(30));
}

TEST(EventDispatcher, StopReturnsThoughAListenerHangs) {
  const android::sp<Listener> hanging = new Listener;
  hanging->setHangs(true);
  {
    EventDispatcher dispatcher;
    dispatcher.subscribe(1, hanging);
    dispatcher.publish(selection(1));
    hanging->received(1);
    dispatcher.stop(std::chrono::milliseconds(10));
    dispatcher.publish(selection(2));
  }
  hanging->setHangs(false);
  EXPECT_EQ(hanging->received(1), (std::vector{1}));
}

}  // namespace
