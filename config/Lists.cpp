#include <vesk/config/lists.h>

#include <algorithm>
#include <cstddef>

#include "config/ConfigService.h"
#include "ipc/Array.h"

using namespace com::qv;

namespace {

/** Has `operation` put every element of the list where it belongs. */
template <class Operation, class Method>
int fill(Operation operation, Method method) {
  if (!operation.isUsable()) return -1;
  return configService.list<Operation::kElementSize>(operation, method) < 0 ? -1 : 0;
}

}  // namespace

/* Into a buffer */

int binder_get_rtp_status(void* out, int max) {
  const auto put = [out, max](int index, const char* element) {
    if (index >= max) return false;
    // Where code is to be small, memcpy becomes a slow instruction; this is the C library's fast copy.
    std::copy_n(element, VESK_RTP_STATUS_SIZE,
                static_cast<char*>(out) + VESK_RTP_STATUS_SIZE * static_cast<size_t>(index));
    return true;
  };
  return configService.list<VESK_RTP_STATUS_SIZE>(put, ConfigService::getRtpStatus);
}

/* Into an array */

int binder_get_dsskey_icon_changed_arr(const vesk_array* array) {
  return fill(StoreTo<VESK_DSSKEY_ICON_CHANGED_SIZE>{array}, ConfigService::getDsskeyIconChangedArr);
}
int binder_get_pick_up_info(const vesk_array* array) {
  return fill(StoreTo<VESK_PICK_UP_INFO_SIZE>{array}, ConfigService::getPickUpInfo);
}
int binder_get_monitor_device(const vesk_array* array) {
  return fill(AppendTo<VESK_MONITOR_DEVICE_SIZE>{array}, ConfigService::getMonitorDevice);
}
int binder_get_qddp_scan_result(const vesk_array* array) {
  return fill(AppendTo<VESK_QDDP_SCAN_RESULT_SIZE>{array}, ConfigService::getQddpScanResult);
}
int binder_get_alarm_logs(const vesk_array* array) {
  return fill(AppendTo<VESK_ALARM_LOG_SIZE>{array}, ConfigService::getAlarmLogs);
}
