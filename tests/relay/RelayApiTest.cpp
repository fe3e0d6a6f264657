#include <vesk/vesk_client.h>

#include <climits>

#include "ApiTest.h"

using namespace vesk::test;

namespace {

const std::string kBytes = pattern(120);
const char* const kIn = kBytes.data();

/** As an argument: the first bytes of kBytes. */
Wire in(size_t size) { return Wire().record(kBytes.substr(0, size)); }

const ApiRow kRows[] = {
    API_ROW(binder_get_relay_dev_mac(out), 1, Wire(), record(144)),
    API_ROW(binder_get_relay_dev_config(2, out), 2, Wire().i32(2), record(104)),
    API_ROW(binder_set_relay_dev_name(kIn), 3, in(68), kValue),
    API_ROW(binder_get_relay_do_channels(4, out), 4, Wire().i32(4), record(896)),
    API_ROW(binder_set_relay_do_type(kIn), 5, in(44), kValue),
    API_ROW(binder_set_relay_do_time(kIn), 6, in(16), kValue),
    API_ROW(binder_set_relay_do_enabled(kIn), 7, in(12), kValue),
    API_ROW(binder_set_relay_do_channel(kIn), 8, in(120), kValue),
    API_ROW(binder_begin_relay_do_save(INT_MIN), 9, Wire().i32(INT_MIN), kValue),
    API_ROW(binder_commit_relay_do_save(10), 10, Wire().i32(10), kValue),
    API_ROW(binder_relay_set_act(kIn), 11, in(12), kValue),
    API_ROW(binder_relay_schedule_act(kIn), 12, in(20), kValue),
    API_ROW(binder_relay_get_act(13), 13, Wire().i32(13), kValue),
    API_ROW(binder_get_relay_do_state(14, -14), 14, Wire().i32(14).i32(-14), kValue),
    API_ROW(binder_get_relay_config_editable(), 15, Wire(), kValue),
    API_ROW(binder_get_pure_local_scene(), 16, Wire(), kValue),
};

class RelayApiTest : public ApiTest {
 protected:
  RelayApiTest() : ApiTest("com.qv.RelayService", u"com.qv.IRelayService", "RelayClient", kRows) {}
};

/* A process that has never been connected. */
CHILD_ROLE(neverConnected) {
  struct Unconnected : RelayApiTest {
    void TestBody() override { expectNothingWithoutConnection(); }
  } test;
  parent.ready();
  test.TestBody();
  return testing::Test::HasFailure() ? 1 : 0;
}

// In another process, since nothing ends a connection of this one.
TEST_F(RelayApiTest, WithoutAConnectionEveryFunctionGivesItsAbsentValue) {
  EXPECT_EQ(ChildProcess("neverConnected").wait(), 0);
}

TEST_F(RelayApiTest, EveryFunctionMakesItsCallAndGivesTheAnswer) {
  connectWith(connect_relay_service);
  expectCallsAndAnswers(16);
}

TEST_F(RelayApiTest, AFailedCallGivesItsValueAndWritesNothing) {
  connectWith(connect_relay_service);
  expectFailures();
}

TEST_F(RelayApiTest, SomeFunctionsRefuseANullPointerAndSendNothing) {
  connectWith(connect_relay_service);
  answer(Wire().i32(kAnswer));
  EXPECT_EQ(binder_get_relay_do_channels(1, nullptr), -1);
  EXPECT_EQ(binder_set_relay_do_type(nullptr), -1);
  EXPECT_EQ(binder_set_relay_do_time(nullptr), -1);
  EXPECT_EQ(binder_set_relay_do_enabled(nullptr), -1);
  EXPECT_EQ(binder_set_relay_do_channel(nullptr), -1);
  EXPECT_EQ(binder_relay_set_act(nullptr), -1);
  EXPECT_EQ(binder_relay_schedule_act(nullptr), -1);
  EXPECT_FALSE(service_->take().has_value());

  EXPECT_EQ(binder_set_relay_dev_name(nullptr), kAnswer) << "has no such test";
  EXPECT_TRUE(service_->take().has_value());
}

TEST_F(RelayApiTest, AFailedConnectKeepsTheEarlierConnection) {
  connectWith(connect_relay_service);
  failToConnectWith(connect_relay_service);
  answer(Wire().i32(0));
  EXPECT_EQ(binder_begin_relay_do_save(1), 0);
}

TEST_F(RelayApiTest, TheConnectionOutlivesTheService) {
  expectConnectionOutlivesService(connect_relay_service, binder_get_relay_dev_mac, 144);
}

}  // namespace
