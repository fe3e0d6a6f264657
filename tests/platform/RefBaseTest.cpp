#include <gtest/gtest.h>
#include <utils/RefBase.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace android {
namespace {

using Events = std::vector<std::string>;

class Recorder : public virtual RefBase {
 public:
  explicit Recorder(Events* events) : events_(events) {}
  ~Recorder() override { events_->push_back("deleted"); }

 protected:
  void onFirstRef() override { events_->push_back("first"); }
  void onLastStrongRef(const void*) override { events_->push_back("last strong"); }

 private:
  Events* const events_;
};

TEST(RefBase, LastStrongReferenceDeletes) {
  Events events;
  sp<Recorder> strong = sp<Recorder>::make(&events);
  const wp<Recorder> weak = strong;
  EXPECT_EQ(events, Events({"first"}));

  sp<Recorder> other = strong;
  EXPECT_EQ(strong->getStrongCount(), 2);
  strong.clear();
  EXPECT_EQ(weak.promote(), other);
  EXPECT_EQ(events, Events({"first"}));

  other = nullptr;
  EXPECT_EQ(events, Events({"first", "last strong", "deleted"}));
  EXPECT_EQ(weak.promote(), nullptr);
}

TEST(RefBase, PromotionTakesTheFirstReference) {
  Events events;
  const wp<Recorder> weak = new Recorder(&events);
  EXPECT_TRUE(events.empty());
  sp<Recorder> strong = weak.promote();
  EXPECT_EQ(events, Events({"first"}));
  EXPECT_EQ(strong->getStrongCount(), 1);
  strong.clear();
  EXPECT_EQ(weak.promote(), nullptr);
}

TEST(RefBase, WeakReferenceToAnObjectOnTheStack) {
  Events events;
  wp<Recorder> kept;
  {
    Recorder object(&events);
    kept = &object;
    EXPECT_TRUE(events.empty());
  }
  EXPECT_EQ(events, Events({"deleted"}));
  EXPECT_EQ(kept.promote(), nullptr);
}

class Left : public virtual RefBase {
 public:
  int left = 1;
};
class Right : public virtual RefBase {
 public:
  int right = 2;
};
class Both : public Left, public Right {
 public:
  explicit Both(bool* deleted) : deleted_(deleted) {}
  ~Both() override { *deleted_ = true; }

 protected:
  // The first reference is counted already, so a temporary reference must not delete the object.
  void onFirstRef() override { sp<Both>(this).clear(); }

 private:
  bool* const deleted_;
};

TEST(StrongPointer, ConvertsToEveryBaseOfAnObject) {
  bool deleted = false;
  sp<Both> both = sp<Both>::make(&deleted);
  sp<Left> left = both;
  const wp<Right> weak = both;
  sp<Right> right = std::move(both);
  EXPECT_EQ(both, nullptr);
  EXPECT_EQ(left->left + right->right, 3);
  EXPECT_EQ(right->getStrongCount(), 2);
  EXPECT_EQ(weak, right);
  EXPECT_EQ(weak, left);
  EXPECT_EQ(wp<RefBase>(weak), wp<RefBase>(left));
  left.clear();
  EXPECT_FALSE(deleted);
  right.clear();
  EXPECT_TRUE(deleted);
  EXPECT_EQ(wp<RefBase>(weak), nullptr);
}

TEST(StrongPointer, AssignmentToItselfAndToItsMember) {
  class Node : public RefBase {
   public:
    sp<Node> next;
  };
  sp<Node> head = sp<Node>::make();
  const sp<Node>& same = head;
  head = same;
  EXPECT_EQ(head->getStrongCount(), 1);
  head->next = sp<Node>::make();
  Node* const second = head->next.get();
  head = head->next;
  EXPECT_EQ(head, second);
  EXPECT_EQ(head->getStrongCount(), 1);
}

// A list of weak pointers can be searched after objects have died.
TEST(WeakPointer, DiffersForALaterObjectAtTheSameAddress) {
  class Placed : public RefBase {
   public:
    Placed() = default;
    ~Placed() override = default;
  };
  alignas(Placed) unsigned char storage[sizeof(Placed)];
  Placed* const first = std::construct_at(reinterpret_cast<Placed*>(storage));
  const wp<Placed> old = first;
  std::destroy_at(first);
  Placed* const second = std::construct_at(reinterpret_cast<Placed*>(storage));
  const wp<Placed> young = second;
  EXPECT_EQ(old.unsafe_get(), young.unsafe_get());
  EXPECT_NE(old, young);
  std::destroy_at(second);
}

// Runs the body on several threads that start at about the same time.
void together(int threads, const std::function<void(int)>& body) {
  std::atomic<int> waiting = threads;
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([&, i] {
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      body(i);
    });
  }
  for (std::thread& thread : running) thread.join();
}

class Counted : public RefBase {
 public:
  static constexpr int kAlive = 0x600D;

  Counted(std::atomic<int>* firsts, std::atomic<int>* deaths) : firsts_(firsts), deaths_(deaths) {}
  ~Counted() override {
    value = 0;
    ++*deaths_;
  }

  // Not atomic: the destructor's write races with every read that the counters do not order.
  int value = kAlive;

 protected:
  void onFirstRef() override { ++*firsts_; }

 private:
  std::atomic<int>* const firsts_;
  std::atomic<int>* const deaths_;
};

TEST(RefBaseThreads, PromotionAgainstTheLastRelease) {
  constexpr int kRounds = 300;
  std::atomic<int> firsts = 0;
  std::atomic<int> deaths = 0;
  std::atomic<int> readDead = 0;
  for (int round = 0; round < kRounds; ++round) {
    sp<Counted> last = sp<Counted>::make(&firsts, &deaths);
    std::vector<wp<Counted>> weak(4, last);
    together(4, [&](int i) {
      // The last of these frees the counters, on any of the threads.
      wp<Counted>& own = weak[static_cast<size_t>(i)];
      if (i == 0) {
        last.clear();
      } else {
        while (const sp<Counted> held = own.promote()) {
          if (held->value != Counted::kAlive) ++readDead;
        }
      }
      own.clear();
    });
  }
  EXPECT_EQ(readDead, 0);
  EXPECT_EQ(firsts, kRounds);
  EXPECT_EQ(deaths, kRounds);
}

TEST(RefBaseThreads, ReferencesAreCountedExactly) {
  std::atomic<int> firsts = 0;
  std::atomic<int> deaths = 0;
  Counted* const object = new Counted(&firsts, &deaths);
  const wp<Counted> weak = object;
  std::vector<sp<Counted>> held(4);
  together(4, [&](int i) {
    for (int n = 0; n < 1000; ++n) {
      const sp<Counted> more = held[static_cast<size_t>(i)] = object;
      const wp<Counted> less = more;
    }
  });
  EXPECT_EQ(firsts, 1);
  EXPECT_EQ(object->getStrongCount(), 4);
  together(4, [&](int i) { held[static_cast<size_t>(i)].clear(); });
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(weak.promote(), nullptr);
}

}  // namespace
}  // namespace android
