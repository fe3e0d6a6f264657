/**
 * @file
 * Settings and states that come as lists of records.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
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
 * Fetches the status of the RTP streams.
 *
 * @param[out] out receives records of VESK_RTP_STATUS_SIZE bytes, one behind the other, as many as there
 *                 are, but not more than max; an element of another size is skipped, and the bytes behind
 *                 the last one are untouched
 * @param      max for how many the buffer has room
 * @return how many have been written; 0 after a failed call; -1 without a connection
 */
VESK_API int binder_get_rtp_status(void* out, int max);

/* Into an array */

/*
 * These put each element into an array of the application's (see <vesk/array.h>). They don't empty it first.
 * An element of the wrong size is skipped. A failed call is an empty list, and so a success. A null array,
 * or one without the operation that the function uses, is refused: nothing is sent.
 */

/**
 * Fetches the DSS keys whose icons have changed: stores elements of VESK_DSSKEY_ICON_CHANGED_SIZE bytes at
 * the indexes from 0.
 *
 * @param array the array
 * @return 0; -1 without a connection, or if the array lacks the operation
 */
VESK_API int binder_get_dsskey_icon_changed_arr(const vesk_array* array);

/**
 * Fetches the information on calls that can be picked up: stores elements of VESK_PICK_UP_INFO_SIZE bytes
 * at the indexes from 0.
 *
 * @param array the array
 * @return 0; -1 without a connection, or if the array lacks the operation
 */
VESK_API int binder_get_pick_up_info(const vesk_array* array);

/**
 * Fetches the devices for the monitor: appends elements of VESK_MONITOR_DEVICE_SIZE bytes.
 *
 * @param array the array
 * @return 0; -1 without a connection, or if the array lacks the operation
 */
VESK_API int binder_get_monitor_device(const vesk_array* array);

/**
 * Fetches what the scan for devices (QDDP) has found: appends elements of VESK_QDDP_SCAN_RESULT_SIZE
 * bytes.
 *
 * @param array the array
 * @return 0; -1 without a connection, or if the array lacks the operation
 */
VESK_API int binder_get_qddp_scan_result(const vesk_array* array);

/**
 * Fetches the log of the alarm: appends elements of VESK_ALARM_LOG_SIZE bytes.
 *
 * @param array the array
 * @return 0; -1 without a connection, or if the array lacks the operation
 */
VESK_API int binder_get_alarm_logs(const vesk_array* array);

#ifdef __cplusplus
}
#endif

#endif
