#include <vesk/config/wireless.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Wi-Fi */

int binder_get_wlan_enable_config(void) { return configService.value(ConfigService::getWlanEnabled); }
int binder_set_wlan_enable_config(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::setWlanEnabled, enabled);
}
int binder_get_wifi_enable(void) { return configService.value(ConfigService::getWifiEnable); }
int binder_set_wifi_enable(int enable) { return configService.value(ConfigService::setWifiEnable, enable); }
int binder_get_wlan_log_enable_config() { return configService.value(ConfigService::getWlanLogEnabled); }
int binder_get_ap_config(void* config) {
  return configService.fetch<VESK_AP_CONFIG_SIZE>(config, ConfigService::getApConfig);
}
int binder_set_ap_config(const char* config) {
  return configService.value(ConfigService::setApConfig, Record<VESK_AP_CONFIG_SIZE>{config});
}

/* Bluetooth */

int binder_get_bluetooth_enable_config(void) {
  return configService.value(ConfigService::getBluetoothEnebled);
}
int binder_set_bluetooth_enable_config(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::setBluetoothEnabled, enabled);
}
void binder_get_bluetooth_adapter_name_config(char* buffer, int size) {
  configService.text(IfNotConnected{-1}, Truncate{buffer, size}, ConfigService::getBluetoothAdaperName);
}
int binder_set_bluetooth_adapter_name_config(const char* name) {
  return configService.value(ConfigService::setBluetoothAdapterName, name);
}
void binder_get_bluetooth_last_connected_addr(char* buffer, int size) {
  configService.text(IfNotConnected{-1}, Truncate{buffer, size},
                     ConfigService::getBluetoothLastConnectedAddr);
}
int binder_set_bluetooth_last_connected_addr(const char* address) {
  return configService.value(ConfigService::setBluetoothLastConnectedAddr, address);
}

/* Access point events */

int binder_ap_userinfo_event_process(const void* record, int flag) {
  return configService.value(ConfigService::apUserInfoEventProcess, Record<VESK_AP_USERINFO_SIZE>{record},
                             flag);
}
int binder_ap_filename_event_process(const char* filename, int flag) {
  return configService.value(ConfigService::apFilenameEventProcess, filename, flag);
}
int binder_ap_input_timer_refresh(void) { return configService.value(ConfigService::apInputTimerRefresh); }

/* Wireless keys (WK) */

int binder_get_wk_num(void) { return configService.value(ConfigService::getWkNum); }
int binder_get_wk_info(int index, void* out) {
  return configService.fetch<VESK_WK_INFO_SIZE>(out, ConfigService::getWkInfo, index);
}
int binder_set_wk_info(int index, const void* record) {
  return configService.value(ConfigService::setWkInfo, index, Record<VESK_WK_INFO_SIZE>{record});
}
int binder_enter_wk_scan(int value) { return configService.value(ConfigService::enterWkScan, value); }
int binder_set_wk_config(int a, int b) { return configService.value(ConfigService::setWkConfig, a, b); }
int binder_wk_stop_ring(void) { return configService.value(ConfigService::wkStopRing); }
/* Callers know this function by its -1. */
int binder_get_wk_ring_time(char* dst, int size) {
  configService.text(IfNotConnected{-1}, Truncate{dst, size}, ConfigService::getWkRingTime);
  return -1;
}
