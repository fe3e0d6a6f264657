#pragma once

#include <chrono>
#include <set>

#include "settings/SettingService.h"

namespace sim {

/**
 * The config service of the simulated device. The base class serves the methods that only get or
 * set a setting; this class serves the others.
 */
class ConfigService : public SettingService {
 public:
  using SettingService::SettingService;

  /** The values of a new device. */
  static Values factoryValues();

  // Keys and values, groups, scenes (ConfigServiceKeys.cpp)
  Status getConfig(const std::string& section, const std::string& key, const std::string& subKey,
                   int32_t size, std::string* value) override;
  Status getConfigBool(const std::string& section, const std::string& key, const std::string& subKey,
                       bool* value) override;
  Status setConfig(const std::string& section, const std::string& key, const std::string& subKey,
                   const std::string& value, int32_t* result) override;
  Status saveConfig(int32_t* result) override;
  Status saveConfigHandle(int32_t handle, int32_t* result) override;
  Status FactoryReset(int32_t value, int32_t* result) override;
  Status configGroupAdd(const std::string& section, const std::string& key, int32_t* result) override;
  Status configGroupDelete(const std::string& section, const std::string& key, int32_t index,
                           int32_t* result) override;
  Status sceneConfigAdd(int32_t index, const std::string& text1, const std::string& text2,
                        const std::string& text3, const std::string& text4, int32_t flag,
                        int32_t* result) override;
  Status sceneConfigGet(int32_t index, CommonParcelable* scene) override;
  Status sceneConfigSetEnabled(int32_t index, int32_t enabled, int32_t* result) override;
  Status sceneConfigSet(int32_t index, int32_t value, const std::string& text1, const std::string& text2,
                        const std::string& text3, const std::string& text4, int32_t flag,
                        int32_t* result) override;
  Status sceneConfigDelete(int32_t index, int32_t* result) override;

  // DSS keys (ConfigServiceDss.cpp)
  Status getDsskeyDisplay(int32_t a, int32_t b, int32_t c, CommonParcelable* display) override;
  Status getDsskeyIconChangedArr(std::vector<CommonParcelable>* icons) override;
  Status formattingDsskeyValue(const CommonParcelable& dsskey, CommonParcelable* dsskeyValue) override;
  Status parsingDsskeyValue(const CommonParcelable& dsskeyValue, CommonParcelable* dsskey) override;
  Status getMdcFirstDsskeyConfig(int32_t a, CommonParcelable* mdcDsskey) override;
  Status getMdcValueRecombineUrl(const CommonParcelable& mdcDsskey, CommonParcelable* recombined) override;
  Status getEmptyDssUrlIndex(int32_t value, int32_t* index) override;

  // Features of the telephone (ConfigServicePhone.cpp)
  Status setSpaceDndTime(const std::string& startTime, const std::string& endTime) override;
  Status dialpeerSetConfig(int32_t index, const CommonParcelable& dialpeer, int32_t* result) override;
  Status dialpeerDeleteConfig(int32_t index) override;
  Status dialpeerIsP2PLine(int32_t line, bool* isP2P) override;
  Status dialpeerGetLineInfo(int32_t line, std::string* info) override;
  Status getTimeZone(std::vector<android::String16>* entries) override;
  Status transTimezonecfg2index(int32_t cfg, int32_t* index) override;
  Status transTimezoneindex2cfg(int32_t index, int32_t* cfg) override;
  Status ringtoneGetListLen(bool value, int32_t* length) override;
  Status ringtoneGetRingName(int32_t index, std::string* name) override;
  Status ringtoneGetRingIndex(const std::string& name, int32_t* index) override;
  Status setVoiceVolume(int32_t a, int32_t b, bool flag, int32_t* result) override;
  Status getLineInfo(int32_t index, CommonParcelable* info) override;
  Status getActiveLineInfo(int32_t index, CommonParcelable* info) override;
  Status getPhoneStatus(CommonParcelable* status) override;
  Status getRtpStatus(std::vector<CommonParcelable>* status) override;
  Status getPickUpInfo(std::vector<CommonParcelable>* infos) override;

  // The network and its devices (ConfigServiceNetwork.cpp)
  Status getNetworkStatus(CommonParcelable* status) override;
  Status getNetworkDetails(int32_t a, int32_t b, CommonParcelable* details) override;
  Status getLocalData(CommonParcelable* data) override;
  Status getMonitorDevice(std::vector<CommonParcelable>* devices) override;
  Status getQddpScanResult(std::vector<CommonParcelable>* results) override;
  Status setQddpDeviceConfig(const CommonParcelable& device, const CommonParcelable& config,
                             int32_t* result) override;
  Status getQddpDeviceConfig(const CommonParcelable& device, const CommonParcelable& request,
                             CommonParcelable* config) override;
  Status getDeviceNameByIp(const std::string& ip, CommonParcelable* device) override;
  Status setDeviceNameByIp(const std::string& ip, const std::string& name) override;
  Status getUsernameByIp(const std::string& ip, std::string* username) override;
  Status getPasswordByIp(const std::string& ip, std::string* password) override;
  Status generateQcmsMonitorDoorOpenUrl(const std::string& text1, const std::string& text2,
                                        const std::string& text3, const std::string& text4,
                                        std::string* url) override;
  Status srcToB64(const std::string& src, int32_t a, int32_t b, std::string* converted) override;
  Status getAlarmLogs(std::vector<CommonParcelable>* logs) override;
  Status securityLogsDelById(int32_t id, int32_t* result) override;
  Status setInputlogsReadDone(int32_t* result) override;

 private:
  /** The indices of the MDC keys that are set on a page. */
  std::set<int32_t> mdcKeys(int32_t page);

  /** The start of the uptime. */
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace sim
