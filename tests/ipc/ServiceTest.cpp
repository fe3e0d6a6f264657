#include "ipc/Service.h"

#include <binder/IServiceManager.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "LogCapture.h"
#include "SampleService.h"
#include "ipc/Immortal.h"
#include "ipc/Synchronized.h"
#include "ipc/Text.h"

#define COM_QV_INTERFACE Sample
#define COM_QV_METHODS "Sample.def"
#include "ipc/DeclareRows.h"

using android::IBinder;
using android::sp;
using android::String16;
using android::wp;
using android::binder::Status;
using vesk::test::LogCapture;
using vesk::test::LogLine;

namespace com::qv {
namespace {

/** An object of this process whose death the test decides on. */
class MortalService : public SampleService {
 public:
  android::status_t linkToDeath(const sp<DeathRecipient>& recipient, void*, uint32_t) override {
    const std::lock_guard lock(mutex_);
    if (linkResult == android::OK) recipients_.push_back(recipient);
    return linkResult;
  }

  void die() {
    for (const wp<DeathRecipient>& recipient : takeRecipients()) {
      if (const sp<DeathRecipient> strong = recipient.promote(); strong != nullptr) strong->binderDied(this);
    }
  }

  /** Who would be told. */
  std::vector<wp<DeathRecipient>> takeRecipients() {
    const std::lock_guard lock(mutex_);
    return std::exchange(recipients_, {});
  }

  android::status_t linkResult = android::OK;

 private:
  std::mutex mutex_;
  std::vector<wp<DeathRecipient>> recipients_;
};

class SampleClient : public ClientBase {
 public:
  using Service = ISample;
  static inline const char* kServiceName = nullptr;

  explicit SampleClient(const String16& serviceName)
      : ClientBase(serviceName, "SampleClient"), service(connected ? new BpSample(binder) : nullptr) {}

  const sp<ISample> service;
};

constexpr const char* kPresent = "test.sample";
constexpr const char* kAbsent = "test.absent";

Service<SampleClient>& service = immortal<Service<SampleClient>>();
std::atomic<int> deaths;
std::atomic<int> stores;
std::function<void()> onDeath;

void hook(ClientBase* client, const wp<IBinder>&) { service.died(client); }

void serviceDied() {
  ++deaths;
  if (onDeath) onDeath();
}

bool connectTo(const char* name) {
  SampleClient::kServiceName = name;
  return service.connect(hook, serviceDied, [] { ++stores; });
}

bool isConnected() { return service.value(IfNotConnected{0}, IfFailed{0}, Sample::truth, 1) != 0; }

class ServiceTest : public testing::Test {
 protected:
  ServiceTest() {
    setenv("BINDER_LOOKUP_MS", "0", 1);
    EXPECT_EQ(android::defaultServiceManager()->addService(String16(kPresent), remote_), android::OK);
    deaths = 0;
    stores = 0;
    onDeath = nullptr;
  }
  ~ServiceTest() override { service.disconnect(); }

  void fail() { remote_->outcome = Status::fromExceptionCode(Status::EX_ILLEGAL_STATE); }

  LogCapture log_;
  const sp<MortalService> remote_ = new MortalService;
};

TEST_F(ServiceTest, WithoutAClientEveryMemberGivesItsAbsentValue) {
  char untouched[] = "untouched";
  EXPECT_EQ(service.value(Sample::numbers, 1, true), -1);
  EXPECT_EQ(service.value(Sample::truth, 1), 0);
  EXPECT_EQ(service.value(IfNotConnected{3}, IfFailed{7}, Sample::numbers, 1, true), 3);
  EXPECT_EQ(service.fetch<3>(untouched, Sample::record, 0, Record<3>{"abc"}), -1);
  EXPECT_EQ(service.text(IfNotConnected{-5}, Truncate{untouched, 4}, Sample::text, "abc"), -5);
  EXPECT_EQ(service.list<1>([](int, const char*) { return true; }, Sample::records, 3), -1);
  EXPECT_EQ(service.text(IfNotConnected{-5}, Truncate{untouched, 4}, Sample::text,
                         static_cast<const char*>(nullptr)),
            -5);
  EXPECT_EQ(service.fetch(Exactly{untouched, 3}, Sample::measure, Record<3>{"abc"}), -1);
  EXPECT_EQ(service.send(Sample::nothing), -1);
  EXPECT_EQ(service.proxy(), nullptr);
  EXPECT_STREQ(untouched, "untouched");
  EXPECT_EQ(remote_->calls, 0);
}

TEST_F(ServiceTest, SendingTellsOnlyThatTheCallWasMade) {
  ASSERT_TRUE(connectTo(kPresent));
  EXPECT_EQ(service.send(Sample::nothing), 0);
  EXPECT_EQ(service.send(Sample::numbers, 21, true), 0) << "the answer is dropped";
  fail();
  EXPECT_EQ(service.send(Sample::nothing), 0);
  EXPECT_EQ(service.send(Sample::numbers, 21, true), 0);
  EXPECT_EQ(remote_->calls, 4);
}

TEST_F(ServiceTest, AValueIsTheAnswerOrThePreset) {
  ASSERT_TRUE(connectTo(kPresent));
  EXPECT_EQ(service.value(Sample::numbers, 21, true), 42);
  EXPECT_EQ(service.value(Sample::numbers, 21, 2), 42) << "an int other than 0 is true";
  EXPECT_EQ(service.value(Sample::numbers, 21, 0), 0);
  EXPECT_EQ(service.value(Sample::truth, 1), 1);
  EXPECT_EQ(service.value(Sample::truth, 0), 0);
  const int values[] = {1, 2, 3};
  EXPECT_EQ(service.value(Sample::ints, IntArray{values, 3}), 6);
  EXPECT_EQ(service.value(Sample::ints, IntArray{values, 0}), 0);
  EXPECT_EQ(service.value(Sample::ints, IntArray{nullptr, -1}), 0);
  EXPECT_EQ(service.value(IfNotConnected{3}, IfFailed{7}, Sample::numbers, 1, true), 2);

  fail();
  EXPECT_EQ(service.value(Sample::numbers, 21, true), -1);
  EXPECT_EQ(service.value(Sample::truth, 1), 0);
  EXPECT_EQ(service.value(IfNotConnected{3}, IfFailed{7}, Sample::numbers, 1, true), 7);
  EXPECT_EQ(service.value(IfNotConnected{3}, IfFailed{1}, Sample::truth, -1), 1);
}

TEST_F(ServiceTest, ARecordIsTakenOnlyAtItsExactSize) {
  ASSERT_TRUE(connectTo(kPresent));
  const char sent[] = "a\0b\0c";
  char buffer[] = "########";
  EXPECT_EQ(service.fetch<4>(buffer, Sample::record, 0, Record<5>{sent}), -1);
  EXPECT_EQ(service.fetch<6>(buffer, Sample::record, 0, Record<5>{sent}), -1);
  EXPECT_STREQ(buffer, "########");
  EXPECT_EQ(service.fetch<5>(buffer, Sample::record, 0, Record<5>{sent}), 0);
  EXPECT_EQ(std::memcmp(buffer, "a\0b\0c###", sizeof(buffer)), 0);

  fail();
  EXPECT_EQ(service.fetch<5>(buffer, Sample::record, 0, Record<5>{"12345"}), -1);
  EXPECT_EQ(std::memcmp(buffer, "a\0b\0c###", sizeof(buffer)), 0);
}

TEST_F(ServiceTest, TheValueThatComesWithARecordCountsOnlyIfTheRecordIsTaken) {
  ASSERT_TRUE(connectTo(kPresent));
  char buffer[] = "########";
  EXPECT_EQ(service.fetch(Exactly{buffer, 2}, Sample::measure, Record<3>{"abc"}), -1);
  EXPECT_STREQ(buffer, "########");
  EXPECT_EQ(service.fetch(Exactly{buffer, 3}, Sample::measure, Record<3>{"abc"}), 3);
  EXPECT_STREQ(buffer, "abc#####");
  fail();
  EXPECT_EQ(service.fetch(Exactly{buffer, 3}, Sample::measure, Record<3>{"xyz"}), -1);
  EXPECT_EQ(service.fetch(Exactly{buffer, 0}, Sample::measure, Record<3>{"xyz"}), -1) << "the preset";
  EXPECT_STREQ(buffer, "abc#####");
}

TEST_F(ServiceTest, ATextGoesByItsRule) {
  ASSERT_TRUE(connectTo(kPresent));
  char buffer[] = "########";
  EXPECT_EQ(service.text(IfNotConnected{-5}, AllOrNothing{buffer, 3}, Sample::text, "abc"), -1);
  EXPECT_STREQ(buffer, "########");
  EXPECT_EQ(service.text(IfNotConnected{-5}, Truncate{buffer, 3}, Sample::text, "abc"), 0);
  EXPECT_STREQ(buffer, "ab");
  fail();
  EXPECT_EQ(service.text(IfNotConnected{-5}, TruncateZeroFill{buffer, 8, -2}, Sample::text, "abc"), -2);
  EXPECT_STREQ(buffer, "ab");
}

TEST_F(ServiceTest, AListHandsOutTheRecordsOfItsSize) {
  ASSERT_TRUE(connectTo(kPresent));
  std::vector<std::string> stored;
  const auto store = [&](int index, const char* bytes) {
    EXPECT_EQ(static_cast<size_t>(index), stored.size());
    stored.emplace_back(bytes, 2);
    return true;
  };
  EXPECT_EQ(service.list<2>(store, Sample::records, 5), 1);
  EXPECT_EQ(stored, std::vector<std::string>{"01"});
  EXPECT_EQ(service.list<2>([](int, const char*) { return false; }, Sample::records, 5), 0);
  EXPECT_EQ(service.list<2>(store, Sample::records, 2), 0);
  fail();
  EXPECT_EQ(service.list<2>(store, Sample::records, 5), 0);
}

TEST_F(ServiceTest, ANullStringRaisesTheLogicError) {
  ASSERT_TRUE(connectTo(kPresent));
  const char* const null = nullptr;
  char untouched[] = "untouched";
  EXPECT_THROW(service.text(IfNotConnected{-5}, Truncate{untouched, 4}, Sample::text, null),
               std::logic_error);
  EXPECT_STREQ(untouched, "untouched");
  EXPECT_EQ(remote_->calls, 0);
}

TEST_F(ServiceTest, ACallKeepsItsProxy) {
  ASSERT_TRUE(connectTo(kPresent));
  wp<IBinder::DeathRecipient> client = remote_->takeRecipients().at(0);
  bool clientGone = false;
  remote_->during = [&] {
    service.disconnect();
    clientGone = client.promote() == nullptr;
  };
  EXPECT_EQ(service.value(Sample::numbers, 21, true), 42);
  EXPECT_TRUE(clientGone);
  EXPECT_FALSE(isConnected());
}

TEST_F(ServiceTest, ConnectingLogsAndStoresTheCallbacksOnSuccess) {
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

TEST_F(ServiceTest, ADeathIsToldOnceAndEmptiesTheSlot) {
  ASSERT_TRUE(connectTo(kPresent));
  log_.take();
  remote_->die();
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
  EXPECT_EQ(log_.take(), (std::vector<LogLine>{{ANDROID_LOG_INFO, "CallClient", "test.sample is died. "}}));
}

TEST_F(ServiceTest, AConnectionWithoutDeathNotificationIsNotLinked) {
  SampleClient::kServiceName = kPresent;
  ASSERT_TRUE(service.connect());
  EXPECT_TRUE(isConnected());
  EXPECT_TRUE(remote_->takeRecipients().empty());
}

TEST_F(ServiceTest, AReplacedClientIsNotTold) {
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

TEST_F(ServiceTest, OnServiceDiedMayConnectAgain) {
  ASSERT_TRUE(connectTo(kPresent));
  onDeath = [] { EXPECT_TRUE(connectTo(kPresent)); };
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_TRUE(isConnected());
}

TEST_F(ServiceTest, ADeathBeforeTheLinkIsTold) {
  remote_->linkResult = android::DEAD_OBJECT;
  std::atomic<bool> told = false;
  onDeath = [&] { told.wait(false); };
  EXPECT_TRUE(connectTo(kPresent)) << "and does not wait for the callback";
  told = true;
  told.notify_all();

  log_.takeUntil({ANDROID_LOG_INFO, "CallClient", "test.sample is died. "});
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
}

TEST_F(ServiceTest, TheEndOfTheProgramReleasesTheClient) {
  ASSERT_TRUE(connectTo(kPresent));
  const wp<IBinder::DeathRecipient> client = remote_->takeRecipients().at(0);
  {
    const ReleaseAtExit<SampleClient> releaseAtExit{service};
    EXPECT_NE(client.promote(), nullptr);
  }
  EXPECT_EQ(client.promote(), nullptr);
}

TEST_F(ServiceTest, ConnectsDeathsAndCallsMayMeet) {
  constexpr int kRounds = 200;
  ASSERT_TRUE(connectTo(kPresent));
  std::atomic<bool> done = false;
  std::vector<std::thread> callers;
  for (int i = 0; i < 2; ++i) {
    callers.emplace_back([&] {
      while (!done) {
        const int answer = service.value(IfNotConnected{-5}, IfFailed{-6}, Sample::numbers, 21, true);
        EXPECT_TRUE(answer == 42 || answer == -5) << answer;
      }
    });
  }
  std::vector<std::thread> changers;
  for (int i = 0; i < 2; ++i) {
    changers.emplace_back([] {
      for (int round = 0; round < kRounds; ++round) EXPECT_TRUE(service.connect(hook, serviceDied, [] {}));
    });
  }
  changers.emplace_back([&] {
    for (int round = 0; round < kRounds; ++round) remote_->die();
  });
  for (std::thread& thread : changers) thread.join();
  done = true;
  for (std::thread& thread : callers) thread.join();

  ASSERT_TRUE(connectTo(kPresent));
  deaths = 0;
  remote_->die();
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(isConnected());
}

TEST(GuardedTest, ReadersSeeOneValueOrTheOther) {
  struct Table {
    int first;
    int second;
  };
  Synchronized<Table> guarded;
  std::thread writer([&] {
    for (int i = 1; i <= 2000; ++i) guarded.set({i, -i});
  });
  int seen = 0;
  while (seen < 2000) {
    const Table table = guarded.get();
    EXPECT_EQ(table.first, -table.second);
    EXPECT_GE(table.first, seen);
    seen = table.first;
    EXPECT_LE(guarded.get(&Table::second), -seen);
  }
  writer.join();
}

}  // namespace
}  // namespace com::qv
