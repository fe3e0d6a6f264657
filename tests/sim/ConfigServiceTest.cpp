#include "config/ConfigService.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "ServiceTesting.h"
#include "common/Records.h"
#include "config/ConfigRecords.h"

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::IConfigService;

CommonParcelable record(size_t size, char byte = 'r') { return {std::string(size, byte).data(), size}; }

class ConfigServiceTest : public testing::Test {
 protected:
  void SetUp() override { start(); }

  /** Starts the service on the same store, as a restart of the device does. */
  void start() {
    std::string error;
    if (store_ == nullptr) store_ = sim::Store::open("", &error);
    const auto settings = std::make_shared<sim::Settings>(store_);
    ASSERT_TRUE(settings->load(sim::ConfigService::factoryValues(), &error)) << error;
    service = new sim::ConfigService(settings);
  }

  /** The result of a method; a refusal fails the test. */
  template <typename Result, typename... Params, typename... Args>
  auto ask(Status (IConfigService::*method)(Params...), const Args&... args) {
    Result result{};
    const Status status = (*service.*method)(args..., &result);
    EXPECT_TRUE(status.isOk()) << status.toString8().c_str();
    return result;
  }
  template <typename... Params, typename... Args>
  int32_t number(Status (IConfigService::*method)(Params...), const Args&... args) {
    return ask<int32_t>(method, args...);
  }

  /** Through the interface, which declares the methods. */
  android::sp<IConfigService> service;

 private:
  std::shared_ptr<sim::Store> store_;
};

TEST_F(ConfigServiceTest, SettersAndGettersOfOneValue) {
  EXPECT_TRUE(service->setSpaceDndTime("22:30", "600").isOk());
  EXPECT_EQ(number(&IConfigService::getSpaceDndStartTime), 1350);
  EXPECT_EQ(number(&IConfigService::getSpaceDndEndTime), 600);
  EXPECT_EQ(number(&IConfigService::setVoiceVolume, 2, 8, false), 0);
  EXPECT_EQ(number(&IConfigService::getVoiceVolume, 2), 8);
  const CommonParcelable wirelessKey = record(272);
  EXPECT_EQ(number(&IConfigService::setWkInfo, 4, wirelessKey), 0);
  EXPECT_EQ(number(&IConfigService::getWkNum), 1);
  EXPECT_EQ(number(&IConfigService::setInputlogsReadDone), 0);
  EXPECT_EQ(number(&IConfigService::getInputlogsUnreadNum), 0);
  const CommonParcelable first = record(980);
  service->setMdcDsskeyConfig(1, 0, first);
  EXPECT_EQ(ask<CommonParcelable>(&IConfigService::getMdcFirstDsskeyConfig, 1).blob(), first.blob());
  const CommonParcelable device = record(164), settings = record(1024);
  EXPECT_EQ(number(&IConfigService::setQddpDeviceConfig, device, settings), 0);
  EXPECT_EQ(ask<CommonParcelable>(&IConfigService::getQddpDeviceConfig, device, record(5)).blob(),
            settings.blob());
}

TEST_F(ConfigServiceTest, ConcurrentChangesAreSaved) {
  constexpr int kThreads = 4;
  constexpr int kGroups = 50;
  const std::string text = "x";
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (int group = 0; group < kGroups; ++group) {
        number(&IConfigService::configGroupAdd, text, text);
        number(&IConfigService::saveConfig);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  start();
  EXPECT_EQ(number(&IConfigService::configGroupTotalNumberGet, text, text), kThreads * kGroups);
}

TEST_F(ConfigServiceTest, KeysDoNotCollide) {
  const auto set = [&](const std::string& section, const std::string& key, const std::string& subKey) {
    return number(&IConfigService::setConfig, section, key, subKey, section + "|" + key + "|" + subKey);
  };
  const auto get = [&](const std::string& section, const std::string& key, const std::string& subKey) {
    return ask<std::string>(&IConfigService::getConfig, section, key, subKey, 100);
  };
  const std::string odd[][3] = {
      {"a", "b", ""}, {"a", "b/", ""}, {"a/b", "c", ""}, {"a", "b", "c"}, {"a\\", "/b", "c"}};
  for (const auto& [section, key, subKey] : odd) EXPECT_EQ(set(section, key, subKey), 0);
  for (const auto& [section, key, subKey] : odd)
    EXPECT_EQ(get(section, key, subKey), section + "|" + key + "|" + subKey);
  EXPECT_EQ(get("a", "c", ""), "");
  EXPECT_EQ(set("", "b", "c"), -1);
  EXPECT_EQ(set("a", "", "c"), -1);
}

TEST_F(ConfigServiceTest, ValuesAreTruncatedAndSwitchesParsed) {
  const std::string key = "key";
  const std::string value = "12345é7890";
  number(&IConfigService::setConfig, key, key, key, value);
  struct {
    int32_t size;
    size_t length;
  } const rows[] = {{100, 11}, {12, 11}, {11, 11}, {6, 7},  {7, 7},
                    {5, 5},    {1, 1},   {0, 0},   {-1, 0}, {INT32_MIN, 0}};
  for (const auto& [size, length] : rows) {
    EXPECT_EQ(ask<std::string>(&IConfigService::getConfig, key, key, key, size), value.substr(0, length))
        << size;
  }
  for (const char* yes : {"1", "true", "ON", "Yes"}) {
    number(&IConfigService::setConfig, key, key, key, std::string(yes));
    EXPECT_TRUE(ask<bool>(&IConfigService::getConfigBool, key, key, key)) << yes;
  }
  for (const char* no : {"", "0", "off", "2"}) {
    number(&IConfigService::setConfig, key, key, key, std::string(no));
    EXPECT_FALSE(ask<bool>(&IConfigService::getConfigBool, key, key, key)) << no;
  }
}

TEST_F(ConfigServiceTest, DeletedGroupsRenumberLaterOnes) {
  const std::string section = "phonebook";
  const std::string key = "ldap";
  const auto total = [&] { return number(&IConfigService::configGroupTotalNumberGet, section, key); };
  for (int i = 0; i < 11; ++i) EXPECT_EQ(number(&IConfigService::configGroupAdd, section, key), 0);
  for (const char* group : {"0", "1", "10"}) {
    number(&IConfigService::setConfig, section, key, std::string(group) + ".name",
           std::string("group ") + group);
  }
  number(&IConfigService::setConfig, section, key, std::string("name"), std::string("all"));
  const auto nameOf = [&](const std::string& subKey) {
    return ask<std::string>(&IConfigService::getConfig, section, key, subKey, 100);
  };
  EXPECT_EQ(number(&IConfigService::configGroupDelete, section, key, 1), 0);
  EXPECT_EQ(total(), 10);
  EXPECT_EQ(nameOf("0.name"), "group 0");
  EXPECT_EQ(nameOf("1.name"), "");
  EXPECT_EQ(nameOf("9.name"), "group 10");
  EXPECT_EQ(nameOf("10.name"), "");
  EXPECT_EQ(nameOf("name"), "all");
  EXPECT_EQ(number(&IConfigService::configGroupDelete, section, key, 10), -1);
  EXPECT_EQ(number(&IConfigService::configGroupDelete, section, key, -1), -1);
  EXPECT_EQ(total(), 10);
}

TEST_F(ConfigServiceTest, Scenes) {
  const std::string a = "a", b = "b", c = "c", d = "d", tooLong(110, 'x');
  EXPECT_EQ(number(&IConfigService::sceneConfigAdd, 3, a, b, c, d, 9), 0);
  EXPECT_EQ(number(&IConfigService::sceneConfigAdd, 3, a, b, c, d, 9), -1) << "there is one";
  EXPECT_EQ(number(&IConfigService::sceneConfigSetEnabled, 3, 0), 0);
  EXPECT_EQ(number(&IConfigService::sceneConfigSet, 3, 5, tooLong, b, c, d, 1), -1);
  EXPECT_EQ(number(&IConfigService::sceneConfigSet, 3, 5, d, c, b, a, 1), 0);
  sim::SceneRecord scene;
  ASSERT_TRUE(ask<CommonParcelable>(&IConfigService::sceneConfigGet, 3).copyTo(&scene, sizeof(scene)));
  EXPECT_EQ(scene.index, 3);
  EXPECT_EQ(scene.enabled, 0);
  EXPECT_EQ(scene.value, 5);
  EXPECT_EQ(scene.flag, 1);
  EXPECT_STREQ(scene.texts[0], "d");
  EXPECT_STREQ(scene.texts[3], "a");
  EXPECT_EQ(number(&IConfigService::sceneConfigDelete, 3), 0);
  EXPECT_EQ(number(&IConfigService::sceneConfigDelete, 3), -1);
  EXPECT_EQ(number(&IConfigService::sceneConfigSetEnabled, 3, 0), -1);
  CommonParcelable none;
  EXPECT_FALSE(service->sceneConfigGet(3, &none).isOk());
}

TEST_F(ConfigServiceTest, DialPeersHaveNoGaps) {
  const auto set = [&](int32_t index, char c) {
    return number(&IConfigService::dialpeerSetConfig, index, record(208, c));
  };
  EXPECT_EQ(set(1, 'x'), -1) << "there is no peer 0";
  for (int32_t i = 0; i < 12; ++i) EXPECT_EQ(set(i, static_cast<char>('a' + i)), 0);
  service->dialpeerDeleteConfig(1);
  service->dialpeerDeleteConfig(99);
  EXPECT_EQ(number(&IConfigService::getConfigedDialpeerNumber), 11);
  const auto get = [&](int32_t index) {
    return ask<CommonParcelable>(&IConfigService::dialpeerGetConfig, index).blob();
  };
  EXPECT_EQ(get(0), record(208, 'a').blob());
  EXPECT_EQ(get(1), record(208, 'c').blob());
  EXPECT_EQ(get(10), record(208, 'l').blob());
  EXPECT_EQ(get(11), record(208, '\0').blob());
}

TEST_F(ConfigServiceTest, DssKeyValuesAreFormattedAndParsed) {
  const sim::DsskeyRecord key{.type = 2, .line = 0, .icon = 0, .theme = 0, .title = {}, .value = "240"};
  const auto formatted = ask<CommonParcelable>(&IConfigService::formattingDsskeyValue, sim::pack(key));
  const auto value = sim::unpack<vesk_dsskey_value>(formatted);
  ASSERT_TRUE(value);
  EXPECT_EQ(value->type, 2);
  EXPECT_STREQ(value->text, "240");
  EXPECT_EQ(ask<CommonParcelable>(&IConfigService::parsingDsskeyValue, formatted).blob(),
            sim::pack(key).blob());
}

TEST_F(ConfigServiceTest, DssKeysAreShownAndReset) {
  sim::DsskeyRecord key{.type = 1, .line = 0, .icon = 7, .theme = 2, .title = "Title", .value = "Value"};
  service->setDsskeyConfig(1, 2, 3, {&key, sizeof(key)});
  vesk_dss_display shown;
  ASSERT_TRUE(
      ask<CommonParcelable>(&IConfigService::getDsskeyDisplay, 1, 2, 3).copyTo(&shown, sizeof(shown)));
  EXPECT_STREQ(shown.name, "Title");
  EXPECT_STREQ(shown.value, "Value");
  EXPECT_EQ(shown.icon, 7U);
  EXPECT_EQ(shown.theme, 2);

  const auto icons = ask<std::vector<CommonParcelable>>(&IConfigService::getDsskeyIconChangedArr);
  sim::IconChangedRecord last;
  ASSERT_TRUE(icons.back().copyTo(&last, sizeof(last)));
  EXPECT_EQ(std::tie(last.a, last.b, last.c, last.icon), std::make_tuple(1, 2, 3, 7));
  EXPECT_EQ(number(&IConfigService::saveConfig), 0);
  EXPECT_EQ(number(&IConfigService::FactoryReset, 0), 0);
  for (const char* when : {"at once", "after a restart"}) {
    EXPECT_EQ(ask<std::vector<CommonParcelable>>(&IConfigService::getDsskeyIconChangedArr).size(),
              icons.size() - 1)
        << when;
    start();
  }

  EXPECT_EQ(number(&IConfigService::getEmptyDssUrlIndex, 1), 0);
  for (const int32_t index : {0, 1, 3}) service->setMdcDsskeyConfig(1, index, record(980));
  EXPECT_EQ(number(&IConfigService::getEmptyDssUrlIndex, 1), 2);
}

TEST_F(ConfigServiceTest, ListsHaveRecordsOfTheirSize) {
  struct {
    Status (IConfigService::*method)(std::vector<CommonParcelable>*);
    size_t size;
  } const rows[] = {
      {&IConfigService::getRtpStatus, 128},      {&IConfigService::getPickUpInfo, 188},
      {&IConfigService::getMonitorDevice, 68},   {&IConfigService::getDsskeyIconChangedArr, 16},
      {&IConfigService::getQddpScanResult, 480}, {&IConfigService::getAlarmLogs, 152},
  };
  for (const auto& [method, size] : rows) {
    const auto list = ask<std::vector<CommonParcelable>>(method);
    EXPECT_FALSE(list.empty()) << size;
    for (const CommonParcelable& element : list) EXPECT_EQ(element.blob().length(), size);
  }
  EXPECT_EQ(number(&IConfigService::securityLogsDelById, 2), 0);
  EXPECT_EQ(number(&IConfigService::securityLogsDelById, 2), -1);
  EXPECT_EQ(number(&IConfigService::securityLogsDelById, 99), -1);
  EXPECT_EQ(ask<std::vector<CommonParcelable>>(&IConfigService::getAlarmLogs).size(), 2U);
}

TEST_F(ConfigServiceTest, TimeZonesAndRingtonesHaveIndices) {
  const auto zones = ask<std::vector<android::String16>>(&IConfigService::getTimeZone);
  for (int32_t i = 0; i < static_cast<int32_t>(zones.size()); ++i) {
    const int32_t cfg = number(&IConfigService::transTimezoneindex2cfg, i);
    EXPECT_EQ(number(&IConfigService::transTimezonecfg2index, cfg), i);
  }
  EXPECT_EQ(number(&IConfigService::transTimezoneindex2cfg, static_cast<int32_t>(zones.size())), -1);
  EXPECT_EQ(number(&IConfigService::transTimezonecfg2index, 1), -1);

  const int32_t rings = number(&IConfigService::ringtoneGetListLen, false);
  for (int32_t i = 0; i < rings; ++i) {
    const auto name = ask<std::string>(&IConfigService::ringtoneGetRingName, i);
    EXPECT_EQ(number(&IConfigService::ringtoneGetRingIndex, name), i);
  }
  EXPECT_EQ(ask<std::string>(&IConfigService::ringtoneGetRingName, rings), "");
  EXPECT_EQ(ask<std::string>(&IConfigService::ringtoneGetRingName, -1), "");
  EXPECT_EQ(number(&IConfigService::ringtoneGetRingIndex, std::string("Gong")), -1);
}

TEST_F(ConfigServiceTest, Base64IsRefusedIfItDoesNotFit) {
  struct {
    const char* source;
    int32_t length;
    int32_t room;
    const char* text;
  } const rows[] = {
      {"", 0, 1, ""},
      {"f", 1, 5, "Zg=="},
      {"fo", 2, 5, "Zm8="},
      {"foo", 3, 5, "Zm9v"},
      {"foobar", 6, 9, "Zm9vYmFy"},
      {"foobar", 2, 5, "Zm8="},
      {"foobar", 99, 9, "Zm9vYmFy"},
      {"\xC3\xBF\xC3\xBE", 0, 9, "w7/Dvg=="},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ask<std::string>(&IConfigService::srcToB64, std::string(row.source), row.length, row.room),
              row.text);
    std::string untouched = "x";
    EXPECT_FALSE(service->srcToB64(row.source, row.length, row.room - 1, &untouched).isOk() &&
                 row.length > 0);
  }
}

TEST_F(ConfigServiceTest, NeighbourDevices) {
  const auto nameOf = [&](const std::string& ip) {
    sim::DeviceNameRecord record{};
    ask<CommonParcelable>(&IConfigService::getDeviceNameByIp, ip).copyTo(&record, sizeof(record));
    EXPECT_EQ(record.ip, ip);
    return std::string(record.name);
  };
  EXPECT_EQ(nameOf("192.0.2.21"), "Front Door");
  EXPECT_EQ(nameOf("192.0.2.99"), "");
  EXPECT_TRUE(service->setDeviceNameByIp("192.0.2.21", "Gate").isOk());
  EXPECT_EQ(nameOf("192.0.2.21"), "Gate");
  EXPECT_FALSE(service->setDeviceNameByIp("192.0.2.21", std::string(64, 'x')).isOk());
  EXPECT_EQ(ask<std::string>(&IConfigService::getUsernameByIp, std::string("192.0.2.21")), "admin");
  EXPECT_EQ(ask<std::string>(&IConfigService::getPasswordByIp, std::string("192.0.2.99")), "");
  EXPECT_EQ(ask<std::string>(&IConfigService::generateQcmsMonitorDoorOpenUrl, std::string("a b"),
                             std::string("ü"), std::string("1/2"), std::string()),
            "https://qcms.example/door/open/a%20b/%C3%BC/1%2F2/");
}

TEST_F(ConfigServiceTest, LinesAndTimes) {
  EXPECT_EQ(number(&IConfigService::getLineNum), 3);
  EXPECT_EQ(number(&IConfigService::getActiveLineNum), 2);
  CommonParcelable info;
  sim::LineRecord line;
  ASSERT_TRUE(service->getLineInfo(2, &info).isOk() && info.copyTo(&line, sizeof(line)));
  EXPECT_EQ(line.line, 3);
  EXPECT_EQ(line.registered, 0);
  EXPECT_FALSE(service->getLineInfo(3, &info).isOk());
  EXPECT_FALSE(service->getActiveLineInfo(2, &info).isOk());
  EXPECT_FALSE(service->setSpaceDndTime("22:60", "06:00").isOk());
  EXPECT_FALSE(service->setSpaceDndTime("22:00", "six").isOk());
}

}  // namespace
