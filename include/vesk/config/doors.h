/**
 * @file
 * Doors, the monitor, security, alarm, inputs and outputs, relays, elevators.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DOORS_H
#define VESK_CONFIG_DOORS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_SECURITY_CONFIG_SIZE 464
#define VESK_ELEVATOR_CONFIG_SIZE 40

/* Doors and the monitor */

/**
 * Asks to open a door.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 */
VESK_API void binder_opendoor_request(int a, int b);

/**
 * Resets the settings of a door.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_set_door_config_reset(int value);

/**
 * Resets the settings of a monitor.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_set_monitor_config_reset(int value);

/* Security and elevators */

/**
 * Fetches the settings of security.
 *
 * @param      index    for the service to interpret
 * @param[out] security receives a record of VESK_SECURITY_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_security(int index, void* security);

/**
 * Sets the settings of security.
 *
 * @param index    for the service to interpret
 * @param security a record of VESK_SECURITY_CONFIG_SIZE bytes, in memory that can be written: the bytes
 *                 that were sent are written back there
 * @return 0 once the service has been asked, whatever came of it; -1 without a connection, and nothing is
 *         written
 */
VESK_API int binder_set_security(int index, const char* security);

/**
 * Fetches the settings of an elevator.
 *
 * @param      index    for the service to interpret
 * @param[out] elevator receives a record of VESK_ELEVATOR_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_elevator(int index, void* elevator);

#ifdef __cplusplus
}
#endif

#endif
