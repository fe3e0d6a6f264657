#include <vesk/config/firmware.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Checking and upgrading */

int binder_fwcheck_request(int value) { return configService.value(&IConfigService::requestFwcheck, value); }
int binder_get_fwcheck_result(void* out) {
  return configService.fetch<VESK_FWCHECK_RESULT_SIZE>(out, &IConfigService::getFwcheckResultInfo);
}
void binder_firmware_upgrade_request(void) { configService.send(&IConfigService::requestFwUpgrade); }
int binder_get_fw_upgrade_config(void* out) {
  return configService.fetch<VESK_FW_UPGRADE_CONFIG_SIZE>(out, &IConfigService::getFwUpgradeConfig);
}
int binder_set_fw_upgrade_config(const void* record) {
  return configService.value(&IConfigService::setFwUpgradeConfig,
                             Record{record, VESK_FW_UPGRADE_CONFIG_SIZE});
}
int binder_set_core_reboot(int value) { return configService.value(&IConfigService::setVcoreReboot, value); }
int binder_get_software_is_kit(void) { return configService.value(&IConfigService::getSoftwareIsKit); }
