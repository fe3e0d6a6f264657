/**
 * @file
 * Do not disturb (DND): its mode, its state for each line, its times.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DND_H
#define VESK_CONFIG_DND_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The mode */

/**
 * Asks for the mode.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_dnd_mode(void);

/**
 * Sets the mode.
 *
 * @param mode for the service to interpret
 */
VESK_API void binder_set_dnd_mode(int mode);

/* The state of a line */

/**
 * Asks whether a line is not to be disturbed.
 *
 * @param line the line
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_get_line_dnd_state(int line);

/**
 * Sets whether a line is not to be disturbed. The name is spelt as it is exported.
 *
 * @param line the line
 * @param on   0 for off, anything else for on
 */
VESK_API void binder_set_lind_dnd_state(int line, int on);

/* The times */

/**
 * Asks when the DND period begins.
 *
 * @return the time, in the service's unit; 0 on failure
 */
VESK_API int binder_get_space_dnd_start_time(void);

/**
 * Asks when the DND period ends.
 *
 * @return the time, in the service's unit; 0 on failure
 */
VESK_API int binder_get_space_dnd_end_time(void);

/**
 * Sets when the DND period begins and ends.
 *
 * @param start_time the beginning, in the service's form
 * @param end_time   the end, in the service's form
 */
VESK_API void binder_set_space_dnd_time(const char* start_time, const char* end_time);

/**
 * Asks for the state of the timer.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_dnd_timer_state(void);

/**
 * Sets the state of the timer.
 *
 * @param state for the service to interpret
 */
VESK_API void binder_set_dnd_timer_state(int state);

#ifdef __cplusplus
}
#endif

#endif
