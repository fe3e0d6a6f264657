#include <vesk/config/device.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Status */

int binder_get_phone_status(void* status) {
  return configService.fetch<VESK_PHONE_STATUS_SIZE>(status, &IConfigService::getPhoneStatus);
}
int binder_get_phone_uboot(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::getUbootVerise);
}
int binder_get_vendor_info(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::getVendorInfo);
}
int binder_get_battery_status(void) { return configService.value(&IConfigService::getBatteryStatus); }
int binder_get_electr_value(void) { return configService.value(&IConfigService::getElectrValue); }
int binder_clean_unread_clog(void) { return configService.value(&IConfigService::cleanUnreadClog); }
void binder_update_file_directory(int value) {
  configService.send(&IConfigService::updateFileDirectory, value);
}

/* Hotel */

int binder_get_hotel_general_info(void* info, int value) {
  return configService.fetch<VESK_HOTEL_GENERAL_INFO_SIZE>(info, &IConfigService::getHotelGeneralInfo, value);
}
int binder_get_hotel_custom_info(void* info) {
  return configService.fetch<VESK_HOTEL_CUSTOM_INFO_SIZE>(info, &IConfigService::getHotelCustomInfo);
}

/* State, phonebooks and conversions */

int binder_get_device_model(void) { return configService.value(&IConfigService::getDeviceModel); }
int binder_get_phone_state(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getPhoneState);
}
int binder_generate_key(int a, int b, int flag1, int flag2) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::veskGenerateKey, a, b, flag1,
                             flag2);
}
int binder_get_local_config(void* out) {
  return configService.fetch<VESK_LOCAL_CONFIG_SIZE>(out, &IConfigService::getLocalData);
}
int binder_get_net_phonebook_num(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getNetPhonebookNum);
}
int binder_get_xml_pbook_config_by_index(int index, void* out) {
  return configService.fetch<VESK_XML_PBOOK_CONFIG_SIZE>(out, &IConfigService::getXmlPbookConfig, index);
}
int binder_get_ldap_pbook_config_by_index(int index, void* out) {
  return configService.fetch<VESK_LDAP_PBOOK_CONFIG_SIZE>(out, &IConfigService::getLdapPbookConfig, index);
}
int binder_src_to_B64(const char* src, int a, char* dst, int b) {
  return configService.text(IfNotConnected{-1}, Unchecked{dst}, &IConfigService::srcToB64, src, a, b);
}
