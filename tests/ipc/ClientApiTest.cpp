#include "ipc/ClientApi.h"

#include <binder/IServiceManager.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

#include "LogCapture.h"
#include "SampleService.h"
#include "ipc/Synchronized.h"

using android::IBinder;
using android::sp;
using android::String16;
using android::wp;
using vesk::test::LogCapture;
using vesk::test::LogLine;

namespace com::qv {
namespace {

/** An object of this process whose death the test decides on. */
class MortalService : public SampleService {
 public:
  android::status_t linkToDeath(const sp<DeathRecipient>& recipient, void*, uint32_t) override {
    const std::lock_guard lock(mutex_);
    if (diesBeforeLink) recipient->binderDied(this);
    if (linkResult == android::OK) recipients_.push_back(recipient);
    return linkResult;
  }

  void die() {
    for (const wp<DeathRecipient>& recipient : takeRecipients()) {
      if (const sp<DeathRecipient> strong = recipient.promote(); strong != nullptr) strong->binderDied(this);
    }
  }

  std::vector<wp<DeathRecipient>> takeRecipients() {
    const std::lock_guard lock(mutex_);
    return std::exchange(recipients_, {});
  }

  android::status_t linkResult = android::OK;
  /** The death is reported within linkToDeath(). */
  bool diesBeforeLink = false;

 private:
  std::mutex mutex_;
  std::vector<wp<DeathRecipient>> recipients_;
};

class SampleClient : public ClientBase {
 public:
  using Interface = ISample;
  static inline const char* kServiceName = nullptr;

  explicit SampleClient(const String16& serviceName)
      : ClientBase(serviceName, "SampleClient"), service(connected ? new BpSample(binder) : nullptr) {}

  ~SampleClient() override {
    if (onRelease) onRelease();
  }

  const sp<ISample> service;
  /** Never destroyed: the process releases its client while it exits. */
  static inline std::function<void()>& onRelease = *new std::function<void()>;
};

constexpr const char* kPresent = "test.sample";
constexpr const char* kAbsent = "test.absent";

ClientApi<SampleClient>& service = ClientApi<SampleClient>::instance();
std::atomic<int> deaths;
int stores;
std::function<void()> onDeath;

void serviceDied() {
  ++deaths;
  if (onDeath) onDeath();
}

bool connectTo(const char* name) {
  SampleClient::kServiceName = name;
  return service.connect(serviceDied, [] { ++stores; });
}

bool isConnected() { return service.value(IfNotConnected{0}, IfFailed{0}, &ISample::truth, 1) != 0; }

class ClientApiTest : public testing::Test {
 protected:
  ClientApiTest() {
    setenv("BINDER_LOOKUP_MS", "0", 1);
    EXPECT_EQ(android::defaultServiceManager()->addService(String16(kPresent), remote_), android::OK);
    deaths = 0;
    stores = 0;
    onDeath = nullptr;
  }
  ~ClientApiTest() override { service.disconnect(); }

  LogCapture log_;
  const sp<MortalService> remote_ = new MortalService;
};

TEST_F(ClientApiTest, CallKeepsItsProxy) {
  ASSERT_TRUE(connectTo(kPresent));
  wp<IBinder::DeathRecipient> client = remote_->takeRecipients().at(0);
  bool clientGone = false;
  remote_->during = [&] {
    service.disconnect();
    clientGone = client.promote() == nullptr;
  };
  EXPECT_EQ(service.value(&ISample::numbers, 21, true), 42);
  EXPECT_TRUE(clientGone);
  EXPECT_FALSE(isConnected());
}

TEST_F(ClientApiTest, ConnectingLogsAndStoresTheCallbacksOnSuccess) {
  EXPECT_FALSE(connectTo(kAbsent));
  EXPECT_EQ(stores, 0);
  EXPECT_EQ(log_.take(),
            (std::vector<LogLine>{{ANDROID_LOG_INFO, "SampleClient", "Connect test.absent failed!!! "}}));
  EXPECT_TRUE(connectTo(kPresent));
  EXPECT_EQ(stores, 1);
  EXPECT_EQ(log_.take(),
            (std::vector<LogLine>{{ANDROID_LOG_INFO, "SampleClient", "Connect test.sample done. "}}));
  EXPECT_FALSE(connectTo(kAbsent));
  EXPECT_EQ(stores, 1);
  EXPECT_TRUE(isConnected()) << "as before";
}

TEST_F(ClientApiTest, DeathIsReportedOnceAndRemovesTheClient) {
  ASSERT_TRUE(connectTo(kPresent));
  log_.take();
  remote_->die();
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
  EXPECT_EQ(log_.take(), (std::vector<LogLine>{{ANDROID_LOG_INFO, "CallClient", "test.sample is died. "}}));
}

TEST_F(ClientApiTest, ConnectionWithoutDeathNotificationIsNotLinked) {
  SampleClient::kServiceName = kPresent;
  ASSERT_TRUE(service.connectWithoutDeathNotification());
  EXPECT_TRUE(isConnected());
  EXPECT_TRUE(remote_->takeRecipients().empty());
}

TEST_F(ClientApiTest, ReplacedClientReportsNoDeath) {
  ASSERT_TRUE(connectTo(kPresent));
  const std::vector<wp<IBinder::DeathRecipient>> first = remote_->takeRecipients();
  ASSERT_EQ(first.size(), 1u);
  const sp<IBinder::DeathRecipient> kept = first[0].promote();
  ASSERT_TRUE(connectTo(kPresent));
  kept->binderDied(remote_);
  EXPECT_EQ(deaths, 0) << "even if someone still holds it";
  EXPECT_TRUE(isConnected());
  remote_->die();
  EXPECT_EQ(deaths, 1);
}

TEST_F(ClientApiTest, OnServiceDiedMayConnectAgain) {
  ASSERT_TRUE(connectTo(kPresent));
  onDeath = [] { EXPECT_TRUE(connectTo(kPresent)); };
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_TRUE(isConnected());
}

TEST_F(ClientApiTest, DeathBeforeTheLinkIsReported) {
  remote_->linkResult = android::DEAD_OBJECT;
  std::atomic<bool> mayReturn = false;
  onDeath = [&] { mayReturn.wait(false); };
  EXPECT_TRUE(connectTo(kPresent)) << "and does not wait for the callback";
  mayReturn = true;
  mayReturn.notify_all();

  log_.takeUntil({ANDROID_LOG_INFO, "CallClient", "test.sample is died. "});
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
}

TEST_F(ClientApiTest, DeathWithinTheLinkFindsTheClient) {
  remote_->diesBeforeLink = true;
  EXPECT_TRUE(connectTo(kPresent));
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
}

TEST_F(ClientApiTest, ClientIsReleasedOutsideOfTheLock) {
  std::vector<std::future<bool>> looks;
  SampleClient::onRelease = [&] {
    looks.push_back(std::async(std::launch::async, isConnected));
    EXPECT_EQ(looks.back().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  };
  ASSERT_TRUE(connectTo(kPresent));
  ASSERT_TRUE(connectTo(kPresent));
  EXPECT_EQ(looks.size(), 1u) << "replaced";
  remote_->die();
  EXPECT_EQ(looks.size(), 2u) << "dead";
  ASSERT_TRUE(connectTo(kPresent));
  service.disconnect();
  EXPECT_EQ(looks.size(), 3u) << "given up";
  SampleClient::onRelease = nullptr;
}

TEST_F(ClientApiTest, ConnectsDeathsAndCallsMayMeet) {
  constexpr int kRounds = 200;
  ASSERT_TRUE(connectTo(kPresent));
  std::atomic<bool> done = false;
  std::vector<std::thread> callers;
  for (int i = 0; i < 2; ++i) {
    callers.emplace_back([&] {
      while (!done) {
        const int answer = service.value(IfNotConnected{-5}, IfFailed{-6}, &ISample::numbers, 21, true);
        EXPECT_TRUE(answer == 42 || answer == -5) << answer;
      }
    });
  }
  std::vector<std::thread> changers;
  for (int i = 0; i < 2; ++i) {
    changers.emplace_back([] {
      const auto store = [] {
        const int before = stores;
        std::this_thread::yield();
        stores = before + 1;
      };
      for (int round = 0; round < kRounds; ++round) EXPECT_TRUE(service.connect(serviceDied, store));
    });
  }
  changers.emplace_back([&] {
    for (int round = 0; round < kRounds; ++round) remote_->die();
  });
  for (std::thread& thread : changers) thread.join();
  done = true;
  for (std::thread& thread : callers) thread.join();
  EXPECT_EQ(stores, 1 + 2 * kRounds) << "callbacks are stored by one connect at a time";

  ASSERT_TRUE(connectTo(kPresent));
  deaths = 0;
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
}

TEST(SynchronizedTest, ReadersSeeOneValueOrTheOther) {
  struct Table {
    std::array<int, 16384> values;
  };
  Synchronized<Table> table;
  std::thread writer([&] {
    for (int i = 1; i <= 2000; ++i) {
      Table next;
      next.values.fill(i);
      table.set(next);
    }
  });
  for (int seen = 0; seen < 2000;) {
    const std::array<int, 16384> values = table.get(&Table::values);
    EXPECT_EQ(values.front(), values.back());
    EXPECT_GE(values.front(), seen);
    seen = values.front();
  }
  writer.join();
}

TEST(ClientApiExitTest, ForkedChildReleasesTheClientThatItConnected) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // Forks before the process has used the binder.
  const auto connectInChild = [] {
    if (::fork() > 0) {
      int status = 0;
      ::wait(&status);
      ::_exit(WEXITSTATUS(status));
    }
    SampleClient::onRelease = [] { std::fputs("released", stderr); };
    android::defaultServiceManager()->addService(String16(kPresent), new MortalService);
    std::exit(connectTo(kPresent) ? 0 : 1);
  };
  EXPECT_EXIT(connectInChild(), testing::ExitedWithCode(0), "released");
}

}  // namespace
}  // namespace com::qv
