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

/** Fetches the settings of NAT share (VESK_NAT_SHARE_CONFIG_SIZE bytes). */
VESK_API int binder_get_nat_share_config(void* out);

/** Sets the settings of NAT share (VESK_NAT_SHARE_CONFIG_SIZE bytes). */
VESK_API int binder_set_nat_share_config(const void* record);

/* Network group */

/**
 * Fetches the key of the network group. Copies at most `size` - 1 bytes and fills the rest of the
 * buffer with zeros.
 *
 * @return 0; -1 and an untouched buffer if the answer is empty or on failure
 */
VESK_API int binder_get_nat_share_network_group_key(char* dst, int size);

/** Sets the key of the network group. */
VESK_API int binder_set_nat_share_network_group_key(const char* key);

/** Returns the work mode of the network group; 0 on failure. */
VESK_API int binder_get_nat_share_network_group_work_mode(void);

/** Sets the work mode of the network group. */
VESK_API int binder_set_nat_share_network_group_work_mode(int mode);

#ifdef __cplusplus
}
#endif

#endif
