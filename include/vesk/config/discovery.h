/**
 * @file
 * Other devices: discovery (QDDP), names, credentials, QCMS.
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

/** Fetches the settings of automatic discovery (VESK_AUTO_DISCOVERY_SIZE bytes). */
VESK_API int binder_get_auto_discovery_config(void* out);

/** Sets the settings of automatic discovery (VESK_AUTO_DISCOVERY_SIZE bytes). */
VESK_API int binder_set_auto_discovery_config(const void* record);

/** Starts a scan for devices (QDDP); binder_get_qddp_scan_result() fetches the result. */
VESK_API int binder_qddp_send_scan(void);

/**
 * Sets the settings of a device (QDDP): `device` has VESK_QDDP_DEVICE_SIZE bytes, `config` has
 * VESK_QDDP_CONFIG_SIZE bytes.
 */
VESK_API int binder_set_qddp_device_config(const void* device, const void* config);

/**
 * Fetches the settings of a device (QDDP): `device` has VESK_QDDP_DEVICE_SIZE bytes, `request` and
 * `out` have VESK_QDDP_CONFIG_SIZE bytes.
 */
VESK_API int binder_get_qddp_device_config(const void* device, const void* request, void* out);

/** Runs QDPS manually. */
VESK_API void binder_qdps_manual_run(int a, int b);

/** Scans for devices. */
VESK_API void binder_scan_device(void);

/* Devices by IP address */

/** Size of the record in bytes. */
#define VESK_DEVICE_NAME_SIZE 88

/**
 * Fetches the name of a device.
 *
 * @param[in,out] buf VESK_DEVICE_NAME_SIZE bytes that start with the IP address of the device as a
 *                    text; the answer replaces the whole record
 */
VESK_API int binder_get_device_name_by_ip(char* buf);

/** Offset of the name in the record of binder_set_device_name_by_ip(). */
#define VESK_DEVICE_NAME_OFFSET 24

/**
 * Names a device. Returns 0 even if the call fails; -1 without a connection.
 *
 * @param rec two texts: the IP address at byte 0, the name at byte VESK_DEVICE_NAME_OFFSET
 */
VESK_API int binder_set_device_name_by_ip(const void* rec);

/** Sends a reboot request to another device. */
VESK_API int binder_send_reboot_to_target(const char* target);

/**
 * Fetches the user name for a device. Copies at most `size` - 1 bytes and fills the rest of the
 * buffer with zeros.
 *
 * @return 0; -1 without a connection; -2 and an untouched buffer if the answer is empty or the call
 *         fails
 */
VESK_API int binderGetUsernameByIp(const char* ip, char* dst, int size);

/**
 * Fetches the password for a device. Copies at most `size` - 1 bytes and fills the rest of the
 * buffer with zeros.
 *
 * @return 0; -1 without a connection; -2 and an untouched buffer if the answer is empty or the call
 *         fails
 */
VESK_API int binderGetPasswordByIp(const char* ip, char* dst, int size);

/* QCMS */

/** Size of the buffer for a link in bytes. */
#define VESK_QCMS_DOOR_OPEN_URL_SIZE 512

/**
 * Returns 1 if the type of the QCMS platform is 2 and its URL is not empty, else 0; 0 on failure.
 * Requests the URL only if the type is 2.
 */
VESK_API int binderIsQcmsEnabled(void);

/**
 * Fetches the link that opens the door of a QCMS monitor; the service builds it from four texts.
 *
 * @param[out] dst VESK_QCMS_DOOR_OPEN_URL_SIZE bytes; the link, cut to fit, and zeros fill all of
 *                 them
 * @return 0; -1 and an untouched buffer if the answer is empty or on failure
 */
VESK_API int binderGenQcmsMonitorDoorOpenUrl(const char* text1, const char* text2, const char* text3,
                                             const char* text4, char* dst);

#ifdef __cplusplus
}
#endif

#endif
