/**
 * @file
 * Wi-Fi, Bluetooth, access points, wireless keys (WK).
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_WIRELESS_H
#define VESK_CONFIG_WIRELESS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Size of the record in bytes. */
#define VESK_AP_CONFIG_SIZE 112

/* Wi-Fi */

/**
 * Asks whether Wi-Fi is on.
 *
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_get_wlan_enable_config(void);

/**
 * Switches Wi-Fi on or off.
 *
 * @param enabled 0 for off, anything else for on
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_wlan_enable_config(int enabled);

/**
 * Fetches the settings of the access point.
 *
 * @param[out] config receives a record of VESK_AP_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_ap_config(void* config);

/**
 * Sets the settings of the access point.
 *
 * @param config a record of VESK_AP_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_ap_config(const char* config);

/* Bluetooth */

/**
 * Asks whether Bluetooth is on.
 *
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_get_bluetooth_enable_config(void);

/**
 * Switches Bluetooth on or off.
 *
 * @param enabled 0 for off, anything else for on
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_bluetooth_enable_config(int enabled);

/**
 * Fetches the name of the adapter.
 *
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 */
VESK_API void binder_get_bluetooth_adapter_name_config(char* buffer, int size);

/**
 * Sets the name of the adapter.
 *
 * @param name the name
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_bluetooth_adapter_name_config(const char* name);

/**
 * Fetches the address of the device that was connected last.
 *
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 */
VESK_API void binder_get_bluetooth_last_connected_addr(char* buffer, int size);

/**
 * Sets the address of the device that was connected last.
 *
 * @param address the address
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_bluetooth_last_connected_addr(const char* address);

#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
/**
 * Asks whether the log of Wi-Fi is on. For programs in C++ only.
 *
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_get_wlan_log_enable_config();
#endif

#endif
