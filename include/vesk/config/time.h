/**
 * @file
 * Time and date, time zones.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_TIME_H
#define VESK_CONFIG_TIME_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Size of the settings of time and date in bytes. */
#define VESK_TIMEDATE_CONFIG_SIZE 152
/** Room in bytes that binder_get_time_zone() asks for with each entry. */
#define VESK_TIME_ZONE_ENTRY_SIZE 264

/* Time and date */

/**
 * Fetches the settings of time and date.
 *
 * @param[out] timedate receives a record of VESK_TIMEDATE_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_timedate_get_config(void* timedate);

/**
 * Sets time and date.
 *
 * @param timedate a record of VESK_TIMEDATE_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_timedate_set_config(const char* timedate);

/* Time zones */

/**
 * Fetches the list of time zones as one text: for each entry its index from 0, a colon, the entry and a
 * semicolon, as in "0:UTC;1:UTC+1;".
 *
 * The text is appended to the one that is in the buffer, so a buffer that shall hold the list alone must
 * hold "" before. An index and its entry take at most VESK_TIME_ZONE_ENTRY_SIZE - 1 bytes; a longer entry
 * is cut there, and lacks its semicolon then.
 *
 * @param[in,out] buffer holds a text that ends with a zero, and receives the list behind it
 * @param         size   the size of the buffer in bytes: VESK_TIME_ZONE_ENTRY_SIZE for each entry, however
 *                       short they are, and one more. What is in the buffer before does not count for this.
 * @return 0, also for an empty list and after a failed call, when nothing is written; -1 without a
 *         connection and if the size is too small, when nothing is written either. If the text before the
 *         list leaves too little room, -1, and the entries up to there have been appended.
 */
VESK_API int binder_get_time_zone(char* buffer, int size);

/**
 * Turns the value of the setting into an index of the list of time zones.
 *
 * @param cfg the value
 * @return the index; -1 on failure
 */
VESK_API int binder_trans_timezone_cfg_2_index(int cfg);

/**
 * Turns an index of the list of time zones into the value of the setting.
 *
 * @param index the index
 * @return the value; -1 on failure
 */
VESK_API int binder_trans_timezone_index_2_cfg(int index);

/* Default time zone */

/**
 * Fetches the path of the default time zone.
 *
 * @param[out] dst  receives the path, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_default_tzpath(char* dst, int size);

#ifdef __cplusplus
}
#endif

#endif
