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

/* Monitor */

/** Size of the record in bytes. */
#define VESK_MONITOR_CONFIG_SIZE 980

/**
 * Sets the settings of the monitor.
 *
 * @param record a record of VESK_MONITOR_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_monitor_config(const void* record);

/**
 * Asks for the mode in which the device's RTSP client works.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binderGetRtspClientWorkMode(void);

/**
 * Asks for the timeout of snapshots, in the service's unit.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_snapshot_timeout(void);

/**
 * Opens a door through a URL.
 *
 * @param url the URL
 */
VESK_API void binder_url_opendoor(const char* url);

/**
 * Sends information for the control of an elevator.
 *
 * @param info for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_elevator_contron_info(int info);

/* Family call */

/**
 * Switches the family call on or off.
 *
 * @param enabled for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_family_call_enabled(int enabled);

/**
 * Asks for the type of the family call.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_family_call_type(void);

/**
 * Fetches the IP address of the family call.
 *
 * @param[out] dst  receives the address, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_family_call_ip(char* dst, int size);

/* Alarm */

/**
 * Fetches the code that resets an alarm.
 *
 * @param[out] dst   receives the code, cut to fit
 * @param      value for the service to interpret
 * @param      size  the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_alarm_resetcode(char* dst, int value, int size);

/**
 * Asks for the mode of the alarm.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_alarm_mode(void);

/**
 * Sets the mode of the alarm.
 *
 * @param mode for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_alarm_mode(int mode);

/**
 * Deletes an entry of the security log.
 *
 * @param id the entry
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_security_logs_del_by_id(int id);

/* Inputs, outputs and relays */

/** Size of the record in bytes. */
#define VESK_SMART_HOME_RELAY_CONFIG_SIZE 76

/**
 * Asks how many inputs there are.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_input_nums(void);

/**
 * Asks how many alarm inputs there are.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_alarm_input_nums(void);

/**
 * Asks how many outputs there are.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_output_nums(void);

/**
 * Sends by MQTT that an input has been reset.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_input_reset_send_mqtt(int value);

/**
 * Asks how many entries of the input log have not been read.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_inputlogs_unread_num(void);

/**
 * Marks the input log as read.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_inputlogs_read_done(void);

/**
 * Asks what triggers the output of a relay.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_relay_output_trigger(int value);

/**
 * Sets what triggers the output of a relay.
 *
 * @param value   for the service to interpret
 * @param trigger for the service to interpret
 */
VESK_API void binder_set_relay_output_trigger(int value, int trigger);

/**
 * Fetches the settings of a smart home relay.
 *
 * @param      index which of them
 * @param[out] out   receives a record of VESK_SMART_HOME_RELAY_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_smart_home_relay_config(int index, void* out);

#ifdef __cplusplus
}
#endif

#endif
