/**
 * @file
 * Doors, monitor, security, alarm, inputs and outputs, relays, elevators.
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

/* Doors and monitors */

/** Requests that a door be opened. */
VESK_API void binder_opendoor_request(int a, int b);

/** Resets the settings of a door. */
VESK_API void binder_set_door_config_reset(int value);

/** Resets the settings of a monitor. */
VESK_API void binder_set_monitor_config_reset(int value);

/* Security and elevators */

/** Fetches the security settings (VESK_SECURITY_CONFIG_SIZE bytes). */
VESK_API int binder_get_security(int index, void* security);

/**
 * Sets the security settings (VESK_SECURITY_CONFIG_SIZE bytes). Returns 0 even if the call fails;
 * -1 without a connection.
 *
 * @param security must be writable: the bytes that were sent are written back to it after the call
 */
VESK_API int binder_set_security(int index, const char* security);

/** Fetches the settings of an elevator (VESK_ELEVATOR_CONFIG_SIZE bytes). */
VESK_API int binder_get_elevator(int index, void* elevator);

/* Monitor */

/** Size of the record in bytes. */
#define VESK_MONITOR_CONFIG_SIZE 980

/** Sets the settings of the monitor (VESK_MONITOR_CONFIG_SIZE bytes). */
VESK_API int binder_set_monitor_config(const void* record);

/** Returns the work mode of the RTSP client. */
VESK_API int binderGetRtspClientWorkMode(void);

/** Returns the timeout of snapshots; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_snapshot_timeout(void);

/** Opens a door through a URL. */
VESK_API void binder_url_opendoor(const char* url);

/** Sends elevator control information. */
VESK_API int binder_elevator_contron_info(int info);

/* Family call */

/** Enables or disables the family call. Returns 0 on failure. */
VESK_API int binder_set_family_call_enabled(int enabled);

/** Returns the type of the family call; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_family_call_type(void);

/** Fetches the IP address of the family call. Always returns 0. */
VESK_API int binder_get_family_call_ip(char* dst, int size);

/* Alarm */

/** Fetches the code that resets an alarm. Always returns 0. */
VESK_API int binder_get_alarm_resetcode(char* dst, int value, int size);

/** Returns the mode of the alarm. */
VESK_API int binder_get_alarm_mode(void);

/** Sets the mode of the alarm. */
VESK_API int binder_set_alarm_mode(int mode);

/** Deletes an entry of the security log. */
VESK_API int binder_security_logs_del_by_id(int id);

/* Inputs, outputs and relays */

/** Size of the record in bytes. */
#define VESK_SMART_HOME_RELAY_CONFIG_SIZE 76

/** Returns the number of inputs; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_input_nums(void);

/** Returns the number of alarm inputs; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_alarm_input_nums(void);

/** Returns the number of outputs; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_output_nums(void);

/** Sends the reset of an input by MQTT. */
VESK_API int binder_input_reset_send_mqtt(int value);

/**
 * Returns the number of unread entries of the input log; -1 without a connection, 0 on any other
 * failure.
 */
VESK_API int binder_get_inputlogs_unread_num(void);

/** Marks the input log as read. */
VESK_API int binder_set_inputlogs_read_done(void);

/** Returns the output trigger of a relay; 0 on failure. */
VESK_API int binder_get_relay_output_trigger(int value);

/** Sets the output trigger of a relay. */
VESK_API void binder_set_relay_output_trigger(int value, int trigger);

/** Fetches the settings of a smart home relay (VESK_SMART_HOME_RELAY_CONFIG_SIZE bytes). */
VESK_API int binder_get_smart_home_relay_config(int index, void* out);

#ifdef __cplusplus
}
#endif

#endif
