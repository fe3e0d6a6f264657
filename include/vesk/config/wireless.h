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

/** Returns whether Wi-Fi is on; 0 on failure. */
VESK_API int binder_get_wlan_enable_config(void);

/** Switches Wi-Fi on or off. Returns 0 on failure. */
VESK_API int binder_set_wlan_enable_config(int enabled);

/** Returns the Wi-Fi setting. */
VESK_API int binder_get_wifi_enable(void);

/** Sets the Wi-Fi setting. */
VESK_API int binder_set_wifi_enable(int enable);

/** Fetches the settings of the access point (VESK_AP_CONFIG_SIZE bytes). */
VESK_API int binder_get_ap_config(void* config);

/** Sets the settings of the access point (VESK_AP_CONFIG_SIZE bytes). */
VESK_API int binder_set_ap_config(const char* config);

/* Bluetooth */

/** Returns whether Bluetooth is on; 0 on failure. */
VESK_API int binder_get_bluetooth_enable_config(void);

/** Switches Bluetooth on or off. Returns 0 on failure. */
VESK_API int binder_set_bluetooth_enable_config(int enabled);

/** Fetches the name of the Bluetooth adapter. */
VESK_API void binder_get_bluetooth_adapter_name_config(char* buffer, int size);

/** Sets the name of the Bluetooth adapter. */
VESK_API int binder_set_bluetooth_adapter_name_config(const char* name);

/** Fetches the address of the Bluetooth device connected last. */
VESK_API void binder_get_bluetooth_last_connected_addr(char* buffer, int size);

/** Sets the address of the Bluetooth device connected last. */
VESK_API int binder_set_bluetooth_last_connected_addr(const char* address);

/* Access point events */

/** Size of the record in bytes. */
#define VESK_AP_USERINFO_SIZE 256

/** Processes user information for an access point (VESK_AP_USERINFO_SIZE bytes). */
VESK_API int binder_ap_userinfo_event_process(const void* record, int flag);

/** Processes a file name for an access point. */
VESK_API int binder_ap_filename_event_process(const char* filename, int flag);

/** Refreshes the input timer of the access point. */
VESK_API int binder_ap_input_timer_refresh(void);

/* Wireless keys (WK) */

/** Size of the record in bytes. */
#define VESK_WK_INFO_SIZE 272

/** Returns the number of wireless keys. */
VESK_API int binder_get_wk_num(void);

/** Fetches the information on a wireless key (VESK_WK_INFO_SIZE bytes). */
VESK_API int binder_get_wk_info(int index, void* out);

/** Sets the information on a wireless key (VESK_WK_INFO_SIZE bytes). */
VESK_API int binder_set_wk_info(int index, const void* record);

/** Starts a scan for wireless keys. */
VESK_API int binder_enter_wk_scan(int value);

/** Sets the configuration of a wireless key. */
VESK_API int binder_set_wk_config(int a, int b);

/** Stops the ringing of wireless keys. */
VESK_API int binder_wk_stop_ring(void);

/**
 * Fetches the ring time of wireless keys as a text. Always returns -1: only the text shows success.
 */
VESK_API int binder_get_wk_ring_time(char* dst, int size);

#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
/** Returns whether the Wi-Fi log is on; 0 on failure. For programs in C++ only. */
VESK_API int binder_get_wlan_log_enable_config();
#endif

#endif
