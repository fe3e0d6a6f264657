/**
 * @file
 * Status, model and battery of the device, hotel, phonebook settings, base64.
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

/** Fetches the status of the telephone (VESK_PHONE_STATUS_SIZE bytes). */
VESK_API int binder_get_phone_status(void* status);

/** Fetches the version of the boot loader. */
VESK_API int binder_get_phone_uboot(char* buffer, int size);

/** Fetches the vendor information. */
VESK_API int binder_get_vendor_info(char* buffer, int size);

/** Returns the status of the battery, 1 or 0; 0 on failure. */
VESK_API int binder_get_battery_status(void);

/** Returns the "electr" value. */
VESK_API int binder_get_electr_value(void);

/** Clears the unread entries of the call log. */
VESK_API int binder_clean_unread_clog(void);

/** Updates a directory of files. */
VESK_API void binder_update_file_directory(int value);

/* Hotel */

/** Fetches the general information on the hotel (VESK_HOTEL_GENERAL_INFO_SIZE bytes). */
VESK_API int binder_get_hotel_general_info(void* info, int value);

/** Fetches the hotel's own information (VESK_HOTEL_CUSTOM_INFO_SIZE bytes). */
VESK_API int binder_get_hotel_custom_info(void* info);

/* State, phonebooks and conversion */

/** Sizes of the records in bytes. */
#define VESK_XML_PBOOK_CONFIG_SIZE 192
#define VESK_LDAP_PBOOK_CONFIG_SIZE 196
#define VESK_LOCAL_CONFIG_SIZE 96

/** Returns the model of the device. */
VESK_API int binder_get_device_model(void);

/** Returns the state of the phone; 0 on failure. */
VESK_API int binder_get_phone_state(void);

/** Generates a key. Returns -1 without a connection, 0 on any other failure. */
VESK_API int binder_generate_key(int a, int b, int flag1, int flag2);

/** Fetches the data of this device (VESK_LOCAL_CONFIG_SIZE bytes). */
VESK_API int binder_get_local_config(void* out);

/** Returns the number of network phonebooks; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_net_phonebook_num(void);

/** Fetches the settings of an XML phonebook (VESK_XML_PBOOK_CONFIG_SIZE bytes). */
VESK_API int binder_get_xml_pbook_config_by_index(int index, void* out);

/** Fetches the settings of an LDAP phonebook (VESK_LDAP_PBOOK_CONFIG_SIZE bytes). */
VESK_API int binder_get_ldap_pbook_config_by_index(int index, void* out);

/**
 * Converts the text `src` to base64. Returns 0 even if the call fails; -1 without a connection.
 *
 * @param[out] dst receives the whole text and its terminating zero, without a bound: base64 takes a
 *                 third more bytes than the source, plus padding. "" if the call fails; untouched
 *                 without a connection
 * @param      b   sent to the service; not the size of `dst`
 */
VESK_API int binder_src_to_B64(const char* src, int a, char* dst, int b);

#ifdef __cplusplus
}
#endif

#endif
