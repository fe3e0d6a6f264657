#include <vesk/vesk_client.h>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "relay/RelayService.h"

using namespace vesk::test;

namespace {

const ApiRow kRows[] = {
    API_ROW(binder_get_relay_dev_mac(out), 1, Wire(), record(144)),
    API_ROW(binder_get_relay_dev_config(1, out), 2, Wire().i32(1), record(104)),
    API_ROW(binder_set_relay_dev_name(kSent), 3, sent(68), kValue),
    API_ROW(binder_get_relay_do_channels(1, out), 4, Wire().i32(1), record(896)),
    API_ROW(binder_begin_relay_do_save(1), 9, Wire().i32(1), kValue),
    API_ROW(binder_set_relay_do_type(kSent), 5, sent(44), kValue),
    API_ROW(binder_set_relay_do_time(kSent), 6, sent(16), kValue),
    API_ROW(binder_set_relay_do_enabled(kSent), 7, sent(12), kValue),
    API_ROW(binder_set_relay_do_channel(kSent), 8, sent(120), kValue),
    API_ROW(binder_commit_relay_do_save(1), 10, Wire().i32(1), kValue),
    API_ROW(binder_relay_set_act(kSent), 11, sent(12), kValue),
    API_ROW(binder_relay_schedule_act(kSent), 12, sent(20), kValue),
    API_ROW(binder_relay_get_act(3), 13, Wire().i32(3), kValue),
    API_ROW(binder_get_relay_do_state(1, 2), 14, Wire().i32(1).i32(2), kValue),
    API_ROW(binder_get_relay_config_editable(), 15, Wire(), kValue),
    API_ROW(binder_get_pure_local_scene(), 16, Wire(), kValue),
};

class RelayApiTest : public ApiTest {
 protected:
  RelayApiTest() : ApiTest("com.qv.RelayService", u"com.qv.IRelayService", "RelayClient", kRows) {}
};

TEST_F(RelayApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connectWith(connect_relay_service);
  expectCallsAndAnswers(16);
  expectFailures();
}

TEST_F(RelayApiTest, TheSimulatedDeviceServesEachOfThem) {
  const android::sp<sim::RelayService> device = new sim::RelayService(1, openStore());
  std::string error;
  ASSERT_TRUE(device->load(&error)) << error;
  expectServedBy(device, connect_relay_service);
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
