#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/ConfigClient.h>
#include <gtest/gtest.h>
#include <vesk/config.h>

#include <atomic>
#include <cstdlib>

#include "ChildProcess.h"
#include "LogCapture.h"
#include "WaitUntil.h"

using android::sp;
using android::binder::Status;
using vesk::test::ChildProcess;
using vesk::test::LogCapture;
using vesk::test::LogLine;
using vesk::test::waitUntil;

namespace {

/** Serves a part of the interface, in a process of its own. */
class SomeSettings : public com::qv::DefaultConfigService {
 public:
  Status getDndMode(int32_t* mode) override {
    *mode = 14;
    return Status::ok();
  }
  Status getTimeZone(std::vector<android::String16>* entries) override {
    entries->assign(2, android::String16("UTC"));
    return Status::ok();
  }
  Status getConfig(const std::string& section, const std::string& key, const std::string& subKey,
                   int32_t size, std::string* value) override {
    *value = section + "." + key + "." + subKey + "." + std::to_string(size);
    return Status::ok();
  }
};

CHILD_ROLE(configService) {
  const sp<SomeSettings> service = new SomeSettings;
  const android::String16 name(com::qv::ConfigClient::kServiceName);
  if (android::defaultServiceManager()->addService(name, service) != android::OK) return 1;
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

std::atomic<int> deaths;
std::atomic<bool> reconnect;

void onServiceDied() {
  EXPECT_EQ(binder_get_dnd_mode(), 0) << "the connection is of no use any more";
  EXPECT_TRUE(!reconnect || connect_config_service(onServiceDied));
  ++deaths;
}

bool isConnected() { return binder_get_dnd_mode() == 14; }

class ConfigConnectionTest : public testing::Test {
 protected:
  ConfigConnectionTest() {
    setenv("BINDER_LOOKUP_MS", "0", 1);
    deaths = 0;
    reconnect = false;
  }
};

TEST_F(ConfigConnectionTest, LogsWhatItDoes) {
  LogCapture log;
  EXPECT_FALSE(connect_config_service(nullptr));
  EXPECT_EQ(log.take(), std::vector<LogLine>(
                            {{ANDROID_LOG_INFO, "ConfigClient", "Connect com.qv.ConfigService failed!!! "}}));
  ChildProcess service("configService");
  EXPECT_TRUE(connect_config_service(nullptr));
  EXPECT_EQ(log.take(), std::vector<LogLine>(
                            {{ANDROID_LOG_INFO, "ConfigClient", "Connect com.qv.ConfigService done. "}}));
  service.kill();
  std::vector<LogLine> last;
  waitUntil("the line", [&] { return !(last = log.take()).empty(); });
  EXPECT_EQ(last, std::vector<LogLine>({{ANDROID_LOG_INFO, "CallClient", "com.qv.ConfigService is died. "}}));
}

TEST_F(ConfigConnectionTest, CarriesSettings) {
  ChildProcess service("configService");
  ASSERT_TRUE(connect_config_service(nullptr));
  char buffer[600] = "";
  EXPECT_EQ(binder_get_config("a", "b", "", buffer, 600), 0);
  EXPECT_STREQ(buffer, "a.b..600");
  buffer[0] = '\0';
  EXPECT_EQ(binder_get_time_zone(buffer, 600), 0);
  EXPECT_STREQ(buffer, "0:UTC;1:UTC;");
  EXPECT_EQ(binder_save_config(), -1) << "nobody serves it";
}

TEST_F(ConfigConnectionTest, AFailedConnectKeepsTheEarlierConnectionAndItsCallback) {
  ChildProcess service("configService");
  ASSERT_TRUE(connect_config_service(onServiceDied));
  ChildProcess("configService").kill();  // Takes the name with it.
  EXPECT_FALSE(connect_config_service(nullptr));
  EXPECT_TRUE(isConnected());
  service.kill();
  waitUntil("on_service_died", [] { return deaths > 0; });
  EXPECT_FALSE(isConnected());
}

TEST_F(ConfigConnectionTest, OnServiceDiedMayConnectToTheNextOne) {
  ChildProcess service("configService");
  ASSERT_TRUE(connect_config_service(onServiceDied));
  ChildProcess next("configService");
  ASSERT_TRUE(isConnected());
  reconnect = true;
  service.kill();
  waitUntil("on_service_died", [] { return deaths > 0; });
  EXPECT_TRUE(isConnected());
  reconnect = false;
  next.kill();
  waitUntil("the second death", [] { return deaths == 2; });
}

}  // namespace
