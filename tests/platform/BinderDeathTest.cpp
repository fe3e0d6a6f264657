#include <binder/ProcessState.h>
#include <malloc.h>

#include "TestService.h"

using android::DEAD_OBJECT;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;
using android::wp;

namespace {

struct RecordingRecipient : IBinder::DeathRecipient {
  void binderDied(const wp<IBinder>& died) override {
    object = died.unsafe_get();
    if (then) then();
    ++times;
  }
  std::function<void()> then;
  std::atomic<const IBinder*> object{nullptr};
  std::atomic<int> times{0};
};

class BinderDeathTest : public testing::Test {
 protected:
  BinderDeathTest() { android::ProcessState::self()->startThreadPool(); }
};

void waitForDeath(const RecordingRecipient& recipient) {
  waitUntil("the death notification", [&] { return recipient.times > 0; });
}

TEST_F(BinderDeathTest, EndsCallsInProgress) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  std::vector<std::thread> callers;
  for (int i = 0; i < 4; ++i) {
    callers.emplace_back([&] {
      Parcel data;
      Parcel reply;
      EXPECT_EQ(service->transact(TestObject::kHang, data, &reply), DEAD_OBJECT);
    });
  }
  for (size_t i = 0; i < callers.size(); ++i) EXPECT_EQ(process.child().channel().receive(), "hanging");
  process.kill();
  for (std::thread& caller : callers) caller.join();
  EXPECT_EQ(increment(service, 1), DEAD_OBJECT) << "a later call fails as well";
  EXPECT_EQ(service->pingBinder(), DEAD_OBJECT);
}

TEST_F(BinderDeathTest, IsReportedOnceToEachRecipient) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  const sp<IBinder> object = binderFrom(service, TestObject::kMakeObject);
  const sp<RecordingRecipient> first = new RecordingRecipient();
  const sp<RecordingRecipient> second = new RecordingRecipient();
  const sp<RecordingRecipient> unlinked = new RecordingRecipient();
  sp<RecordingRecipient> gone = new RecordingRecipient();
  EXPECT_EQ(service->linkToDeath(first), OK);
  EXPECT_EQ(object->linkToDeath(second), OK);
  EXPECT_EQ(service->linkToDeath(unlinked, &process), OK);
  EXPECT_EQ(service->linkToDeath(gone), OK);
  EXPECT_EQ(service->linkToDeath(nullptr), android::BAD_VALUE);
  EXPECT_EQ(service->unlinkToDeath(second), android::NAME_NOT_FOUND);
  wp<IBinder::DeathRecipient> out;
  EXPECT_EQ(service->unlinkToDeath(nullptr, &process, 0, &out), OK);
  EXPECT_EQ(out.unsafe_get(), unlinked.get());
  EXPECT_EQ(service->unlinkToDeath(unlinked), android::NAME_NOT_FOUND);
  gone.clear();
  EXPECT_TRUE(service->isBinderAlive());

  process.kill();
  waitForDeath(*first);
  waitForDeath(*second);
  EXPECT_EQ(first->object, service.get());
  EXPECT_EQ(second->object, object.get());
  EXPECT_FALSE(service->isBinderAlive());
  const sp<RecordingRecipient> late = new RecordingRecipient();
  EXPECT_EQ(service->linkToDeath(late), DEAD_OBJECT);
  EXPECT_EQ(service->unlinkToDeath(first), DEAD_OBJECT);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(first->times, 1);
  EXPECT_EQ(second->times, 1);
  EXPECT_EQ(unlinked->times, 0);
  EXPECT_EQ(late->times, 0);
}

TEST_F(BinderDeathTest, LinksOfDestroyedRecipientsUseNoMemory) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  const auto before = ::mallinfo2().uordblks;
  for (int i = 0; i < 20'000; ++i) ASSERT_EQ(service->linkToDeath(new RecordingRecipient()), OK);
  EXPECT_LT(::mallinfo2().uordblks, before + 100'000);
}

TEST_F(BinderDeathTest, LocalObjectsCannotBeLinked) {
  const sp<IBinder> object = new TestObject();
  const sp<RecordingRecipient> recipient = new RecordingRecipient();
  EXPECT_EQ(object->linkToDeath(recipient), android::INVALID_OPERATION);
  EXPECT_EQ(object->unlinkToDeath(recipient), android::INVALID_OPERATION);
}

TEST_F(BinderDeathTest, RecipientMayWaitForASuccessor) {
  auto process = std::make_unique<ServiceProcess>("test.service");
  ServiceProcess bystander("test.bystander");
  const sp<IBinder> service = process->get();
  const sp<IBinder> other = bystander.get();
  std::atomic<int32_t> answer{0};
  const sp<RecordingRecipient> patient = new RecordingRecipient();
  patient->then = [&] {
    answer = increment(android::defaultServiceManager()->getService(String16("test.service")), 1);
  };
  const sp<RecordingRecipient> quick = new RecordingRecipient();
  const sp<RecordingRecipient> neighbour = new RecordingRecipient();
  ASSERT_EQ(service->linkToDeath(patient), OK);
  ASSERT_EQ(service->linkToDeath(neighbour), OK);
  ASSERT_EQ(other->linkToDeath(quick), OK);

  process->kill();
  bystander.kill();
  waitForDeath(*quick);
  waitForDeath(*neighbour);  // Recipients do not wait for each other.
  EXPECT_EQ(patient->times, 0);
  process = std::make_unique<ServiceProcess>("test.service");
  waitForDeath(*patient);
  EXPECT_EQ(answer, 2);
}

TEST_F(BinderDeathTest, LinksRaceWithDeath) {
  for (int round = 0; round < 10; ++round) {
    ServiceProcess process("test.service");
    const sp<IBinder> service = process.get();
    std::vector<sp<RecordingRecipient>> linked;
    std::thread linker([&] {
      for (;;) {
        const sp<RecordingRecipient> recipient = new RecordingRecipient();
        if (service->linkToDeath(recipient) != OK) return;
        linked.push_back(recipient);
        increment(service, 1);
      }
    });
    waitUntil("a call", [&] { return increment(service, 1) == 2; });
    process.kill();
    linker.join();
    for (const sp<RecordingRecipient>& recipient : linked) waitForDeath(*recipient);
    for (const sp<RecordingRecipient>& recipient : linked) EXPECT_EQ(recipient->times, 1);
  }
}

TEST_F(BinderDeathTest, ServiceSurvivesADyingCaller) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  {
    vesk::test::ChildProcess caller("hangingCaller");
    EXPECT_EQ(process.child().channel().receive(), "hanging");
    caller.kill();
  }
  EXPECT_EQ(increment(service, 1), 2);
}

CHILD_ROLE(hangingCaller) {
  parent.ready();
  Parcel data;
  Parcel reply;
  android::defaultServiceManager()
      ->getService(String16("test.service"))
      ->transact(TestObject::kHang, data, &reply);
  return 1;
}

TEST_F(BinderDeathTest, ServiceMayExitDuringACall) {
  ServiceProcess process("test.service");
  const sp<IBinder> service = process.get();
  Parcel data;
  Parcel reply;
  data.writeInt32(5);
  EXPECT_EQ(service->transact(TestObject::kExit, data, &reply), DEAD_OBJECT);
  EXPECT_EQ(process.child().wait(), 5);
}

}  // namespace
