#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vesk/vesk_client.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

#include "CallCallbackList.h"
#include "ChildProcess.h"
#include "WaitUntil.h"

using android::sp;
using vesk::test::ChildProcess;
using vesk::test::waitUntil;

namespace {

/** A function that callbacks run; it may be replaced meanwhile. */
template <class... Arguments>
class Hook {
 public:
  using Function = std::function<void(Arguments...)>;
  void operator=(Function function) {
    const std::lock_guard lock(mutex_);
    function_ = std::move(function);
  }
  void operator()(Arguments... arguments) const {
    if (const Function function = get()) function(arguments...);
  }

 private:
  Function get() const {
    const std::lock_guard lock(mutex_);
    return function_;
  }

  mutable std::mutex mutex_;
  Function function_;
};

/* Programs of these tests exit while callbacks run. */
Hook<int>& onInfo = *new Hook<int>;
Hook<>& onDeath = *new Hook<>;
std::atomic<int> infos;
std::atomic<int> deaths;

void countInfo(void* record) {
  ++infos;
  onInfo(static_cast<vesk_call_info*>(record)->line);
}

CallCallbackList callbacks() {
  CallCallbackList list;
  std::get<kOnCallInfoChanged>(list) = countInfo;
  std::get<kOnCallStateChanged>(list) = countInfo;
  std::get<kOnServiceDied>(list) = [] {
    onDeath();
    ++deaths;
  };
  return list;
}

bool connect() { return connectCallService(callbacks()); }

bool isConnected() { return binder_get_first_valid_line() == 1; }

class CallConnectionTest : public testing::Test {
 protected:
  CallConnectionTest() {
    setenv("BINDER_LOOKUP_MS", "0", 1);
    // The service of the test before has ended, and its death is not this test's.
    connectCallService(kNoCallbacks);
    infos = 0;
    deaths = 0;
    onInfo = nullptr;
    onDeath = nullptr;
  }

  static void waitForDeath() {
    waitUntil("on_service_died", [] { return deaths > 0; });
  }
};

TEST_F(CallConnectionTest, CallbackMayCallBackSeveralLevelsDeep) {
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  std::mutex mutex;
  std::vector<int> lines;
  onInfo = [&](int line) {
    {
      const std::lock_guard lock(mutex);
      lines.push_back(line);
    }
    EXPECT_EQ(binder_make_call(line - 1, "notify"), line > 1 ? 1 : 0);
  };
  EXPECT_EQ(binder_make_call(4, "notify"), 1);
  const std::lock_guard lock(mutex);
  EXPECT_EQ(lines, (std::vector<int>{4, 3, 2, 1}));
}

TEST_F(CallConnectionTest, CallbackMayConnect) {
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  onInfo = [](int line) {
    if (line != 1) return;
    EXPECT_TRUE(connect());
  };
  EXPECT_EQ(binder_make_call(1, "notify"), 1);
  EXPECT_EQ(infos, 1);
  EXPECT_EQ(binder_make_call(2, "notify"), 2) << "the service keeps the earlier listener";
  EXPECT_EQ(infos, 3);
}

TEST_F(CallConnectionTest, DeathEndsCallsInProgressAndIsReportedOnce) {
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  ASSERT_TRUE(connect()) << "which replaces the first one";
  std::vector<std::thread> callers;
  for (int i = 0; i < 3; ++i) {
    callers.emplace_back([] { EXPECT_EQ(binder_make_call(1, "hang"), -1); });
  }
  for (size_t i = 0; i < callers.size(); ++i) EXPECT_EQ(service.channel().receive(), "hanging");
  onDeath = [] { EXPECT_FALSE(isConnected()); };
  service.kill();
  for (std::thread& caller : callers) caller.join();
  waitForDeath();
  EXPECT_FALSE(isConnected());
  EXPECT_FALSE(connect());

  ChildProcess next("callService");
  EXPECT_TRUE(connect());
  EXPECT_EQ(binder_make_call(1, "notify"), 1);
  EXPECT_EQ(infos, 1);
  EXPECT_EQ(deaths, 1);
  onDeath = nullptr;
}

TEST_F(CallConnectionTest, FailedConnectDropsTheConnectionAndKeepsTheCallbacks) {
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  ASSERT_EQ(binder_make_call(0, "storm"), 0);
  ChildProcess("callService").kill();  // Takes the name with it.
  ASSERT_TRUE(isConnected());

  EXPECT_FALSE(connectCallService(kNoCallbacks));
  EXPECT_FALSE(isConnected());
  const int before = infos;
  waitUntil("another event from the service that lives", [&] { return infos > before; });
  service.stop();
  EXPECT_EQ(deaths, 0) << "it was given up before";
}

TEST_F(CallConnectionTest, EventsMayArriveWhileConnecting) {
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  ASSERT_EQ(binder_make_call(0, "storm"), 0);
  for (int i = 0; i < 20; ++i) {
    EXPECT_TRUE(connect());
    EXPECT_TRUE(isConnected());
    EXPECT_TRUE(connectCallService(kNoCallbacks));
  }
  EXPECT_TRUE(connect());
  infos = 0;
  waitUntil("an event", [] { return infos > 0; });
}

/** A program that ends as its argument says while events arrive. */
CHILD_ROLE(endingApplication) {
  const std::string& how = args.at(0);
  static std::atomic_flag exiting;
  if (how == "callback") {
    onInfo = [](int) {
      if (!exiting.test_and_set()) std::exit(0);
    };
  }
  parent.ready();
  if (!connect()) return 1;
  if (how == "calls") {
    for (int i = 0; i < 2; ++i) {
      std::thread([] {
        while (true) binder_get_first_valid_line();
      }).detach();
    }
  }
  waitUntil("an event", [] { return infos > 0; });
  if (how == "callback") pause();
  return 0;
}

TEST_F(CallConnectionTest, ProgramMayEndWhileEventsArrive) {
  constexpr int kTimes = 10;
  ChildProcess service("callService");
  ASSERT_TRUE(connect());
  ASSERT_EQ(binder_make_call(0, "storm"), 0);
  for (const char* how : {"main", "callback", "calls"}) {
    for (int i = 0; i < kTimes; ++i) EXPECT_EQ(ChildProcess("endingApplication", {how}).wait(), 0) << how;
  }
  EXPECT_TRUE(isConnected()) << "the service has lost nothing by it";
}

/** A program that forks, and whose child ends as after an exec that failed. */
CHILD_ROLE(forkingApplication) {
  parent.ready();
  if (!connect()) return 1;
  const pid_t child = fork();
  if (child == 0) std::exit(isConnected() ? 1 : 0);
  int status = -1;
  waitpid(child, &status, 0);
  if (status != 0) return 2;
  return isConnected() ? 0 : 3;
}

TEST_F(CallConnectionTest, ForkedChildHasNoConnectionAndLeavesItsParents) {
  ChildProcess service("callService");
  EXPECT_EQ(ChildProcess("forkingApplication").wait(), 0);
}

}  // namespace
