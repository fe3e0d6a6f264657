#include <com/qv/IRelayService.h>
#include <vesk/vesk_client.h>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "relay/RelayService.h"

using namespace vesk::test;

namespace {

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(IRelayService, code, name)
#include <com/qv/RelayService.def>
#undef METHOD
};

constexpr Expected withNullsRefused(Expected gives) {
  gives.null = Expected::kRefused;
  return gives;
}

const std::vector<ApiGroup> kGroups{
    group(kFetched, ROW(binder_get_relay_dev_mac, 1, 144), ROW(binder_get_relay_dev_config, 2, 104)),
    group(withNullsRefused(kFetched), ROW(binder_get_relay_do_channels, 4, 896)),
    group(kValue, ROW(binder_set_relay_dev_name, 3, 68), ROW(binder_begin_relay_do_save, 9),
          ROW(binder_relay_get_act, 13), ROW(binder_get_relay_do_state, 14),
          ROW(binder_get_relay_config_editable, 15), ROW(binder_get_pure_local_scene, 16)),
    group(withNullsRefused(kValue), ROW(binder_set_relay_do_type, 5, 44),
          ROW(binder_set_relay_do_time, 6, 16), ROW(binder_set_relay_do_enabled, 7, 12),
          ROW(binder_set_relay_do_channel, 8, 120), ROW(binder_relay_set_act, 11, 12),
          ROW(binder_relay_schedule_act, 12, 20)),
    group(kValue, ROW(binder_commit_relay_do_save, 10)),
};

class RelayApiTest : public ApiTest {
 protected:
  RelayApiTest()
      : ApiTest("com.qv.RelayService", u"com.qv.IRelayService", "RelayClient", kMethods, kGroups) {}
};

TEST_F(RelayApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connectWith(connect_relay_service);
  expectCallsAndAnswers(16);
  expectNullPointers();
  expectFailures();
}

TEST_F(RelayApiTest, SimulatedDeviceServesEveryFunction) {
  const android::sp<sim::RelayService> device = new sim::RelayService(1, openStore());
  std::string error;
  ASSERT_TRUE(device->load(&error)) << error;
  expectServedBy(device, connect_relay_service);
}

TEST_F(RelayApiTest, ConnectionOutlivesTheService) { expectConnectionOutlivesService(connect_relay_service); }

}  // namespace
