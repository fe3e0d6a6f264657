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

/** What the transport tests call: an object that does as its callers need. */
class TestObject : public android::BBinder {
 public:
  enum Code : uint32_t {
    /** int32 in, the same plus one out. */
    kIncrement = android::IBinder::FIRST_CALL_TRANSACTION,
    /** The rest of the data comes back. */
    kEcho,
    /** int32 size in, a reply of that size. */
    kReplyOfSize,
    /** int32 depth, binder: calls kNest of the binder with a depth of one less and itself; out the
     * number of calls below. */
    kNest,
    /** Tells the test, then doesn't return. */
    kHang,
    /** Binder in, kept. */
    kKeep,
    /** What was kept out. */
    kGetKept,
    kDropKept,
    /** A new object out. */
    kMakeObject,
    /** Calls kIncrement of what was kept: its status, and the answer, out. */
    kCallKept,
    /** pid and uid of the caller out. */
    kWhoCalls,
    /** int32 status in, which is what the transaction gives. */
    kFail,
    /** Exit code in. */
    kExit,
    /** Clears the calling identity and doesn't restore it. */
    kForgetCaller,
    /** int32 in: the number of file descriptors that the process may have; 0 lifts the limit. */
    kLimitFiles,
    /** Takes 50 ms. */
    kSleep,
    /** The number of TestObjects in the process out. */
    kCountAlive,
  };

  TestObject() { ++alive; }
  ~TestObject() override { --alive; }

  static std::atomic<int> alive;
  /** Where kHang reports. */
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

/** Registers a TestObject under a name in a process of its own. */
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

/** Calls kIncrement: the answer, or the error. */
int32_t increment(const android::sp<android::IBinder>& object, int32_t value);

/** A call with one binder in. */
android::status_t callWith(const android::sp<android::IBinder>& object, uint32_t code,
                           const android::sp<android::IBinder>& argument);
/** A call with one binder out; null if it fails. */
android::sp<android::IBinder> binderFrom(const android::sp<android::IBinder>& object, uint32_t code);

using vesk::test::waitUntil;
