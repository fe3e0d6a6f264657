#include <vesk/config/provisioning.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Automatic provisioning */

int binder_get_spnp_config(void* config) {
  return configService.fetch<VESK_SPNP_CONFIG_SIZE>(config, &IConfigService::getSpnpConfig);
}
int binder_set_spnp_config(const char* config) {
  return configService.value(&IConfigService::setSpnpConfig, Record{config, VESK_SPNP_CONFIG_SIZE});
}
int binder_get_auto_sps_config(void* config) {
  return configService.fetch<VESK_AUTO_SPS_CONFIG_SIZE>(config, &IConfigService::getAutoSpsConfig);
}
int binder_set_auto_sps_config(const char* config) {
  return configService.value(&IConfigService::setAutoSpsConfig, Record{config, VESK_AUTO_SPS_CONFIG_SIZE});
}

/* Management */

int binder_get_tr069_type(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getTr069Type, value);
}
int binder_get_tr069_seting_config(void* config) {
  return configService.fetch<VESK_TR069_SETING_CONFIG_SIZE>(config, &IConfigService::getTr069SetingConfig);
}
int binder_set_tr069_seting_config(const char* config) {
  return configService.value(&IConfigService::setTr069SetingConfig,
                             Record{config, VESK_TR069_SETING_CONFIG_SIZE});
}
int binder_factory_reset(int value) { return configService.value(&IConfigService::FactoryReset, value); }
