#include <vesk/config/nat_share.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Settings */

int binder_get_nat_share_config(void* out) {
  return configService.fetch<VESK_NAT_SHARE_CONFIG_SIZE>(out, &IConfigService::getNatShareConfig);
}
int binder_set_nat_share_config(const void* record) {
  return configService.value(&IConfigService::setNatShareConfig, Record{record, VESK_NAT_SHARE_CONFIG_SIZE});
}

/* Network group */

int binder_get_nat_share_network_group_key(char* dst, int size) {
  return configService.text(IfNotConnected{-1}, TruncateZeroFill{dst, size, -1},
                            &IConfigService::getNatShareNetworkGroupKey);
}
int binder_set_nat_share_network_group_key(const char* key) {
  return configService.value(&IConfigService::setNatShareNetworkGroupKey, key);
}
int binder_get_nat_share_network_group_work_mode(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0},
                             &IConfigService::getNatShareNetworkGroupWorkMode);
}
int binder_set_nat_share_network_group_work_mode(int mode) {
  return configService.value(&IConfigService::setNatShareNetworkGroupWorkMode, mode);
}
