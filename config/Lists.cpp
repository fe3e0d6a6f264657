#include <vesk/config/lists.h>

#include <algorithm>
#include <cstddef>

#include "config/ConfigService.h"
#include "ipc/Array.h"

using namespace com::qv;

/* Into a buffer */

int binder_get_rtp_status(void* out, int max) {
  const auto put = [out, max](int index, const char* element) {
    if (index >= max) return false;
    // Not memcpy: optimised for size, it becomes a slow string instruction.
    std::copy_n(element, VESK_RTP_STATUS_SIZE,
                static_cast<char*>(out) + VESK_RTP_STATUS_SIZE * static_cast<size_t>(index));
    return true;
  };
  return configService.list<VESK_RTP_STATUS_SIZE>(put, &IConfigService::getRtpStatus);
}

/* Into an array */

int binder_get_dsskey_icon_changed_arr(const vesk_array* array) {
  return fill(configService, StoreTo<VESK_DSSKEY_ICON_CHANGED_SIZE>{array},
              &IConfigService::getDsskeyIconChangedArr);
}
int binder_get_pick_up_info(const vesk_array* array) {
  return fill(configService, StoreTo<VESK_PICK_UP_INFO_SIZE>{array}, &IConfigService::getPickUpInfo);
}
int binder_get_monitor_device(const vesk_array* array) {
  return fill(configService, AppendTo<VESK_MONITOR_DEVICE_SIZE>{array}, &IConfigService::getMonitorDevice);
}
int binder_get_qddp_scan_result(const vesk_array* array) {
  return fill(configService, AppendTo<VESK_QDDP_SCAN_RESULT_SIZE>{array}, &IConfigService::getQddpScanResult);
}
int binder_get_alarm_logs(const vesk_array* array) {
  return fill(configService, AppendTo<VESK_ALARM_LOG_SIZE>{array}, &IConfigService::getAlarmLogs);
}
