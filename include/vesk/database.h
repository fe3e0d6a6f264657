/**
 * @file
 * The database service: short messages and voice mail, the phonebook with its groups, the
 * blacklist and the whitelist, contact pictures, the call log, memos, the Bluetooth, XML and LDAP
 * phonebooks, and door access.
 *
 * Read the conventions in <vesk/vesk_client.h> first. Two things are different here.
 *
 * Results. A function that fetches a record returns the service's answer if the record was copied,
 * unless its comment says 0.
 *
 * Logging. connect_database_service logs under the tag "DatabaseClient". The functions that send or
 * fetch a record log a size error under the same tag, with their own name, at error priority:
 *
 *     binder_get_clog_info_by_id: param size error!
 *
 * A function that fetches a record logs it if the record in the answer has the wrong size; after a
 * failed call this is always so. A function that sends a record logs it and returns -1 if its own
 * copy of the record came out short, as on platforms where an allocation can fail silently. "Logs
 * no size error" marks the functions without this log line.
 */
#ifndef VESK_DATABASE_H
#define VESK_DATABASE_H

#include <stdbool.h>
#include <stdint.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

/** Sizes of the database service's records in bytes. */
#define VESK_VOICE_MAIL_COUNT_SIZE 8
#define VESK_PHONEBOOK_GROUP_ID_SIZE 4
#define VESK_PHONEBOOK_GROUP_SIZE 200
#define VESK_PHONEBOOK_REQUEST_SIZE 4544
#define VESK_CONTACT_SIZE 4492
#define VESK_CONTACT_PICTURE_SIZE 392
#define VESK_BLACKLIST_ENTRY_SIZE 56
#define VESK_WHITELIST_ENTRY_SIZE 60
#define VESK_CALL_LOG_ENTRY_SIZE 280
#define VESK_MEMO_SIZE 268
#define VESK_DOOR_ACCESS_SIZE 376

/* Connecting */

/**
 * Connects to the database service.
 *
 * If the service is absent, waits as long as the service manager does, about five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and the
 * callback; a failed one leaves both unchanged. The death of a replaced connection is not reported.
 *
 * @param on_service_died may be null
 * @return true if connected
 */
VESK_API bool connect_database_service(vesk_service_died_callback on_service_died);

/* Short messages */

/** Returns the number of short messages; 0 on failure. */
VESK_API int binder_get_sms_count(int value);

/** Requests the data of short messages. */
VESK_API void binder_sms_info_request(int value);

/** Sends a short message. The service defines the order of the two texts. */
VESK_API int binder_send_sms(int value, const char* first, const char* second);

/** Stores a short message as a draft. */
VESK_API void binder_store_sms_to_draft(const char* sms);

/** Marks a short message as read. */
VESK_API void binder_set_sms_read_done(int sms);

/** Deletes a short message. */
VESK_API void binder_delete_sms(int sms);

/** Deletes all short messages. */
VESK_API void binder_delete_sms_all(int value);

/* Voice mail */

/**
 * Fetches the two counters of voice mail (VESK_VOICE_MAIL_COUNT_SIZE bytes). The only sign of a
 * failure is that they are untouched; no size error is logged.
 */
VESK_API void binder_get_vsms_count(int value, uint32_t counters[2]);

/* Phonebook */

/** Requests the data of the phonebook. */
VESK_API int binder_phonebook_request(int a, int b);

/** Sends the "part of group" request to the phonebook. */
VESK_API int binder_phonebook_part_of_group_request(int value);

/** Sends the "common" request to the phonebook. */
VESK_API int binder_phonebook_common_request(int value);

/** Sends a request to the phonebook's database (VESK_PHONEBOOK_REQUEST_SIZE bytes). */
VESK_API int binder_phonebook_db_request(const void* request);

/* Groups of the phonebook */

/**
 * Fetches the identifiers of a contact's groups.
 *
 * The answer must hold exactly `count` of them. With a `count` of 0, a failed call looks like an
 * answer of -1, and logs nothing. With a negative `count` each call fails, and logs.
 *
 * @param[out] groups `count` 32-bit integers of VESK_PHONEBOOK_GROUP_ID_SIZE bytes each; may be
 *                    null if `count` is 0 or less
 */
VESK_API int binder_phonebook_get_contact_groupid(int contact, int count, void* groups);

/** Fetches a group (VESK_PHONEBOOK_GROUP_SIZE bytes). Returns 0 on success. */
VESK_API int binder_get_phonebook_groupinfo(int a, int b, void* group);

/** Removes a contact from a group. The service defines which of the numbers is which. */
VESK_API int binder_phonebook_rm_contact_from_group(int a, int b);

/** Adds a contact to a group. The service defines which of the numbers is which. */
VESK_API int binder_phonebook_add_contact_to_group(int a, int b);

/** Adds a group (VESK_PHONEBOOK_GROUP_SIZE bytes). */
VESK_API int binder_phonebook_add_new_group(const void* group);

/** Changes a group (VESK_PHONEBOOK_GROUP_SIZE bytes). */
VESK_API int binder_phonebook_update_group(const void* group);

/** Deletes a group. */
VESK_API int binder_phonebook_delete_group(int group);

/* Contacts of the phonebook */

/** Fetches a contact (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_phonebook_contact_retrieve(int a, int b, void* contact);

/** Deletes a contact. */
VESK_API int binder_phonebook_contact_delete(int a, int b);

/** Adds a contact (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_phonebook_contact_create(int value, const void* contact);

/** Changes a contact (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_phonebook_contact_update(int value, const void* contact);

/** Searches for contacts. */
VESK_API int binder_phonebook_contact_search(int value, const char* text);

/**
 * Fetches the picture record of a contact (VESK_CONTACT_PICTURE_SIZE bytes). Returns 0 on success.
 */
VESK_API int binder_phonebook_image_request(int value, void* picture);

/* Blacklist and whitelist */

/** Requests the data of the blacklist and the whitelist. */
VESK_API void binder_black_white_list_request(int value);

/** Adds an entry to the blacklist (VESK_BLACKLIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_add_blacklist(const void* entry);

/** Adds an entry to the whitelist (VESK_WHITELIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_add_whitelist(const void* entry);

/** Fetches an entry of the whitelist (VESK_WHITELIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_get_whitelist(int value, void* entry);

/** Fetches an entry of the blacklist (VESK_BLACKLIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_get_blacklist(int value, void* entry);

/** Changes an entry of the blacklist (VESK_BLACKLIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_set_blacklist(const void* entry);

/** Changes an entry of the whitelist (VESK_WHITELIST_ENTRY_SIZE bytes). */
VESK_API int binder_phonebook_contact_set_whitelist(const void* entry);

/** Deletes an entry of the blacklist. */
VESK_API int binder_phonebook_contact_delete_blacklist(int value);

/** Deletes an entry of the whitelist. */
VESK_API int binder_phonebook_contact_delete_whitelist(int value);

/** Empties the blacklist. */
VESK_API int binder_phonebook_contact_delete_all_blacklist(void);

/** Empties the whitelist. */
VESK_API int binder_phonebook_contact_delete_all_whitelist(void);

/* Call log */

/** Fetches an entry of the call log (VESK_CALL_LOG_ENTRY_SIZE bytes). */
VESK_API int binder_get_clog_info_by_id(int id, void* entry);

/** Deletes from the call log. */
VESK_API int binder_clog_delete(int a, int b);

/* Memos */

/** Returns the number of memos. */
VESK_API int binder_get_memo_num(void);

/** Changes a memo (VESK_MEMO_SIZE bytes). Logs no size error. */
VESK_API int binder_set_memo_info(const void* memo);

/** Deletes a memo. */
VESK_API int binder_del_memo(int memo);

/** Adds a memo (VESK_MEMO_SIZE bytes). Logs no size error. */
VESK_API int binder_add_memo(const void* memo);

/** Requests the data of the memos. */
VESK_API void binder_memo_info_request(void);

/** Fetches a memo (VESK_MEMO_SIZE bytes). */
VESK_API int binder_get_memo_info_by_index(int index, void* memo);

/** Requests the per-minute check of the memos. */
VESK_API void binder_check_memo_per_minute(void);

/* The phonebook of a Bluetooth device */

/** Requests the data of the Bluetooth phonebook. */
VESK_API int binder_request_bt_phonebook_data(void);

/** Fetches a contact of the Bluetooth phonebook (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_get_bt_phonebook_contact_by_id(int id, void* contact);

/* XML phonebooks */

/** Opens an XML phonebook. */
VESK_API int binder_open_xml_phonebook(int value);

/** Requests the data of an XML phonebook. */
VESK_API int binder_request_xml_phonebook_data(int a, int b);

/** Fetches a contact of the XML phonebook (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_get_xml_phonebook_contact_by_index(int index, void* contact);

/** Fetches a contact found by a search of the XML phonebook (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_get_xml_phonebook_search_contact_by_index(int index, void* contact);

/* LDAP phonebooks */

/** Opens an LDAP phonebook. */
VESK_API int binder_open_ldap_phonebook(int value);

/** Requests the data of an LDAP phonebook. */
VESK_API int binder_request_ldap_phonebook_data(int a, int b);

/** Fetches a contact of the LDAP phonebook (VESK_CONTACT_SIZE bytes). */
VESK_API int binder_get_ldap_phonebook_contact_by_index(int index, void* contact);

/** Searches for contacts in the LDAP phonebook. */
VESK_API int binder_ldap_contact_search_request(const char* text);

/* Door access */

/** Initialises the door-access records. */
VESK_API int binder_door_access_init(void);

/** Requests the data of the door-access records. */
VESK_API int binder_door_access_data_request(void);

/** Fetches a door-access record (VESK_DOOR_ACCESS_SIZE bytes). */
VESK_API int binder_get_door_access_by_id(int id, void* access);

/** Changes a door-access record (VESK_DOOR_ACCESS_SIZE bytes). Logs no size error. */
VESK_API int binder_set_door_access_info(const void* access);

/** Adds a door-access record (VESK_DOOR_ACCESS_SIZE bytes). Logs no size error. */
VESK_API int binder_add_door_access(const void* access);

/** Deletes a door-access record. */
VESK_API int binder_del_door_access_by_id(int id);

/** Deletes all door-access records. */
VESK_API int binder_del_all_door_access(void);

/**
 * Checks door access, and fetches a record (VESK_DOOR_ACCESS_SIZE bytes). Returns 0 on success.
 * Logs no size error.
 */
VESK_API int binderCheckDoorAccessInfo(const char* text, int value, void* access);

#ifdef __cplusplus
}
#endif

#endif
