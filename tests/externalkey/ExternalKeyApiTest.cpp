#include <com/qv/IExternalKeyService.h>
#include <vesk/vesk_client.h>

#include <cstring>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "externalkey/ExternalKeyService.h"

using namespace vesk::test;

namespace {

/** A single-state record: the selector, and something that differs from record to record. */
std::string singleState(int32_t selector, char rest) {
  std::string state(204, rest);
  std::memcpy(state.data(), &selector, sizeof(selector));
  return state;
}

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(IExternalKeyService, code, name)
#include <com/qv/ExternalKeyService.def>
#undef METHOD
};

const std::vector<ApiGroup> kGroups{
    group(kFetched, ROW(binder_get_exkdev_mac, 1, 200), ROW(binder_get_exk_config, 2, 1154)),
    group(kDone, ROW(binder_add_btk_config, 3, 136)),
    group(kNothing, ROW(binder_reset_exkdev_default_config, 5)),
};

class ExternalKeyApiTest : public ApiTest {
 protected:
  ExternalKeyApiTest()
      : ApiTest("com.qv.ExternalKeyService", u"com.qv.IExternalKeyService", "ExternalKeyClient", kMethods,
                kGroups) {}
};

TEST_F(ExternalKeyApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  EXPECT_EQ(binder_set_or_get_singleState_config(nullptr), -1) << "the argument is not read";
  connectWith(connect_external_key_service);
  expectCallsAndAnswers(4);
  expectNullPointers();
  expectFailures();
}

TEST_F(ExternalKeyApiTest, SimulatedDeviceServesEveryFunction) {
  const android::sp<sim::ExternalKeyService> device = new sim::ExternalKeyService(openStore());
  std::string error;
  ASSERT_TRUE(device->prepare(&error)) << error;
  expectServedBy(device, connect_external_key_service);
}

TEST_F(ExternalKeyApiTest, SingleStateIsReplacedOnGetByARecordOfItsSize) {
  const std::string answer = singleState(7, 'a');
  const Wire exception = Wire().i32(-5).text(u"").i32(0);
  const struct {
    int32_t selector;
    Wire answer;
    int result;
    bool copied;
  } rows[] = {
      {1, Wire(kOk).record(answer), 0, true},
      {1, Wire(kOk).record(answer.substr(0, 200)), -1, false},
      {1, Wire(kOk).record(answer + "!"), -1, false},
      {1, Wire(kOk).record(""), -1, false},
      {1, exception, -1, false},
      {2, Wire(kOk).record(answer), 0, false},
      {2, exception, 0, false},
      {0, Wire(kOk).record(answer), 0, false},
      {-1, Wire(kOk).record(answer), 0, false},
      {0x01000000, Wire(kOk).record(answer), 0, false},
      {257, Wire(kOk).record(answer), 0, false},
  };
  connectWith(connect_external_key_service);
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "selector " << row.selector << ", result " << row.result);
    const std::string given = singleState(row.selector, 'g');
    std::string state = given;
    service_->answer(row.answer);
    EXPECT_EQ(binder_set_or_get_singleState_config(state.data()), row.result);
    EXPECT_EQ(state, row.copied ? answer : given);
    expectRequest(4, Wire().record(given));
  }
}

TEST_F(ExternalKeyApiTest, ConnectionOutlivesTheService) {
  expectConnectionOutlivesService(connect_external_key_service);
}

}  // namespace
