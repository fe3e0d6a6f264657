#include "TestService.h"

#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

using android::BBinder;
using android::IBinder;
using android::IPCThreadState;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;

std::atomic<int> TestObject::alive{0};
vesk::test::Channel* TestObject::toTest = nullptr;

sp<IBinder> TestObject::kept() const {
  const std::lock_guard lock(mutex_);
  return kept_;
}

void TestObject::keep(sp<IBinder> binder) {
  const std::lock_guard lock(mutex_);
  kept_.swap(binder);
}

status_t TestObject::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  switch (code) {
    case kIncrement:
      return reply->writeInt32(data.readInt32() + 1);
    case kEcho:
      return reply->setData(data.data(), data.dataSize());
    case kReplyOfSize:
      return reply->setDataSize(static_cast<size_t>(data.readInt32()));
    case kNest: {
      const int32_t depth = data.readInt32();
      const sp<IBinder> other = data.readStrongBinder();
      if (depth == 0) return reply->writeInt32(0);
      Parcel below;
      Parcel answer;
      below.writeInt32(depth - 1);
      below.writeStrongBinder(this);
      const status_t status = other->transact(kNest, below, &answer);
      return status != OK ? status : reply->writeInt32(answer.readInt32() + 1);
    }
    case kHang:
      toTest->send("hanging");
      for (;;) ::pause();
    case kKeep:
      keep(data.readStrongBinder());
      return OK;
    case kGetKept:
      return reply->writeStrongBinder(kept());
    case kDropKept:
      keep(nullptr);
      return OK;
    case kMakeObject:
      return reply->writeStrongBinder(new TestObject());
    case kCallKept: {
      Parcel request;
      Parcel answer;
      request.writeInt32(data.readInt32());
      reply->writeInt32(kept()->transact(kIncrement, request, &answer));
      return reply->writeInt32(answer.readInt32());
    }
    case kGetCaller:
      reply->writeInt32(IPCThreadState::self()->getCallingPid());
      return reply->writeInt32(static_cast<int32_t>(IPCThreadState::self()->getCallingUid()));
    case kFail:
      reply->writeInt32(1);
      return data.readInt32();
    case kForgetCaller:
      IPCThreadState::self()->clearCallingIdentity();
      return OK;
    case kLimitFiles: {
      rlimit limit;
      ::getrlimit(RLIMIT_NOFILE, &limit);
      const int32_t number = data.readInt32();
      limit.rlim_cur = number == 0 ? limit.rlim_max : static_cast<rlim_t>(number);
      return ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    case kSleep:
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      return OK;
    case kCountAlive:
      return reply->writeInt32(alive);
    case kExit:
      std::exit(data.readInt32());
    default:
      return BBinder::onTransact(code, data, reply, flags);
  }
}

CHILD_ROLE(testService) {
  TestObject::toTest = &parent.channel();
  const sp<IBinder> object = new TestObject();
  if (android::defaultServiceManager()->addService(String16(args[0].c_str()), object) != OK) return 1;
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

sp<IBinder> ServiceProcess::get() const {
  return android::defaultServiceManager()->getService(String16(name_.c_str()));
}

int32_t increment(const sp<IBinder>& object, int32_t value) {
  Parcel data;
  Parcel reply;
  data.writeInt32(value);
  const status_t status = object->transact(TestObject::kIncrement, data, &reply);
  return status == OK ? reply.readInt32() : status;
}

status_t callWith(const sp<IBinder>& object, uint32_t code, const sp<IBinder>& argument) {
  Parcel data;
  Parcel reply;
  data.writeStrongBinder(argument);
  return object->transact(code, data, &reply);
}

sp<IBinder> binderFrom(const sp<IBinder>& object, uint32_t code) {
  Parcel data;
  Parcel reply;
  return object->transact(code, data, &reply) == OK ? reply.readStrongBinder() : nullptr;
}
