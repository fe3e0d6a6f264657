/**
 * @file
 * Do not disturb (DND): mode, state of each line, times.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DND_H
#define VESK_CONFIG_DND_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Mode */

/** Returns the DND mode; 0 on failure. */
VESK_API int binder_get_dnd_mode(void);

/** Sets the DND mode. */
VESK_API void binder_set_dnd_mode(int mode);

/* State of a line */

/** Returns whether DND is on for a line; 0 on failure. */
VESK_API int binder_get_line_dnd_state(int line);

/** Switches DND on or off for a line. Exported with this spelling. */
VESK_API void binder_set_lind_dnd_state(int line, int on);

/* Times */

/** Returns the start time of the DND period; 0 on failure. */
VESK_API int binder_get_space_dnd_start_time(void);

/** Returns the end time of the DND period; 0 on failure. */
VESK_API int binder_get_space_dnd_end_time(void);

/** Sets the times of the DND period. */
VESK_API void binder_set_space_dnd_time(const char* start_time, const char* end_time);

/** Returns the state of the DND timer; 0 on failure. */
VESK_API int binder_get_dnd_timer_state(void);

/** Sets the state of the DND timer. */
VESK_API void binder_set_dnd_timer_state(int state);

#ifdef __cplusplus
}
#endif

#endif
