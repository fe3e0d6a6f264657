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

/** Given to be fetched, or to be set: never written to. */
std::string toGet = singleState(1, '?');
std::string toSet = '\2' + kSentBytes.substr(1, VESK_SINGLE_STATE_CONFIG_SIZE - 1);

/** What a function gives that doesn't look at the answer. */
constexpr Expected kMade{.value = true, .success = 0, .failed = 0, .absent = -1};

const ApiRow kRows[] = {
    API_ROW(binder_get_exkdev_mac(out), 1, Wire(), record(200)),
    API_ROW(binder_get_exk_config(2, out), 2, Wire().i32(2), record(1154)),
    API_ROW(binder_add_btk_config(kSent), 3, sent(136), kMade),
    API_ROW(binder_set_or_get_singleState_config(toSet.data()), 4, Wire().record(toSet), kMade),
    API_ROW(binder_reset_exkdev_default_config(1, 2), 5, Wire().i32(1).i32(2), kNothing),
};

class ExternalKeyApiTest : public ApiTest {
 protected:
  ExternalKeyApiTest()
      : ApiTest("com.qv.ExternalKeyService", u"com.qv.IExternalKeyService", "ExternalKeyClient", kRows) {}
};

TEST_F(ExternalKeyApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  EXPECT_EQ(binder_set_or_get_singleState_config(toGet.data()), -1);
  EXPECT_EQ(binder_set_or_get_singleState_config(nullptr), -1) << "the arguments are not looked at";
  connectWith(connect_external_key_service);
  expectCallsAndAnswers(5);
  expectFailures();
}

TEST_F(ExternalKeyApiTest, TheSimulatedDeviceServesEachOfThem) {
  const android::sp<sim::ExternalKeyService> device = new sim::ExternalKeyService(openStore());
  std::string error;
  ASSERT_TRUE(device->prepare(&error)) << error;
  expectServedBy(device, connect_external_key_service);
}

TEST_F(ExternalKeyApiTest, ASingleStateIsReplacedOnlyByARecordOfItsSizeAndOnlyIfAskedFor) {
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

TEST_F(ExternalKeyApiTest, TheConnectionOutlivesTheService) {
  expectConnectionOutlivesService(connect_external_key_service, binder_get_exkdev_mac, 200);
  EXPECT_EQ(binder_add_btk_config(kSent), 0);
}

}  // namespace
