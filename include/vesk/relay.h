/**
 * @file
 * The relay service: the relay device, its output channels, and the actions that switch them.
 *
 * Read the conventions in <vesk/vesk_client.h> first. Two things are different here.
 *
 * Death. Nobody is told when the relay service dies. The connection stays, and each call on it fails until
 * connect_relay_service() has been called again with success.
 *
 * Null pointers. Some functions answer a null pointer with -1 and send nothing; their comments say so. To the
 * others, convention 7 applies.
 *
 * None of these functions logs; connect_relay_service does, under the tag "RelayClient".
 */
#ifndef VESK_RELAY_H
#define VESK_RELAY_H

#include <stdbool.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records. Their layout is the service's. Where a record is passed as a const char*, it is no string. */

/** Sizes of the relay service's records in bytes. */
#define VESK_RELAY_DEV_INFO_SIZE 144
#define VESK_RELAY_DEV_CONFIG_SIZE 104
#define VESK_RELAY_DEV_NAME_SIZE 68
#define VESK_RELAY_DO_CHANNELS_SIZE 896
#define VESK_RELAY_DO_TYPE_SIZE 44
#define VESK_RELAY_DO_TIME_SIZE 16
#define VESK_RELAY_DO_ENABLED_SIZE 12
#define VESK_RELAY_DO_CHANNEL_SIZE 120
#define VESK_RELAY_ACT_SIZE 12
#define VESK_RELAY_SCHEDULED_ACT_SIZE 20

/* Connecting */

/**
 * Connects to the relay service.
 *
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time, and has to be after the service has died. A successful call
 * replaces the connection; a failed one leaves the earlier connection as it was.
 *
 * @return true if connected
 */
VESK_API bool connect_relay_service(void);

/* The relay device */

/**
 * Fetches the information on the relay device: all of it, not only the MAC address.
 *
 * @param[out] info receives a record of VESK_RELAY_DEV_INFO_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure
 */
VESK_API int binder_get_relay_dev_mac(void* info);

/**
 * Fetches the configuration of a relay device.
 *
 * @param      value  for the service to interpret
 * @param[out] config receives a record of VESK_RELAY_DEV_CONFIG_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure
 */
VESK_API int binder_get_relay_dev_config(int value, void* config);

/**
 * Names a relay device.
 *
 * @param name a record of VESK_RELAY_DEV_NAME_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_relay_dev_name(const char* name);

/* Output channels */

/**
 * Fetches the output channels.
 *
 * @param      value    for the service to interpret
 * @param[out] channels receives a record of VESK_RELAY_DO_CHANNELS_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure and for null
 */
VESK_API int binder_get_relay_do_channels(int value, void* channels);

/**
 * Sets the type of an output channel.
 *
 * @param type a record of VESK_RELAY_DO_TYPE_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_set_relay_do_type(const char* type);

/**
 * Sets the timing of an output channel.
 *
 * @param time a record of VESK_RELAY_DO_TIME_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_set_relay_do_time(const char* time);

/**
 * Enables or disables an output channel.
 *
 * @param enabled a record of VESK_RELAY_DO_ENABLED_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_set_relay_do_enabled(const char* enabled);

/**
 * Sets what else there is to an output channel.
 *
 * @param channel a record of VESK_RELAY_DO_CHANNEL_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_set_relay_do_channel(const char* channel);

/**
 * Opens the bracket around changes to the output channels.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_begin_relay_do_save(int value);

/**
 * Closes the bracket around changes to the output channels, which saves them.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_commit_relay_do_save(int value);

/* Actions */

/**
 * Takes a relay action now.
 *
 * @param action a record of VESK_RELAY_ACT_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_relay_set_act(const char* action);

/**
 * Schedules a relay action.
 *
 * @param action a record of VESK_RELAY_SCHEDULED_ACT_SIZE bytes
 * @return the service's answer; -1 on failure and for null
 */
VESK_API int binder_relay_schedule_act(const char* action);

/**
 * Asks for a relay action.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_relay_get_act(int value);

/**
 * Asks for the state of an output.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_relay_do_state(int a, int b);

/* Flags */

/**
 * Asks whether the relay configuration may be edited.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_relay_config_editable(void);

/**
 * Asks for the purely local scene.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_pure_local_scene(void);

#ifdef __cplusplus
}
#endif

#endif
