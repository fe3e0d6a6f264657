#include <vesk/config/nat_share.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Settings */

int binder_get_nat_share_config(void* out) {
  return configService.fetch<VESK_NAT_SHARE_CONFIG_SIZE>(out, ConfigService::getNatShareConfig);
}
int binder_set_nat_share_config(const void* record) {
  return configService.value(ConfigService::setNatShareConfig, Record<VESK_NAT_SHARE_CONFIG_SIZE>{record});
}

/* Network group */

int binder_get_nat_share_network_group_key(char* dst, int size) {
  return configService.text(IfNotConnected{-1}, TruncateZeroFill{dst, size, -1},
                            ConfigService::getNatShareNetworkGroupKey);
}
int binder_set_nat_share_network_group_key(const char* key) {
  return configService.value(ConfigService::setNatShareNetworkGroupKey, key);
}
int binder_get_nat_share_network_group_work_mode(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getNatShareNetworkGroupWorkMode);
}
int binder_set_nat_share_network_group_work_mode(int mode) {
  return configService.value(ConfigService::setNatShareNetworkGroupWorkMode, mode);
}
