/**
 * @file
 * Provisioning and management: TR-069, automatic provisioning, SPNP, factory reset.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_PROVISIONING_H
#define VESK_CONFIG_PROVISIONING_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_SPNP_CONFIG_SIZE 584
#define VESK_TR069_SETING_CONFIG_SIZE 616
#define VESK_AUTO_SPS_CONFIG_SIZE 648

/* Automatic provisioning */

/** Fetches the settings of SPNP (VESK_SPNP_CONFIG_SIZE bytes). */
VESK_API int binder_get_spnp_config(void* config);

/** Sets the settings of SPNP (VESK_SPNP_CONFIG_SIZE bytes). */
VESK_API int binder_set_spnp_config(const char* config);

/** Fetches the settings of automatic provisioning (VESK_AUTO_SPS_CONFIG_SIZE bytes). */
VESK_API int binder_get_auto_sps_config(void* config);

/** Sets the settings of automatic provisioning (VESK_AUTO_SPS_CONFIG_SIZE bytes). */
VESK_API int binder_set_auto_sps_config(const char* config);

/* Management */

/** Returns the TR-069 type; 0 on failure. */
VESK_API int binder_get_tr069_type(int value);

/** Fetches the settings of TR-069 (VESK_TR069_SETING_CONFIG_SIZE bytes). */
VESK_API int binder_get_tr069_seting_config(void* config);

/** Sets the settings of TR-069 (VESK_TR069_SETING_CONFIG_SIZE bytes). */
VESK_API int binder_set_tr069_seting_config(const char* config);

/** Resets the device to its factory settings. */
VESK_API int binder_factory_reset(int value);

#ifdef __cplusplus
}
#endif

#endif
