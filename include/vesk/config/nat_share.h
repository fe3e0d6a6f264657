/**
 * @file
 * NAT share.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_NAT_SHARE_H
#define VESK_CONFIG_NAT_SHARE_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Settings */

/** Size of the record in bytes. */
#define VESK_NAT_SHARE_CONFIG_SIZE 68

/**
 * Fetches the settings of NAT share.
 *
 * @param[out] out receives a record of VESK_NAT_SHARE_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_nat_share_config(void* out);

/**
 * Sets the settings of NAT share.
 *
 * @param record a record of VESK_NAT_SHARE_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_nat_share_config(const void* record);

/* Network group */

/**
 * Fetches the key of the network group.
 *
 * @param[out] dst  receives the key: at most size - 1 bytes; the rest of the buffer is filled with zeros.
 *                  Untouched if there is none or the call failed
 * @param      size the size of the buffer in bytes
 * @return 0; -1 on failure, or if there is no key
 */
VESK_API int binder_get_nat_share_network_group_key(char* dst, int size);

/**
 * Sets the key of the network group.
 *
 * @param key the key
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_nat_share_network_group_key(const char* key);

/**
 * Asks for the mode in which the network group works.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_nat_share_network_group_work_mode(void);

/**
 * Sets the mode in which the network group works.
 *
 * @param mode for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_nat_share_network_group_work_mode(int mode);

#ifdef __cplusplus
}
#endif

#endif
