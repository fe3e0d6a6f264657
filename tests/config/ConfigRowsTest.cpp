#include "ConfigRows.h"

#include <vesk/config.h>

#include <atomic>

#include "ServiceTesting.h"
#include "config/ConfigService.h"

using namespace vesk::test;

namespace {

std::span<const ApiRow> rows() {
  static const std::vector<ApiRow> all = [] {
    std::vector<ApiRow> rows = settingsRows();
    const std::vector<ApiRow> others = featureRows();
    rows.insert(rows.end(), others.begin(), others.end());
    return rows;
  }();
  return all;
}

std::atomic<int> deaths = 0;

bool connectToService() {
  return connect_config_service([] { ++deaths; });
}

class ConfigRowsTest : public ApiTest {
 protected:
  ConfigRowsTest() : ApiTest("com.qv.ConfigService", u"com.qv.IConfigService", "ConfigClient", rows()) {}
  /** Ends the connection, for the next test. */
  ~ConfigRowsTest() override { die(); }
};

TEST_F(ConfigRowsTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connectWith(connectToService);
  expectCallsAndAnswers(289);
  expectFailures();
  expectTextsKeepToTheirRoom();
  expectDeathEndsCallAndConnection();
  EXPECT_EQ(deaths, 1);
}

TEST_F(ConfigRowsTest, AFailedConnectKeepsTheEarlierConnection) {
  connectWith(connectToService);
  failToConnectWith([] { return connect_config_service(nullptr); });
  answer(Wire().i32(kAnswer));
  EXPECT_EQ(binder_get_dnd_mode(), kAnswer);
  deaths = 0;
  die();
  EXPECT_EQ(deaths, 1) << "and its callback";
}

TEST_F(ConfigRowsTest, TheSimulatedDeviceServesEachOfThem) {
  const auto settings = std::make_shared<sim::Settings>(openStore());
  std::string error;
  ASSERT_TRUE(settings->load(sim::ConfigService::factoryValues(), &error)) << error;
  expectServedBy(new sim::ConfigService(settings), connectToService);
}

}  // namespace
