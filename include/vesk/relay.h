/**
 * @file
 * The relay service: the relay device, its output channels, and the actions that switch them.
 *
 * Read the conventions in <vesk/vesk_client.h> first. There is no death notification here: after
 * the relay service has died, each call fails until connect_relay_service() has succeeded again.
 *
 * connect_relay_service logs under the tag "RelayClient"; the other functions log nothing.
 */
#ifndef VESK_RELAY_H
#define VESK_RELAY_H

#include <stdbool.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

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
 * If the service is absent, waits as long as the service manager does, about five seconds, and then
 * fails. May be called again at any time, and must be after the service has died. A successful call
 * replaces the connection; a failed one leaves it unchanged.
 *
 * @return true if connected
 */
VESK_API bool connect_relay_service(void);

/* The relay device */

/** Fetches the whole information on the relay device (VESK_RELAY_DEV_INFO_SIZE bytes). */
VESK_API int binder_get_relay_dev_mac(void* info);

/** Fetches the configuration of a relay device (VESK_RELAY_DEV_CONFIG_SIZE bytes). */
VESK_API int binder_get_relay_dev_config(int value, void* config);

/** Names a relay device (VESK_RELAY_DEV_NAME_SIZE bytes). */
VESK_API int binder_set_relay_dev_name(const char* name);

/* Output channels */

/** Fetches the output channels (VESK_RELAY_DO_CHANNELS_SIZE bytes). Null: -1. */
VESK_API int binder_get_relay_do_channels(int value, void* channels);

/** Sets the type of an output channel (VESK_RELAY_DO_TYPE_SIZE bytes). Null: -1. */
VESK_API int binder_set_relay_do_type(const char* type);

/** Sets the timing of an output channel (VESK_RELAY_DO_TIME_SIZE bytes). Null: -1. */
VESK_API int binder_set_relay_do_time(const char* time);

/** Enables or disables an output channel (VESK_RELAY_DO_ENABLED_SIZE bytes). Null: -1. */
VESK_API int binder_set_relay_do_enabled(const char* enabled);

/** Sets an output channel (VESK_RELAY_DO_CHANNEL_SIZE bytes). Null: -1. */
VESK_API int binder_set_relay_do_channel(const char* channel);

/** Begins to save changes to the output channels. */
VESK_API int binder_begin_relay_do_save(int value);

/** Commits the changes to the output channels. */
VESK_API int binder_commit_relay_do_save(int value);

/* Actions */

/** Performs a relay action now (VESK_RELAY_ACT_SIZE bytes). Null: -1. */
VESK_API int binder_relay_set_act(const char* action);

/** Schedules a relay action (VESK_RELAY_SCHEDULED_ACT_SIZE bytes). Null: -1. */
VESK_API int binder_relay_schedule_act(const char* action);

/** Returns a relay action. */
VESK_API int binder_relay_get_act(int value);

/** Returns the state of an output. */
VESK_API int binder_get_relay_do_state(int a, int b);

/* Flags */

/** Returns whether the relay configuration may be edited. */
VESK_API int binder_get_relay_config_editable(void);

/** Returns the pure-local-scene flag. */
VESK_API int binder_get_pure_local_scene(void);

#ifdef __cplusplus
}
#endif

#endif
