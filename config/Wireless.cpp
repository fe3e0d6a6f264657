#include <vesk/config/wireless.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Wi-Fi */

int binder_get_wlan_enable_config(void) { return configService.value(&IConfigService::getWlanEnabled); }
int binder_set_wlan_enable_config(int enabled) {
  return configService.value(Absent{0}, Preset{0}, &IConfigService::setWlanEnabled, enabled);
}
int binder_get_wlan_log_enable_config() { return configService.value(&IConfigService::getWlanLogEnabled); }
int binder_get_ap_config(void* config) {
  return configService.fetch<VESK_AP_CONFIG_SIZE>(config, &IConfigService::getApConfig);
}
int binder_set_ap_config(const char* config) {
  return configService.value(&IConfigService::setApConfig, Record<VESK_AP_CONFIG_SIZE>{config});
}

/* Bluetooth */

int binder_get_bluetooth_enable_config(void) {
  return configService.value(&IConfigService::getBluetoothEnebled);
}
int binder_set_bluetooth_enable_config(int enabled) {
  return configService.value(Absent{0}, Preset{0}, &IConfigService::setBluetoothEnabled, enabled);
}
void binder_get_bluetooth_adapter_name_config(char* buffer, int size) {
  configService.text(Absent{-1}, Cut{buffer, size}, &IConfigService::getBluetoothAdaperName);
}
int binder_set_bluetooth_adapter_name_config(const char* name) {
  return configService.value(&IConfigService::setBluetoothAdapterName, name);
}
void binder_get_bluetooth_last_connected_addr(char* buffer, int size) {
  configService.text(Absent{-1}, Cut{buffer, size}, &IConfigService::getBluetoothLastConnectedAddr);
}
int binder_set_bluetooth_last_connected_addr(const char* address) {
  return configService.value(&IConfigService::setBluetoothLastConnectedAddr, address);
}
