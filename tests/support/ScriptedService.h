#pragma once

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <gtest/gtest.h>

#include <csignal>
#include <mutex>
#include <optional>
#include <string>

#include "ChildProcess.h"
#include "RecordingBinder.h"

namespace vesk::test {

/** A RecordingBinder with transactions that set its reply and take its requests. */
class ScriptedBinder : public RecordingBinder {
 public:
  enum Code : uint32_t {
    /** In: int32 status, the bytes of the reply. */
    kSetAnswer = LAST_CALL_TRANSACTION + 1,
    /** Out: code, flags and bytes of take(); nothing if that is empty. */
    kTakeRequest,
    /** The next request kills the process. */
    kDie,
  };

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    const std::lock_guard lock(mutex_);
    switch (code) {
      case kSetAnswer:
        status = data.readInt32();
        answer = Wire(bytesOf(data).substr(data.dataPosition()));
        return android::OK;
      case kTakeRequest:
        if (const auto request = take()) {
          reply->writeUint32(request->code);
          reply->writeUint32(request->flags);
          reply->write(request->bytes.data(), request->bytes.size());
        }
        return android::OK;
      case kDie:
        dies_ = true;
        return android::OK;
      default:
        if (dies_) raise(SIGKILL);
        return RecordingBinder::onTransact(code, data, reply, flags);
    }
  }

 private:
  std::mutex mutex_;
  bool dies_ = false;
};

/** Registers a ScriptedBinder under args[0]. */
CHILD_ROLE(scriptedService) {
  const android::sp<ScriptedBinder> service = new ScriptedBinder;
  const android::String16 name(args.at(0).c_str());
  if (android::defaultServiceManager()->addService(name, service) != android::OK) return 1;
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

/** A service in a child process that records requests and replies as the test sets. */
class ScriptedService {
 public:
  explicit ScriptedService(const char* name)
      : process_("scriptedService", {name}),
        binder_(android::defaultServiceManager()->getService(android::String16(name))) {}

  /** Sets the reply to all further requests; with a status other than OK, only that status. */
  void answer(const Wire& answer, android::status_t status = android::OK) {
    android::Parcel script;
    script.writeInt32(status);
    script.write(answer.bytes().data(), answer.bytes().size());
    control(ScriptedBinder::kSetAnswer, script);
  }

  /** The only request since the previous call; empty if there was none or more than one. */
  std::optional<RecordingBinder::Request> take() {
    android::Parcel taken;
    control(ScriptedBinder::kTakeRequest, {}, &taken);
    if (taken.dataSize() == 0) return std::nullopt;
    RecordingBinder::Request request{taken.readUint32(), taken.readUint32(), ""};
    request.bytes = bytesOf(taken).substr(taken.dataPosition());
    return request;
  }

  /** Makes the next request kill the process. */
  void dieOnNextRequest() { control(ScriptedBinder::kDie, {}); }

  /** Kills the process, or reaps it if a request has killed it. */
  void kill() { process_.kill(); }

 private:
  void control(uint32_t code, const android::Parcel& data, android::Parcel* reply = nullptr) {
    EXPECT_EQ(binder_->transact(code, data, reply), android::OK);
  }

  ChildProcess process_;
  const android::sp<android::IBinder> binder_;
};

}  // namespace vesk::test
