/**
 * @file
 * Finding other devices and talking to them: discovery (QDDP), names, credentials, QCMS.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DISCOVERY_H
#define VESK_CONFIG_DISCOVERY_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Discovery */

/** Sizes of the records in bytes. */
#define VESK_AUTO_DISCOVERY_SIZE 129
#define VESK_QDDP_DEVICE_SIZE 164
#define VESK_QDDP_CONFIG_SIZE 1024

/**
 * Fetches the settings of automatic discovery.
 *
 * @param[out] out receives a record of VESK_AUTO_DISCOVERY_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_auto_discovery_config(void* out);

/**
 * Sets the settings of automatic discovery.
 *
 * @param record a record of VESK_AUTO_DISCOVERY_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_auto_discovery_config(const void* record);

/**
 * Starts a scan for devices (QDDP). binder_get_qddp_scan_result() in <vesk/config/lists.h> fetches what it
 * finds.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_qddp_send_scan(void);

/**
 * Sets the settings of a device that was found.
 *
 * @param device the device: a record of VESK_QDDP_DEVICE_SIZE bytes
 * @param config its settings: a record of VESK_QDDP_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_qddp_device_config(const void* device, const void* config);

/**
 * Fetches the settings of a device that was found.
 *
 * @param      device  the device: a record of VESK_QDDP_DEVICE_SIZE bytes
 * @param      request what is asked for: a record of VESK_QDDP_CONFIG_SIZE bytes
 * @param[out] out     receives a record of VESK_QDDP_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_qddp_device_config(const void* device, const void* request, void* out);

/**
 * Runs QDPS by hand.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 */
VESK_API void binder_qdps_manual_run(int a, int b);

/** Scans for devices. */
VESK_API void binder_scan_device(void);

/* Devices by IP address */

/** Size of the record in bytes. */
#define VESK_DEVICE_NAME_SIZE 88

/**
 * Fetches the name that a device has been given.
 *
 * @param[in,out] buf VESK_DEVICE_NAME_SIZE bytes. They start with the IP address of the device, a text that
 * ends with a zero, and are replaced by the record that comes back; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_device_name_by_ip(char* buf);

/** Where the name starts in the record of binder_set_device_name_by_ip(). */
#define VESK_DEVICE_NAME_OFFSET 24

/**
 * Gives a device a name.
 *
 * @param rec two texts, each ending with a zero: the IP address at byte 0, the name at byte
 *            VESK_DEVICE_NAME_OFFSET
 * @return 0 once the call was made, whatever came of it; -1 without a connection
 */
VESK_API int binder_set_device_name_by_ip(const void* rec);

/**
 * Has another device reboot.
 *
 * @param target which one, for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_send_reboot_to_target(const char* target);

/**
 * Fetches the user name for a device.
 *
 * @param      ip   the IP address of the device
 * @param[out] dst  receives the user name: at most size - 1 bytes; the rest of the buffer is filled with
 *                  zeros. Untouched if there is none
 * @param      size the size of the buffer in bytes
 * @return 0; -1 without a connection; -2 if there is no user name or the call failed
 */
VESK_API int binderGetUsernameByIp(const char* ip, char* dst, int size);

/**
 * Fetches the password for a device.
 *
 * @param      ip   the IP address of the device
 * @param[out] dst  receives the password: at most size - 1 bytes; the rest of the buffer is filled with
 *                  zeros. Untouched if there is none
 * @param      size the size of the buffer in bytes
 * @return 0; -1 without a connection; -2 if there is no password or the call failed
 */
VESK_API int binderGetPasswordByIp(const char* ip, char* dst, int size);

/* QCMS */

/** Size of the buffer for a link in bytes. */
#define VESK_QCMS_DOOR_OPEN_URL_SIZE 512

/**
 * Asks whether the device works with QCMS: whether its platform is of that type and has a URL. Sends a second
 * request only if the type is right.
 *
 * @return 1 if it does, 0 if not; 0 on failure
 */
VESK_API int binderIsQcmsEnabled(void);

/**
 * Has the service build the link that opens the door of a monitor.
 *
 * @param      text1 for the service to interpret
 * @param      text2 for the service to interpret
 * @param      text3 for the service to interpret
 * @param      text4 for the service to interpret
 * @param[out] dst   VESK_QCMS_DOOR_OPEN_URL_SIZE bytes, all of which are written: the link,
 *                   cut to fit, and zeros; untouched on failure
 * @return 0; -1 on failure, or if there is no link
 */
VESK_API int binderGenQcmsMonitorDoorOpenUrl(const char* text1, const char* text2, const char* text3,
                                             const char* text4, char* dst);

#ifdef __cplusplus
}
#endif

#endif
