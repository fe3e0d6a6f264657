/**
 * @file
 * The database service: short messages and voice mail, the phonebook with its groups, the blacklist and the
 * whitelist, contact pictures, the call log, memos, the Bluetooth, XML and LDAP phonebooks, and door access.
 *
 * Read the conventions in <vesk/vesk_client.h> first. connect_database_service logs under the tag
 * "DatabaseClient". So do, as an error, the functions that take or fetch a record whose size they check:
 *
 *     binder_get_clog_info_by_id: param size error!
 *
 * and likewise with their own name. A function that fetches a record logs this if what came has not the
 * record's size, which is so after every failed call. One that takes a record logs it if its own copy has
 * come out short, as it does on platforms where memory can run out quietly. "Logs nothing" in a function's
 * comment means that it does not check. Without a connection nothing is logged.
 */
#ifndef VESK_DATABASE_H
#define VESK_DATABASE_H

#include <stdbool.h>
#include <stdint.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records. Their layout is the service's. */

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
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and the callback; a
 * failed one leaves both as they were.
 *
 * A connection that was replaced in this way is not reported to on_service_died.
 *
 * @param on_service_died the service has died, and the connection with it; may be null
 * @return true if connected
 */
VESK_API bool connect_database_service(vesk_service_died_callback on_service_died);

/* Short messages */

/**
 * Asks how many short messages there are.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_sms_count(int value);

/**
 * Asks for the data of short messages.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_sms_info_request(int value);

/**
 * Sends a short message.
 *
 * @param value  for the service to interpret
 * @param first  what goes first, the number or the message, is the service's to say
 * @param second the other one
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_send_sms(int value, const char* first, const char* second);

/**
 * Keeps a short message as a draft.
 *
 * @param sms the message
 */
VESK_API void binder_store_sms_to_draft(const char* sms);

/**
 * Marks a short message as read.
 *
 * @param sms the message, by the number that the service knows it by
 */
VESK_API void binder_set_sms_read_done(int sms);

/**
 * Deletes a short message.
 *
 * @param sms the message, by the number that the service knows it by
 */
VESK_API void binder_delete_sms(int sms);

/**
 * Deletes all short messages.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_delete_sms_all(int value);

/* Voice mail */

/**
 * Fetches the counters of voice mail. To see whether that failed, prepare the buffer. Logs nothing.
 *
 * @param      value    for the service to interpret
 * @param[out] counters receives the two counters, VESK_VOICE_MAIL_COUNT_SIZE bytes; untouched on failure
 */
VESK_API void binder_get_vsms_count(int value, uint32_t counters[2]);

/* Phonebook */

/**
 * Asks for the data of the phonebook.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_request(int a, int b);

/**
 * Asks for a part of the phonebook's groups.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_part_of_group_request(int value);

/**
 * Makes a common request to the phonebook.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_common_request(int value);

/**
 * Makes a request to the phonebook's database.
 *
 * @param request a record of VESK_PHONEBOOK_REQUEST_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_db_request(const void* request);

/* Groups of the phonebook */

/**
 * Fetches the groups that a contact belongs to.
 *
 * Nothing but exactly `count` groups is accepted. With a `count` of 0 a failed call can't be told from an
 * answer of -1 and no groups, and is not logged either; with a negative `count` every answer is refused, and
 * logged.
 *
 * @param      contact the contact, by the number that the service knows it by
 * @param      count   how many groups to fetch; the service sees it, too
 * @param[out] groups  receives `count` times VESK_PHONEBOOK_GROUP_ID_SIZE bytes, the groups' numbers as
 *                     32-bit integers; untouched on failure; may be null if `count` is 0 or less
 * @return the service's answer, if the groups were copied; -1 on failure
 */
VESK_API int binder_phonebook_get_contact_groupid(int contact, int count, void* groups);

/**
 * Fetches a group.
 *
 * @param      a     for the service to interpret
 * @param      b     for the service to interpret
 * @param[out] group receives a record of VESK_PHONEBOOK_GROUP_SIZE bytes; untouched on failure
 * @return 0 if the group was copied; -1 on failure
 */
VESK_API int binder_get_phonebook_groupinfo(int a, int b, void* group);

/**
 * Removes a contact from a group. Which of the numbers is the contact's and which the group's is the
 * service's to say.
 *
 * @param a the one
 * @param b the other
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_rm_contact_from_group(int a, int b);

/**
 * Adds a contact to a group. Which of the numbers is the contact's and which the group's is the service's to
 * say.
 *
 * @param a the one
 * @param b the other
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_add_contact_to_group(int a, int b);

/**
 * Adds a new group.
 *
 * @param group a record of VESK_PHONEBOOK_GROUP_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_add_new_group(const void* group);

/**
 * Changes a group.
 *
 * @param group a record of VESK_PHONEBOOK_GROUP_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_update_group(const void* group);

/**
 * Deletes a group.
 *
 * @param group the group, by the number that the service knows it by
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_delete_group(int group);

/* Contacts of the phonebook */

/**
 * Fetches a contact.
 *
 * @param      a       for the service to interpret
 * @param      b       for the service to interpret
 * @param[out] contact receives a record of VESK_CONTACT_SIZE bytes; untouched on failure
 * @return the service's answer, if the contact was copied; -1 on failure
 */
VESK_API int binder_phonebook_contact_retrieve(int a, int b, void* contact);

/**
 * Deletes a contact.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_delete(int a, int b);

/**
 * Adds a new contact.
 *
 * @param value   for the service to interpret
 * @param contact a record of VESK_CONTACT_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_create(int value, const void* contact);

/**
 * Changes a contact.
 *
 * @param value   for the service to interpret
 * @param contact a record of VESK_CONTACT_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_update(int value, const void* contact);

/**
 * Searches for contacts.
 *
 * @param value for the service to interpret
 * @param text  what to search for
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_search(int value, const char* text);

/**
 * Fetches the picture of a contact.
 *
 * @param      value   for the service to interpret
 * @param[out] picture receives a record of VESK_CONTACT_PICTURE_SIZE bytes; untouched on failure
 * @return 0 if the picture was copied; -1 on failure
 */
VESK_API int binder_phonebook_image_request(int value, void* picture);

/* Blacklist and whitelist */

/**
 * Asks for the data of the lists.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_black_white_list_request(int value);

/**
 * Adds an entry to the blacklist.
 *
 * @param entry a record of VESK_BLACKLIST_ENTRY_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_add_blacklist(const void* entry);

/**
 * Adds an entry to the whitelist.
 *
 * @param entry a record of VESK_WHITELIST_ENTRY_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_add_whitelist(const void* entry);

/**
 * Fetches an entry of the whitelist.
 *
 * @param      value for the service to interpret
 * @param[out] entry receives a record of VESK_WHITELIST_ENTRY_SIZE bytes; untouched on failure
 * @return the service's answer, if the entry was copied; -1 on failure
 */
VESK_API int binder_phonebook_contact_get_whitelist(int value, void* entry);

/**
 * Fetches an entry of the blacklist.
 *
 * @param      value for the service to interpret
 * @param[out] entry receives a record of VESK_BLACKLIST_ENTRY_SIZE bytes; untouched on failure
 * @return the service's answer, if the entry was copied; -1 on failure
 */
VESK_API int binder_phonebook_contact_get_blacklist(int value, void* entry);

/**
 * Changes an entry of the blacklist.
 *
 * @param entry a record of VESK_BLACKLIST_ENTRY_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_set_blacklist(const void* entry);

/**
 * Changes an entry of the whitelist.
 *
 * @param entry a record of VESK_WHITELIST_ENTRY_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_set_whitelist(const void* entry);

/**
 * Deletes an entry of the blacklist.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_delete_blacklist(int value);

/**
 * Deletes an entry of the whitelist.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_delete_whitelist(int value);

/**
 * Empties the blacklist.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_delete_all_blacklist(void);

/**
 * Empties the whitelist.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_phonebook_contact_delete_all_whitelist(void);

/* Call log */

/**
 * Fetches an entry of the call log.
 *
 * @param      id    the entry, by the number that the service knows it by
 * @param[out] entry receives a record of VESK_CALL_LOG_ENTRY_SIZE bytes; untouched on failure
 * @return the service's answer, if the entry was copied; -1 on failure
 */
VESK_API int binder_get_clog_info_by_id(int id, void* entry);

/**
 * Deletes from the call log.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_clog_delete(int a, int b);

/* Memos */

/**
 * Asks how many memos there are. Only a successful call's answer is a number of memos: what comes after a
 * failed one is -1 here, and not to be relied upon.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_memo_num(void);

/**
 * Changes a memo. Logs nothing.
 *
 * @param memo a record of VESK_MEMO_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_memo_info(const void* memo);

/**
 * Deletes a memo.
 *
 * @param memo the memo, by the number that the service knows it by
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_del_memo(int memo);

/**
 * Adds a new memo. Logs nothing.
 *
 * @param memo a record of VESK_MEMO_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_add_memo(const void* memo);

/** Asks for the data of the memos. */
VESK_API void binder_memo_info_request(void);

/**
 * Fetches a memo.
 *
 * @param      index which of the memos
 * @param[out] memo  receives a record of VESK_MEMO_SIZE bytes; untouched on failure
 * @return the service's answer, if the memo was copied; -1 on failure
 */
VESK_API int binder_get_memo_info_by_index(int index, void* memo);

/** Has the service check whether a memo is due; meant to be called once a minute. */
VESK_API void binder_check_memo_per_minute(void);

/* The phonebook of a Bluetooth device */

/**
 * Asks for the data of the Bluetooth phonebook.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_request_bt_phonebook_data(void);

/**
 * Fetches a contact of the Bluetooth phonebook.
 *
 * @param      id      the contact, by the number that the service knows it by
 * @param[out] contact receives a record of VESK_CONTACT_SIZE bytes; untouched on failure
 * @return the service's answer, if the contact was copied; -1 on failure
 */
VESK_API int binder_get_bt_phonebook_contact_by_id(int id, void* contact);

/* XML phonebooks */

/**
 * Opens an XML phonebook.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_open_xml_phonebook(int value);

/**
 * Asks for the data of an XML phonebook.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_request_xml_phonebook_data(int a, int b);

/**
 * Fetches a contact of the XML phonebook.
 *
 * @param      index   which of the contacts
 * @param[out] contact receives a record of VESK_CONTACT_SIZE bytes; untouched on failure
 * @return the service's answer, if the contact was copied; -1 on failure
 */
VESK_API int binder_get_xml_phonebook_contact_by_index(int index, void* contact);

/**
 * Fetches a contact that a search in the XML phonebook has found.
 *
 * @param      index   which of those contacts
 * @param[out] contact receives a record of VESK_CONTACT_SIZE bytes; untouched on failure
 * @return the service's answer, if the contact was copied; -1 on failure
 */
VESK_API int binder_get_xml_phonebook_search_contact_by_index(int index, void* contact);

/* LDAP phonebooks */

/**
 * Opens an LDAP phonebook.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_open_ldap_phonebook(int value);

/**
 * Asks for the data of an LDAP phonebook.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_request_ldap_phonebook_data(int a, int b);

/**
 * Fetches a contact of the LDAP phonebook.
 *
 * @param      index   which of the contacts
 * @param[out] contact receives a record of VESK_CONTACT_SIZE bytes; untouched on failure
 * @return the service's answer, if the contact was copied; -1 on failure
 */
VESK_API int binder_get_ldap_phonebook_contact_by_index(int index, void* contact);

/**
 * Searches for contacts in the LDAP phonebook.
 *
 * @param text what to search for
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_ldap_contact_search_request(const char* text);

/* Door access */

/**
 * Prepares the door-access records.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_door_access_init(void);

/**
 * Asks for the data of the door-access records.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_door_access_data_request(void);

/**
 * Fetches a door-access record.
 *
 * @param      id     the record, by the number that the service knows it by
 * @param[out] access receives a record of VESK_DOOR_ACCESS_SIZE bytes; untouched on failure
 * @return the service's answer, if the record was copied; -1 on failure
 */
VESK_API int binder_get_door_access_by_id(int id, void* access);

/**
 * Changes a door-access record. Logs nothing.
 *
 * @param access a record of VESK_DOOR_ACCESS_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_door_access_info(const void* access);

/**
 * Adds a new door-access record. Logs nothing.
 *
 * @param access a record of VESK_DOOR_ACCESS_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_add_door_access(const void* access);

/**
 * Deletes a door-access record.
 *
 * @param id the record, by the number that the service knows it by
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_del_door_access_by_id(int id);

/**
 * Deletes all door-access records.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_del_all_door_access(void);

/**
 * Checks a credential against the door-access records. Logs nothing.
 *
 * @param      text   for the service to interpret
 * @param      value  for the service to interpret
 * @param[out] access receives a record of VESK_DOOR_ACCESS_SIZE bytes; untouched on failure
 * @return 0 if the record was copied; -1 on failure
 */
VESK_API int binderCheckDoorAccessInfo(const char* text, int value, void* access);

#ifdef __cplusplus
}
#endif

#endif
