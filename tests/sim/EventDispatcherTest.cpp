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

/** Notes the selections that it is told of, and can be made to hang in the next one. */
class Listener : public com::qv::DefaultCallEventListener {
 public:
  Status dialSelectionEvent(int32_t value) override {
    std::unique_lock lock(mutex_);
    told_.push_back(value);
    changed_.notify_all();
    changed_.wait(lock, [this] { return !hangs_; });
    return Status::ok();
  }

  void setHangs(bool hangs) {
    const std::lock_guard lock(mutex_);
    hangs_ = hangs;
    changed_.notify_all();
  }

  /** What it was told of, once that is so much. */
  std::vector<int32_t> told(size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(30), [&] { return told_.size() >= count; });
    return told_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hangs_ = false;
  std::vector<int32_t> told_;
};

Event selection(int32_t value) { return {EventType::dialSelectionEvent, value}; }

TEST(EventDispatcher, DropsAListenerThatIsTooFarBehindAndNoOther) {
  EventDispatcher dispatcher(3);
  const android::sp<Listener> hanging = new Listener;
  const android::sp<Listener> other = new Listener;
  hanging->setHangs(true);
  dispatcher.subscribe(1, hanging);
  dispatcher.subscribe(2, other);
  for (int32_t value = 1; value <= 6; ++value) {
    dispatcher.publish(selection(value));
    other->told(static_cast<size_t>(value));
    // From then on it hangs, and the others queue up.
    if (value == 1) hanging->told(1);
  }
  EXPECT_EQ(other->told(6), (std::vector{1, 2, 3, 4, 5, 6}));
  hanging->setHangs(false);

  // It may come back.
  dispatcher.subscribe(1, hanging);
  dispatcher.publish(selection(7));
  EXPECT_EQ(hanging->told(2), (std::vector{1, 7}));
  dispatcher.stop(std::chrono::seconds(30));
}

TEST(EventDispatcher, HandsTheQueueToTheListenerThatTakesAnothersPlace) {
  EventDispatcher dispatcher;
  const android::sp<Listener> first = new Listener;
  const android::sp<Listener> second = new Listener;
  first->setHangs(true);
  dispatcher.subscribe(1, first);
  dispatcher.publish(selection(1));
  first->told(1);
  dispatcher.publish(selection(2));
  dispatcher.subscribe(1, second);
  dispatcher.publish(selection(3));
  first->setHangs(false);
  EXPECT_EQ(second->told(2), (std::vector{2, 3}));
  EXPECT_EQ(first->told(1), (std::vector{1}));
  dispatcher.stop(std::chrono::seconds(30));
}

TEST(EventDispatcher, StopsInTimeThoughAListenerHangs) {
  const android::sp<Listener> hanging = new Listener;
  hanging->setHangs(true);
  {
    EventDispatcher dispatcher;
    dispatcher.subscribe(1, hanging);
    dispatcher.publish(selection(1));
    hanging->told(1);
    dispatcher.stop(std::chrono::milliseconds(10));
    dispatcher.publish(selection(2));
  }
  hanging->setHangs(false);
  EXPECT_EQ(hanging->told(1), (std::vector{1}));
}

}  // namespace
