#include "faults/FaultInjector.h"

#include <com/qv/IDatabaseService.h>
#include <gtest/gtest.h>

#include <future>

#include "WaitUntil.h"

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::IDatabaseService;
using sim::Fault;
using sim::FaultInjector;

class Service : public com::qv::DefaultDatabaseService {
 public:
  Status phonebookContactRetrieve(int32_t, int32_t id, CommonParcelable* contact, int32_t* result) override {
    *contact = {"12345", 5};
    *result = id;
    return Status::ok();
  }
};

class FaultInjectorTest : public testing::Test {
 protected:
  void add(Fault fault) {
    fault.target = interface_.find("phonebookContactRetrieve");
    injector_->add(fault);
  }
  Status call() { return proxy_->phonebookContactRetrieve(0, 7, &contact_, &result_); }

  const vesk::interfaces::Interface& interface_ = *vesk::interfaces::findService("database");
  const android::sp<FaultInjector> injector_ = new FaultInjector(interface_, new Service);
  const android::sp<IDatabaseService> proxy_ = IDatabaseService::asInterface(injector_);
  CommonParcelable contact_;
  int32_t result_ = 0;
};

TEST_F(FaultInjectorTest, RecordsChangeTheirLengthAndResultsStay) {
  for (const int32_t bytes : {-1, 3, -9}) {
    add({.kind = Fault::kShort, .bytes = bytes});
    ASSERT_TRUE(call().isOk());
    EXPECT_EQ(contact_.blob().length(), static_cast<size_t>(std::max(5 + bytes, 0)));
    EXPECT_EQ(result_, 7);
  }
  ASSERT_TRUE(call().isOk());
  EXPECT_EQ(contact_.blob().length(), 5u) << "each fault applied once";
}

TEST_F(FaultInjectorTest, DeathAndClearingEndDelays) {
  const auto callDuring = [this](void (*action)(FaultInjector&)) {
    add({.kind = Fault::kDelay, .delay = std::chrono::hours(1)});
    auto status = std::async(std::launch::async, [this] { return call(); });
    vesk::test::waitUntil("the call is delayed", [this] { return injector_->describe().empty(); });
    action(*injector_);
    return status.get();
  };
  EXPECT_TRUE(callDuring([](FaultInjector& injector) { injector.clearFaults(); }).isOk());
  EXPECT_EQ(callDuring([](FaultInjector& injector) { injector.die(); }).transactionError(),
            android::DEAD_OBJECT);
  EXPECT_EQ(call().transactionError(), android::DEAD_OBJECT);
}

}  // namespace
