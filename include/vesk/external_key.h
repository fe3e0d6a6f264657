/**
 * @file
 * The external-key service: the key modules that extend the device.
 *
 * Read the conventions in <vesk/vesk_client.h> first. There is no death notification here: after
 * the external-key service has died, each call fails until connect_external_key_service() has
 * succeeded again.
 *
 * connect_external_key_service logs under the tag "ExternalKeyClient"; the other functions log
 * nothing.
 */
#ifndef VESK_EXTERNAL_KEY_H
#define VESK_EXTERNAL_KEY_H

#include <stdbool.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

/** Sizes of the external-key service's records in bytes. */
#define VESK_EXK_DEV_INFO_SIZE 200
#define VESK_EXK_CONFIG_SIZE 1154
#define VESK_BTK_CONFIG_SIZE 136
/** Begins with a 32-bit integer in the device's byte order, which selects get or set. */
#define VESK_SINGLE_STATE_CONFIG_SIZE 204

/** The selector of a single-state configuration for get; any other value stands for set. */
#define VESK_SINGLE_STATE_GET 1

/* Connecting */

/**
 * Connects to the external-key service.
 *
 * If the service is absent, waits as long as the service manager does, about five seconds, and then
 * fails. May be called again at any time, and must be after the service has died. A successful call
 * replaces the connection; a failed one leaves it unchanged.
 *
 * @return true if connected
 */
VESK_API bool connect_external_key_service(void);

/* Key modules */

/** Fetches the whole information on the key modules (VESK_EXK_DEV_INFO_SIZE bytes). */
VESK_API int binder_get_exkdev_mac(void* info);

/** Fetches the key configuration of a key module (VESK_EXK_CONFIG_SIZE bytes). */
VESK_API int binder_get_exk_config(int value, void* config);

/**
 * Adds the configuration of a key (VESK_BTK_CONFIG_SIZE bytes). Returns 0 even if the call fails;
 * -1 without a connection.
 */
VESK_API int binder_add_btk_config(const char* config);

/**
 * Gets or sets a single-state configuration. Sends the record in either case.
 *
 * @param[in,out] record VESK_SINGLE_STATE_CONFIG_SIZE bytes; the answer replaces them if they begin
 *                       with VESK_SINGLE_STATE_GET
 * @return get: 0, or -1 on failure; set: 0 even if the call fails, or -1 without a connection
 */
VESK_API int binder_set_or_get_singleState_config(void* record);

/** Resets the configuration of a key module to its defaults. */
VESK_API void binder_reset_exkdev_default_config(int a, int b);

#ifdef __cplusplus
}
#endif

#endif
