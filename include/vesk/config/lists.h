/**
 * @file
 * Lists of records.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 *
 * The functions with a vesk_array (see <vesk/array.h>) put each element of the right size into an
 * array of the application, which they do not empty first: "stores" stands for the operation
 * `store` with the indexes from 0, "appends" for `append`. They skip elements of another size. They
 * return 0, even if the call fails, which counts as an empty list; -1 without a connection, or if
 * the array or the operation is null, and then nothing is sent.
 */
#ifndef VESK_CONFIG_LISTS_H
#define VESK_CONFIG_LISTS_H

#include <vesk/array.h>
#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the elements in bytes. */
#define VESK_RTP_STATUS_SIZE 128
#define VESK_DSSKEY_ICON_CHANGED_SIZE 16
#define VESK_PICK_UP_INFO_SIZE 188
#define VESK_MONITOR_DEVICE_SIZE 68
#define VESK_QDDP_SCAN_RESULT_SIZE 480
#define VESK_ALARM_LOG_SIZE 152

/* Into a buffer */

/**
 * Fetches the status of the RTP streams. Elements of another size are skipped.
 *
 * @param[out] out `max` times VESK_RTP_STATUS_SIZE bytes; the bytes behind the last record are
 *                 untouched
 * @return the number of records; 0 if the call fails; -1 without a connection
 */
VESK_API int binder_get_rtp_status(void* out, int max);

/* Into an array */

/** Stores the DSS keys whose icons have changed (VESK_DSSKEY_ICON_CHANGED_SIZE bytes each). */
VESK_API int binder_get_dsskey_icon_changed_arr(const vesk_array* array);

/** Stores the information on calls to pick up (VESK_PICK_UP_INFO_SIZE bytes each). */
VESK_API int binder_get_pick_up_info(const vesk_array* array);

/** Appends the monitor devices (VESK_MONITOR_DEVICE_SIZE bytes each). */
VESK_API int binder_get_monitor_device(const vesk_array* array);

/** Appends the devices found by the QDDP scan (VESK_QDDP_SCAN_RESULT_SIZE bytes each). */
VESK_API int binder_get_qddp_scan_result(const vesk_array* array);

/** Appends the alarm log (VESK_ALARM_LOG_SIZE bytes each). */
VESK_API int binder_get_alarm_logs(const vesk_array* array);

#ifdef __cplusplus
}
#endif

#endif
