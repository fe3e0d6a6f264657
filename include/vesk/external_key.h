/**
 * @file
 * The external-key service: the key modules that extend the device.
 *
 * Read the conventions in <vesk/vesk_client.h> first. One thing is different here: nobody is told when the
 * external-key service dies. The connection stays, and each call on it fails until
 * connect_external_key_service() has been called again with success.
 *
 * None of these functions logs; connect_external_key_service does, under the tag "ExternalKeyClient".
 */
#ifndef VESK_EXTERNAL_KEY_H
#define VESK_EXTERNAL_KEY_H

#include <stdbool.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records. Their layout is the service's, but for the beginning of the single-state configuration. */

/** Sizes of the external-key service's records in bytes. */
#define VESK_EXK_DEV_INFO_SIZE 200
#define VESK_EXK_CONFIG_SIZE 1154
#define VESK_BTK_CONFIG_SIZE 136
/** Begins with a 32-bit integer in the device's byte order, which says what to do with the record. */
#define VESK_SINGLE_STATE_CONFIG_SIZE 204

/** What a single-state configuration begins with to be fetched; with anything else it is set. */
#define VESK_SINGLE_STATE_GET 1

/* Connecting */

/**
 * Connects to the external-key service.
 *
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time, and has to be after the service has died. A successful call
 * replaces the connection; a failed one leaves the earlier connection as it was.
 *
 * @return true if connected
 */
VESK_API bool connect_external_key_service(void);

/* Key modules */

/**
 * Fetches the information on the key modules: all of it, not only the MAC address.
 *
 * @param[out] info receives a record of VESK_EXK_DEV_INFO_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure
 */
VESK_API int binder_get_exkdev_mac(void* info);

/**
 * Fetches the configuration of a key module's keys.
 *
 * @param      value  for the service to interpret
 * @param[out] config receives a record of VESK_EXK_CONFIG_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure
 */
VESK_API int binder_get_exk_config(int value, void* config);

/**
 * Adds the configuration of a key. The service's answer is dropped.
 *
 * @param config a record of VESK_BTK_CONFIG_SIZE bytes; no string
 * @return 0 once the call was made, even if it failed; -1 without a connection
 */
VESK_API int binder_add_btk_config(const char* config);

/**
 * Gets or sets a single-state configuration. The service sees the record in either case.
 *
 * @param[in,out] record VESK_SINGLE_STATE_CONFIG_SIZE bytes. If it begins with VESK_SINGLE_STATE_GET,
 * receives the service's record, or is untouched on failure. If not, it is never touched.
 * @return for getting, 0 if the record was copied and -1 on failure; for setting, 0 once the call was made,
 *         even if it failed, and -1 without a connection
 */
VESK_API int binder_set_or_get_singleState_config(void* record);

/**
 * Sets the configuration of a key module back to its defaults.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 */
VESK_API void binder_reset_exkdev_default_config(int a, int b);

#ifdef __cplusplus
}
#endif

#endif
