/**
 * @file
 * The device: its status, model, battery and the information on it.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DEVICE_H
#define VESK_CONFIG_DEVICE_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_PHONE_STATUS_SIZE 388
#define VESK_HOTEL_GENERAL_INFO_SIZE 520
#define VESK_HOTEL_CUSTOM_INFO_SIZE 1036

/* Status */

/**
 * Fetches the status of the telephone.
 *
 * @param[out] status receives a record of VESK_PHONE_STATUS_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_phone_status(void* status);

/**
 * Fetches the version of the boot loader.
 *
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_get_phone_uboot(char* buffer, int size);

/**
 * Fetches the information on the vendor.
 *
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_get_vendor_info(char* buffer, int size);

/**
 * Asks for the status of the battery.
 *
 * @return the service's answer, 0 or 1; 0 on failure
 */
VESK_API int binder_get_battery_status(void);

/**
 * Asks for the charge of the battery, as the service's value for it.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_electr_value(void);

/**
 * Has the service forget what is unread in the call log.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_clean_unread_clog(void);

/**
 * Has the service update a directory of files.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_update_file_directory(int value);

/* Hotel */

/**
 * Fetches the general information on the hotel.
 *
 * @param[out] info  receives a record of VESK_HOTEL_GENERAL_INFO_SIZE bytes
 * @param      value for the service to interpret
 * @return 0; -1 on failure
 */
VESK_API int binder_get_hotel_general_info(void* info, int value);

/**
 * Fetches the hotel's own information.
 *
 * @param[out] info receives a record of VESK_HOTEL_CUSTOM_INFO_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_hotel_custom_info(void* info);

#ifdef __cplusplus
}
#endif

#endif
