#include <vesk/config/device.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Status */

int binder_get_phone_status(void* status) {
  return configService.fetch<VESK_PHONE_STATUS_SIZE>(status, &IConfigService::getPhoneStatus);
}
int binder_get_phone_uboot(char* buffer, int size) {
  return configService.text(Absent{-1}, Cut{buffer, size}, &IConfigService::getUbootVerise);
}
int binder_get_vendor_info(char* buffer, int size) {
  return configService.text(Absent{-1}, Cut{buffer, size}, &IConfigService::getVendorInfo);
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
