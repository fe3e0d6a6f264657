/**
 * @file
 * Checking for firmware and upgrading.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_FIRMWARE_H
#define VESK_CONFIG_FIRMWARE_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Checking and upgrading */

/** Sizes of the records in bytes. */
#define VESK_FWCHECK_RESULT_SIZE 1192
#define VESK_FW_UPGRADE_CONFIG_SIZE 33

/**
 * Requests a check for new firmware.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_fwcheck_request(int value);

/**
 * Fetches the result of the last check.
 *
 * @param[out] out receives a record of VESK_FWCHECK_RESULT_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_fwcheck_result(void* out);

/** Requests an upgrade of the firmware. */
VESK_API void binder_firmware_upgrade_request(void);

/**
 * Fetches the settings of upgrades.
 *
 * @param[out] out receives a record of VESK_FW_UPGRADE_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_fw_upgrade_config(void* out);

/**
 * Sets the settings of upgrades.
 *
 * @param record a record of VESK_FW_UPGRADE_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_fw_upgrade_config(const void* record);

/**
 * Has the core reboot.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_core_reboot(int value);

/**
 * Asks whether the software is that of a kit.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_software_is_kit(void);

#ifdef __cplusplus
}
#endif

#endif
