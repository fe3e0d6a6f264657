#pragma once

#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "ChildProcess.h"
#include "WaitUntil.h"

/** The object that the transport tests call. */
class TestObject : public android::BBinder {
 public:
  enum Code : uint32_t {
    /** In: int32. Out: the value plus one. */
    kIncrement = android::IBinder::FIRST_CALL_TRANSACTION,
    /** Out: the data. */
    kEcho,
    /** In: int32 size. Out: that many bytes. */
    kReplyOfSize,
    /** In: int32 depth, binder. Calls kNest of the binder with depth - 1 and itself, unless the
     * depth is 0. Out: the number of nested calls. */
    kNest,
    /** Sends "hanging" to the test and never returns. */
    kHang,
    /** In: a binder, which is kept. */
    kKeep,
    /** Out: the kept binder. */
    kGetKept,
    kDropKept,
    /** Out: a new TestObject. */
    kMakeObject,
    /** In: int32. Calls kIncrement of the kept binder. Out: its status and its result. */
    kCallKept,
    /** Out: pid and uid of the caller. */
    kGetCaller,
    /** In: int32, the status of the transaction. */
    kFail,
    /** In: int32 exit code. */
    kExit,
    /** Clears the calling identity without restoring it. */
    kForgetCaller,
    /** In: int32, the limit of file descriptors; 0 removes the limit. */
    kLimitFiles,
    /** Takes 50 ms. */
    kSleep,
    /** Out: the number of TestObjects in the process. */
    kCountAlive,
  };

  TestObject() { ++alive; }
  ~TestObject() override { --alive; }

  static std::atomic<int> alive;
  /** The channel on which kHang reports. */
  static vesk::test::Channel* toTest;

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override;

 private:
  android::sp<android::IBinder> kept() const;
  void keep(android::sp<android::IBinder> binder);

  mutable std::mutex mutex_;
  android::sp<android::IBinder> kept_;
};

/** A child process that registers a TestObject under a name. */
class ServiceProcess {
 public:
  explicit ServiceProcess(const std::string& name) : child_("testService", {name}), name_(name) {}

  android::sp<android::IBinder> get() const;
  vesk::test::ChildProcess& child() { return child_; }
  void kill() { child_.kill(); }

 private:
  vesk::test::ChildProcess child_;
  std::string name_;
};

/** Calls kIncrement. Returns the result or the error. */
int32_t increment(const android::sp<android::IBinder>& object, int32_t value);

/** Makes a call with a binder as its argument. */
android::status_t callWith(const android::sp<android::IBinder>& object, uint32_t code,
                           const android::sp<android::IBinder>& argument);
/** Makes a call that returns a binder; null if it fails. */
android::sp<android::IBinder> binderFrom(const android::sp<android::IBinder>& object, uint32_t code);

using vesk::test::waitUntil;
