#include <vesk/config/discovery.h>

#include "config/ConfigService.h"
#include "config/TextAt.h"

using namespace com::qv;

namespace {

/** The platform type with QCMS. */
constexpr int32_t kQcmsPlatform = 2;

}  // namespace

/* Discovery */

int binder_get_auto_discovery_config(void* out) {
  return configService.fetch<VESK_AUTO_DISCOVERY_SIZE>(out, &IConfigService::getAutoDiscoveryConfig);
}
int binder_set_auto_discovery_config(const void* record) {
  return configService.value(&IConfigService::setAutoDiscoveryConfig,
                             Record{record, VESK_AUTO_DISCOVERY_SIZE});
}
int binder_qddp_send_scan(void) { return configService.value(&IConfigService::qddpSendScan); }
int binder_set_qddp_device_config(const void* device, const void* config) {
  return configService.value(&IConfigService::setQddpDeviceConfig, Record{device, VESK_QDDP_DEVICE_SIZE},
                             Record{config, VESK_QDDP_CONFIG_SIZE});
}
int binder_get_qddp_device_config(const void* device, const void* request, void* out) {
  return configService.fetch<VESK_QDDP_CONFIG_SIZE>(out, &IConfigService::getQddpDeviceConfig,
                                                    Record{device, VESK_QDDP_DEVICE_SIZE},
                                                    Record{request, VESK_QDDP_CONFIG_SIZE});
}
void binder_qdps_manual_run(int a, int b) { configService.send(&IConfigService::qdspManualRun, a, b); }
void binder_scan_device(void) { configService.send(&IConfigService::scanDevice); }

/* Devices by IP address */

int binder_get_device_name_by_ip(char* buf) {
  return configService.fetch<VESK_DEVICE_NAME_SIZE>(buf, &IConfigService::getDeviceNameByIp, TextAt{buf, 0});
}
int binder_set_device_name_by_ip(const void* rec) {
  return configService.send(&IConfigService::setDeviceNameByIp, TextAt{rec, 0},
                            TextAt{rec, VESK_DEVICE_NAME_OFFSET});
}
int binder_send_reboot_to_target(const char* target) {
  return configService.value(&IConfigService::sendRootToTarget, target);
}
int binderGetUsernameByIp(const char* ip, char* dst, int size) {
  return configService.text(IfNotConnected{-1}, TruncateZeroFill{dst, size, -2},
                            &IConfigService::getUsernameByIp, ip);
}
int binderGetPasswordByIp(const char* ip, char* dst, int size) {
  return configService.text(IfNotConnected{-1}, TruncateZeroFill{dst, size, -2},
                            &IConfigService::getPasswordByIp, ip);
}

/* QCMS */

int binderIsQcmsEnabled(void) {
  const auto service = configService.proxy();
  if (service == nullptr) return 0;
  int32_t type = -1;
  service->getQcmsPlatformType(&type);
  if (type != kQcmsPlatform) return 0;
  std::string url;
  service->getQcmsPlatformUrl(&url);
  return url.empty() ? 0 : 1;
}
int binderGenQcmsMonitorDoorOpenUrl(const char* text1, const char* text2, const char* text3,
                                    const char* text4, char* dst) {
  return configService.text(IfNotConnected{-1}, TruncateZeroFill{dst, VESK_QCMS_DOOR_OPEN_URL_SIZE, -1},
                            &IConfigService::generateQcmsMonitorDoorOpenUrl, text1, text2, text3, text4);
}
