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

/* State, phonebooks and conversions */

/** Sizes of the records in bytes. */
#define VESK_XML_PBOOK_CONFIG_SIZE 192
#define VESK_LDAP_PBOOK_CONFIG_SIZE 196
#define VESK_LOCAL_CONFIG_SIZE 96

/**
 * Asks for the model of the device.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_device_model(void);

/**
 * Asks for the state of the phone.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_phone_state(void);

/**
 * Has the service generate a key.
 *
 * @param a     for the service to interpret
 * @param b     for the service to interpret
 * @param flag1 0 for false, anything else for true
 * @param flag2 0 for false, anything else for true
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_generate_key(int a, int b, int flag1, int flag2);

/**
 * Fetches the data of this device.
 *
 * @param[out] out receives a record of VESK_LOCAL_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_local_config(void* out);

/**
 * Asks for the number of network phonebooks.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_net_phonebook_num(void);

/**
 * Fetches the settings of an XML phonebook.
 *
 * @param      index which of them
 * @param[out] out   receives a record of VESK_XML_PBOOK_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_xml_pbook_config_by_index(int index, void* out);

/**
 * Fetches the settings of an LDAP phonebook.
 *
 * @param      index which of them
 * @param[out] out   receives a record of VESK_LDAP_PBOOK_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_ldap_pbook_config_by_index(int index, void* out);

/**
 * Has the service convert a text to base64.
 *
 * @param      src the text
 * @param      a   for the service to interpret
 * @param[out] dst receives the converted text and its terminating zero, whole, however long: a third more
 *                 than the source, and padding. After a failed call it is empty; without a connection it
 *                 is untouched
 * @param      b   for the service to interpret; not the size of dst
 * @return 0, also after a failed call; -1 without a connection
 */
VESK_API int binder_src_to_B64(const char* src, int a, char* dst, int b);

#ifdef __cplusplus
}
#endif

#endif
