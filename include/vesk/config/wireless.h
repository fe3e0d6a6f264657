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
 * Asks for the Wi-Fi setting.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_wifi_enable(void);

/**
 * Sets the Wi-Fi setting.
 *
 * @param enable for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_wifi_enable(int enable);

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

/* Access point events */

/** Size of the record in bytes. */
#define VESK_AP_USERINFO_SIZE 256

/**
 * Has the service process what a user entered for an access point.
 *
 * @param record the user information: a record of VESK_AP_USERINFO_SIZE bytes
 * @param flag   0 for false, anything else for true
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_ap_userinfo_event_process(const void* record, int flag);

/**
 * Has the service process a file name for an access point.
 *
 * @param filename the name
 * @param flag     0 for false, anything else for true
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_ap_filename_event_process(const char* filename, int flag);

/**
 * Refreshes the timer of input for an access point.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_ap_input_timer_refresh(void);

/* Wireless keys (WK) */

/** Size of the record in bytes. */
#define VESK_WK_INFO_SIZE 272

/**
 * Asks how many wireless keys there are.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_wk_num(void);

/**
 * Fetches the information on a wireless key.
 *
 * @param      index which of them
 * @param[out] out   receives a record of VESK_WK_INFO_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_wk_info(int index, void* out);

/**
 * Sets the information on a wireless key.
 *
 * @param index  which of them
 * @param record a record of VESK_WK_INFO_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_wk_info(int index, const void* record);

/**
 * Starts scanning for wireless keys, to pair them.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_enter_wk_scan(int value);

/**
 * Sets how a wireless key works.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_wk_config(int a, int b);

/**
 * Stops the ringing of wireless keys.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_wk_stop_ring(void);

/**
 * Fetches the ring time of wireless keys. Success shows only in the text: prepare the buffer.
 *
 * @param[out] dst  receives the time as text, cut to fit
 * @param      size the size of the buffer in bytes
 * @return -1 always, even if the text was written
 */
VESK_API int binder_get_wk_ring_time(char* dst, int size);

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
