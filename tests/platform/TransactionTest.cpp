#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <unistd.h>

#include <filesystem>
#include <numeric>
#include <vector>

#include "TestService.h"

using android::DEAD_OBJECT;
using android::FAILED_TRANSACTION;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::String8;

namespace {

class TransactionTest : public testing::Test {
 protected:
  TransactionTest() { android::ProcessState::self()->startThreadPool(); }
};

status_t callEmpty(const sp<IBinder>& object, uint32_t code, Parcel* reply) {
  Parcel data;
  return object->transact(code, data, reply);
}

TEST_F(TransactionTest, CarriesReplyErrorAndCaller) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  ASSERT_NE(service, nullptr);
  EXPECT_EQ(increment(service, 41), 42);
  EXPECT_EQ(service->pingBinder(), OK);
  EXPECT_EQ(service->localBinder(), nullptr);

  for (const status_t error :
       std::initializer_list<status_t>{-1, android::UNKNOWN_TRANSACTION, android::BAD_TYPE, 7}) {
    Parcel data;
    Parcel reply;
    data.writeInt32(error);
    reply.writeInt32(99);
    EXPECT_EQ(service->transact(TestObject::kFail, data, &reply), error);
    EXPECT_EQ(reply.dataSize(), 0U) << "the reply of a failed method is discarded";
  }
  Parcel reply;
  EXPECT_EQ(callEmpty(service, 0x00ffffff, &reply), android::UNKNOWN_TRANSACTION);
  EXPECT_EQ(callEmpty(service, TestObject::kIncrement, nullptr), OK) << "the reply is optional";
  EXPECT_EQ(callEmpty(service, IBinder::INTERFACE_TRANSACTION, &reply), OK);
  EXPECT_EQ(reply.readString16().size(), 0U);
  EXPECT_EQ(callEmpty(service, IBinder::DUMP_TRANSACTION, &reply), OK);

  ASSERT_EQ(callEmpty(service, TestObject::kForgetCaller, &reply), OK);
  ASSERT_EQ(callEmpty(service, TestObject::kGetCaller, &reply), OK);
  EXPECT_EQ(reply.readInt32(), ::getpid());
  EXPECT_EQ(reply.readInt32(), static_cast<int32_t>(::geteuid()));
}

TEST_F(TransactionTest, CallingIdentityCanBeClearedAndRestored) {
  android::IPCThreadState* const self = android::IPCThreadState::self();
  const int64_t token = self->clearCallingIdentity();
  EXPECT_EQ(self->getCallingPid(), ::getpid());
  self->restoreCallingIdentity((int64_t{1234} << 32) | 567);
  EXPECT_EQ(self->getCallingPid(), 567);
  EXPECT_EQ(self->getCallingUid(), 1234U);
  self->restoreCallingIdentity(token);
  EXPECT_EQ(self->getCallingUid(), ::geteuid());
}

TEST_F(TransactionTest, CarriesUpToOneMebibyteEachWay) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  constexpr size_t kLimit = 1024 * 1024;
  // A slot holds 64 KiB less 64 bytes, of which the frame header takes 40. The packets that follow
  // hold 64 KiB each.
  constexpr size_t kFirst = 64 * 1024 - 64 - 40;
  constexpr size_t kNext = 64 * 1024;
  for (const size_t size : {size_t{0}, size_t{4}, size_t{512}, size_t{516}, kFirst - 4, kFirst, kFirst + 4,
                            kFirst + kNext - 4, kFirst + kNext, kFirst + kNext + 4, kLimit - 4, kLimit}) {
    std::vector<uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), static_cast<uint8_t>(size));
    Parcel data;
    Parcel reply;
    ASSERT_EQ(data.setData(bytes.data(), size), OK);
    ASSERT_EQ(service->transact(TestObject::kEcho, data, &reply), OK) << size;
    EXPECT_EQ(std::vector<uint8_t>(reply.data(), reply.data() + reply.dataSize()), bytes) << size;
  }

  Parcel tooLarge;
  Parcel reply;
  ASSERT_EQ(tooLarge.setDataSize(kLimit + 1), OK);
  EXPECT_EQ(service->transact(TestObject::kEcho, tooLarge, &reply), FAILED_TRANSACTION);
  for (const size_t size : {kLimit, kLimit + 1}) {
    Parcel data;
    data.writeInt32(static_cast<int32_t>(size));
    EXPECT_EQ(service->transact(TestObject::kReplyOfSize, data, &reply),
              size == kLimit ? OK : FAILED_TRANSACTION);
  }
  EXPECT_EQ(increment(service, 1), 2) << "the connection still works";
}

/* Without the fixture: it starts the thread pool. */
TEST(NestedCallTest, NeedsNoThreadPool) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  Parcel data;
  Parcel reply;
  data.writeInt32(20);
  data.writeStrongBinder(new TestObject());
  ASSERT_EQ(service->transact(TestObject::kNest, data, &reply), OK);
  EXPECT_EQ(reply.readInt32(), 20);
}

TEST_F(TransactionTest, ManyThreadsCallAtOnce) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int32_t thread = 0; thread < 64; ++thread) {
    threads.emplace_back([&, thread] {
      for (int32_t call = 0; call < 200; ++call) {
        const int32_t value = thread * 1000 + call;
        if (increment(service, value) != value + 1) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

size_t entries(const std::string& directory) {
  return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(directory), {}));
}

TEST_F(TransactionTest, ManyCallsLeakNothing) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  const std::string ours = "/proc/self/";
  const std::string theirs = "/proc/" + std::to_string(process.child().pid()) + "/";
  const auto resources = [&] {
    std::vector<size_t> counts;
    for (const std::string& directory : {ours + "fd", ours + "task", theirs + "fd", theirs + "task"}) {
      counts.push_back(entries(directory));
    }
    return counts;
  };
  // The channels to processes of earlier tests close when their deaths are noticed.
  std::vector<size_t> before;
  waitUntil("stable counts", [&] {
    EXPECT_EQ(increment(service, 1), 2);
    const std::vector<size_t> last = std::exchange(before, resources());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return last == before;
  });
  for (int32_t call = 0; call < 100'000; ++call) ASSERT_EQ(increment(service, call), call + 1);
  const std::vector<size_t> after = resources();
  for (size_t i = 0; i < after.size(); ++i) EXPECT_LE(after[i], before[i]) << i;
}

CHILD_ROLE(lateService) {
  const sp<IBinder> object = new TestObject();
  android::defaultServiceManager()->addService(String16("test.late"), object);
  parent.ready();
  parent.channel().receive();
  android::ProcessState::self()->startThreadPool();
  parent.waitForEnd();
  return 0;
}

TEST_F(TransactionTest, WaitsForTheThreadPoolOfTheService) {
  vesk::test::ChildProcess process("lateService");
  const sp<IBinder> service = android::defaultServiceManager()->getService(String16("test.late"));
  ASSERT_NE(service, nullptr) << "a reference needs no binder thread";
  std::atomic<bool> answered{false};
  std::thread caller([&] {
    EXPECT_EQ(increment(service, 1), 2);
    answered = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(answered);
  process.channel().send("start");
  caller.join();
}

}  // namespace
