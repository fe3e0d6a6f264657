/**
 * @file
 * Firmware check and upgrade, reboot.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_FIRMWARE_H
#define VESK_CONFIG_FIRMWARE_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Check and upgrade */

/** Sizes of the records in bytes. */
#define VESK_FWCHECK_RESULT_SIZE 1192
#define VESK_FW_UPGRADE_CONFIG_SIZE 33

/** Requests a firmware check. */
VESK_API int binder_fwcheck_request(int value);

/** Fetches the result of the firmware check (VESK_FWCHECK_RESULT_SIZE bytes). */
VESK_API int binder_get_fwcheck_result(void* out);

/** Requests an upgrade of the firmware. */
VESK_API void binder_firmware_upgrade_request(void);

/** Fetches the settings of upgrades (VESK_FW_UPGRADE_CONFIG_SIZE bytes). */
VESK_API int binder_get_fw_upgrade_config(void* out);

/** Sets the settings of upgrades (VESK_FW_UPGRADE_CONFIG_SIZE bytes). */
VESK_API int binder_set_fw_upgrade_config(const void* record);

/** Reboots the core. */
VESK_API int binder_set_core_reboot(int value);

/** Returns whether the software is that of a kit. */
VESK_API int binder_get_software_is_kit(void);

#ifdef __cplusplus
}
#endif

#endif
