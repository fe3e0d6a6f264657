#include <binder/ProcessState.h>

#include "TestService.h"

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;

namespace {

class ReferenceTest : public testing::Test {
 protected:
  ReferenceTest() : process("test.service"), service(process.get()) {
    android::ProcessState::self()->startThreadPool();
  }

  ServiceProcess process;
  const sp<IBinder> service;
};

TEST_F(ReferenceTest, OneProxyForOneObject) {
  EXPECT_EQ(process.get(), service);
  const sp<IBinder> made = binderFrom(service, TestObject::kMakeObject);
  EXPECT_NE(made, service);
  ASSERT_EQ(callWith(service, TestObject::kKeep, made), OK);
  EXPECT_EQ(binderFrom(service, TestObject::kGetKept), made) << "the same proxy after a round trip";
}

TEST_F(ReferenceTest, ReturnedLocalObjectIsNoProxy) {
  const sp<IBinder> object = new TestObject();
  ASSERT_EQ(callWith(service, TestObject::kKeep, object), OK);
  EXPECT_EQ(binderFrom(service, TestObject::kGetKept), object);
  ASSERT_EQ(callWith(service, TestObject::kKeep, nullptr), OK);
  EXPECT_EQ(binderFrom(service, TestObject::kGetKept), nullptr);
}

TEST_F(ReferenceTest, RemoteReferenceKeepsTheObjectAlive) {
  // This process drops its only reference after the call.
  ASSERT_EQ(callWith(service, TestObject::kKeep, new TestObject()), OK);
  EXPECT_EQ(TestObject::alive, 1);
  Parcel data;
  Parcel reply;
  data.writeInt32(1);
  ASSERT_EQ(service->transact(TestObject::kCallKept, data, &reply), OK);
  EXPECT_EQ(reply.readInt32(), OK);
  EXPECT_EQ(reply.readInt32(), 2);

  ASSERT_EQ(service->transact(TestObject::kDropKept, data, &reply), OK);
  waitUntil("the object to be destroyed", [] { return TestObject::alive == 0; });
}

TEST_F(ReferenceTest, UnreferencedObjectsAreDestroyed) {
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(callWith(service, TestObject::kDropKept, new TestObject()), OK);
  }
  waitUntil("the objects to be destroyed", [] { return TestObject::alive == 0; });
}

TEST_F(ReferenceTest, DeathOfTheHolderReleasesTheObject) {
  ASSERT_EQ(callWith(service, TestObject::kKeep, new TestObject()), OK);
  EXPECT_EQ(TestObject::alive, 1);
  process.kill();
  waitUntil("the object to be destroyed", [] { return TestObject::alive == 0; });
}

TEST_F(ReferenceTest, ReferenceInAReplyIsNeverLost) {
  std::vector<std::thread> threads;
  std::atomic<int> lost{0};
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        const sp<IBinder> made = binderFrom(service, TestObject::kMakeObject);
        if (made == nullptr || increment(made, i) != i + 1) ++lost;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(lost, 0);
}

TEST_F(ReferenceTest, ObjectPassesThroughAThirdProcess) {
  ServiceProcess other("test.other");
  // The second process calls an object of the first, received from this process.
  ASSERT_EQ(callWith(other.get(), TestObject::kKeep, binderFrom(service, TestObject::kMakeObject)), OK);
  const auto callKept = [&] {
    Parcel data;
    Parcel reply;
    data.writeInt32(7);
    EXPECT_EQ(other.get()->transact(TestObject::kCallKept, data, &reply), OK);
    return reply.readInt32() == OK ? reply.readInt32() : 0;
  };
  EXPECT_EQ(callKept(), 8);
  const sp<IBinder> again = binderFrom(other.get(), TestObject::kGetKept);
  EXPECT_EQ(increment(again, 1), 2) << "called directly from this process";
  process.kill();
  EXPECT_EQ(callKept(), 0);

  // A dead object arrives dead.
  waitUntil("the death notification", [&] { return !again->isBinderAlive(); });
  ASSERT_EQ(callWith(other.get(), TestObject::kKeep, again), OK);
  EXPECT_EQ(callKept(), 0);
}

}  // namespace
