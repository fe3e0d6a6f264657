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
/** Bytes that binder_get_time_zone() reserves for each entry. */
#define VESK_TIME_ZONE_ENTRY_SIZE 264

/* Time and date */

/** Fetches the settings of time and date (VESK_TIMEDATE_CONFIG_SIZE bytes). */
VESK_API int binder_timedate_get_config(void* timedate);

/** Sets time and date (VESK_TIMEDATE_CONFIG_SIZE bytes). */
VESK_API int binder_timedate_set_config(const char* timedate);

/* Time zones */

/**
 * Appends the list of time zones to the text in `buffer`: for each entry its index from 0, a colon,
 * the entry and a semicolon, as in "0:UTC;1:UTC+1;".
 *
 * The buffer must hold a text before the call; for the list alone, an empty one. An entry with its
 * index takes at most VESK_TIME_ZONE_ENTRY_SIZE - 1 bytes; a longer one is cut there and loses its
 * semicolon.
 *
 * @param[in,out] buffer untouched if the list is empty or the call fails
 * @param         size   VESK_TIME_ZONE_ENTRY_SIZE for each entry, however short, plus 1; the text
 *                       in the buffer does not count for this
 * @return 0, also for an empty list and if the call fails; -1 without a connection and if `size` is
 *         too small, with nothing written; -1 if the text before the list leaves too little room,
 *         with the entries that fit appended
 */
VESK_API int binder_get_time_zone(char* buffer, int size);

/** Converts a time zone setting to the index in the list of time zones. */
VESK_API int binder_trans_timezone_cfg_2_index(int cfg);

/** Converts an index in the list of time zones to the time zone setting. */
VESK_API int binder_trans_timezone_index_2_cfg(int index);

/* Default time zone */

/** Fetches the path of the default time zone. Always returns 0. */
VESK_API int binder_get_default_tzpath(char* dst, int size);

#ifdef __cplusplus
}
#endif

#endif
