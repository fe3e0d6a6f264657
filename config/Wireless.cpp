#include <vesk/config/wireless.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Wi-Fi */

int binder_get_wlan_enable_config(void) { return configService.value(&IConfigService::getWlanEnabled); }
int binder_set_wlan_enable_config(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setWlanEnabled, enabled);
}
int binder_get_wifi_enable(void) { return configService.value(&IConfigService::getWifiEnable); }
int binder_set_wifi_enable(int enable) { return configService.value(&IConfigService::setWifiEnable, enable); }
int binder_get_wlan_log_enable_config() { return configService.value(&IConfigService::getWlanLogEnabled); }
int binder_get_ap_config(void* config) {
  return configService.fetch<VESK_AP_CONFIG_SIZE>(config, &IConfigService::getApConfig);
}
int binder_set_ap_config(const char* config) {
  return configService.value(&IConfigService::setApConfig, Record{config, VESK_AP_CONFIG_SIZE});
}

/* Bluetooth */

int binder_get_bluetooth_enable_config(void) {
  return configService.value(&IConfigService::getBluetoothEnebled);
}
int binder_set_bluetooth_enable_config(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setBluetoothEnabled, enabled);
}
void binder_get_bluetooth_adapter_name_config(char* buffer, int size) {
  configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::getBluetoothAdaperName);
}
int binder_set_bluetooth_adapter_name_config(const char* name) {
  return configService.value(&IConfigService::setBluetoothAdapterName, name);
}
void binder_get_bluetooth_last_connected_addr(char* buffer, int size) {
  configService.text(IfNotConnected{-1}, Truncate{buffer, size},
                     &IConfigService::getBluetoothLastConnectedAddr);
}
int binder_set_bluetooth_last_connected_addr(const char* address) {
  return configService.value(&IConfigService::setBluetoothLastConnectedAddr, address);
}

/* Access point events */

int binder_ap_userinfo_event_process(const void* record, int flag) {
  return configService.value(&IConfigService::apUserInfoEventProcess, Record{record, VESK_AP_USERINFO_SIZE},
                             flag);
}
int binder_ap_filename_event_process(const char* filename, int flag) {
  return configService.value(&IConfigService::apFilenameEventProcess, filename, flag);
}
int binder_ap_input_timer_refresh(void) { return configService.value(&IConfigService::apInputTimerRefresh); }

/* Wireless keys (WK) */

int binder_get_wk_num(void) { return configService.value(&IConfigService::getWkNum); }
int binder_get_wk_info(int index, void* out) {
  return configService.fetch<VESK_WK_INFO_SIZE>(out, &IConfigService::getWkInfo, index);
}
int binder_set_wk_info(int index, const void* record) {
  return configService.value(&IConfigService::setWkInfo, index, Record{record, VESK_WK_INFO_SIZE});
}
int binder_enter_wk_scan(int value) { return configService.value(&IConfigService::enterWkScan, value); }
int binder_set_wk_config(int a, int b) { return configService.value(&IConfigService::setWkConfig, a, b); }
int binder_wk_stop_ring(void) { return configService.value(&IConfigService::wkStopRing); }
/* Callers rely on this -1. */
int binder_get_wk_ring_time(char* dst, int size) {
  configService.text(IfNotConnected{-1}, Truncate{dst, size}, &IConfigService::getWkRingTime);
  return -1;
}
