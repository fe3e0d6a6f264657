#include <android/log.h>
#include <com/qv/DatabaseClient.h>
#include <vesk/database.h>

#include "ipc/ClientApi.h"

using namespace com::qv;
using android::binder::Status;

namespace {

ClientApi<DatabaseClient>& service = ClientApi<DatabaseClient>::instance();

/** Checks a record's size, and logs an error with the C function's name if it differs. */
bool hasSize(const CommonParcelable& record, int64_t size, const char* function) {
  if (static_cast<int64_t>(record.blob().length()) == size) return true;
  __android_log_print(ANDROID_LOG_ERROR, DatabaseClient::kLogTag, "%s: param size error!", function);
  return false;
}

/** The rule for a record as an out-argument: accepted at exactly `size` bytes, otherwise logged. */
struct ExactSizeOrLog {
  void* bytes;
  int64_t size;
  const char* function;
  bool store(const CommonParcelable& record) const {
    return hasSize(record, size, function) && record.copyTo(bytes, record.blob().length());
  }
};

/** Sends a record after the method's other arguments. The check afterwards is of the copy that was
 * sent: it is empty if a String8 could not allocate its memory. */
template <size_t kSize, class... Parameters, class... Arguments>
int sendRecord(const char* function, const void* bytes, Status (IDatabaseService::*method)(Parameters...),
               Arguments... arguments) {
  const android::sp<IDatabaseService> proxy = service.proxy();
  if (proxy == nullptr) return -1;
  const CommonParcelable record(bytes, kSize);
  int32_t result = -1;
  (proxy.get()->*method)(arguments..., record, &result);
  return hasSize(record, kSize, function) ? result : -1;
}

}  // namespace

/* Connecting */

bool connect_database_service(vesk_service_died_callback on_service_died) {
  return service.connect(on_service_died);
}

/* Short messages */

int binder_get_sms_count(int value) {
  return service.value(IfNotConnected{0}, IfFailed{0}, &IDatabaseService::getSMSCount, value);
}
void binder_sms_info_request(int value) { service.send(&IDatabaseService::requestSmsData, value); }
int binder_send_sms(int value, const char* first, const char* second) {
  return service.value(&IDatabaseService::sendSms, value, first, second);
}
void binder_store_sms_to_draft(const char* sms) { service.send(&IDatabaseService::storeSmsToDraft, sms); }
void binder_set_sms_read_done(int sms) { service.send(&IDatabaseService::setSmsReadDone, sms); }
void binder_delete_sms(int sms) { service.send(&IDatabaseService::deleteSms, sms); }
void binder_delete_sms_all(int value) { service.send(&IDatabaseService::deleteSmsAll, value); }

/* Voice mail */

void binder_get_vsms_count(int value, uint32_t counters[2]) {
  service.fetch<VESK_VOICE_MAIL_COUNT_SIZE>(counters, &IDatabaseService::getVoiceSmsCount, value);
}

/* Phonebook */

int binder_phonebook_request(int a, int b) {
  return service.value(&IDatabaseService::phonebookRequest, a, b);
}
int binder_phonebook_part_of_group_request(int value) {
  return service.value(&IDatabaseService::phonebookPartOfGroupRequest, value);
}
int binder_phonebook_common_request(int value) {
  return service.value(&IDatabaseService::phonebookCommonRequest, value);
}
int binder_phonebook_db_request(const void* request) {
  return sendRecord<VESK_PHONEBOOK_REQUEST_SIZE>(__func__, request, &IDatabaseService::phonebookDbRequest);
}

/* Groups of the phonebook */

int binder_phonebook_get_contact_groupid(int contact, int count, void* groups) {
  // In 64 bits, so that no count overflows and a negative one matches no record.
  const int64_t size = int64_t{VESK_PHONEBOOK_GROUP_ID_SIZE} * count;
  return service.fetch(ExactSizeOrLog{groups, size, __func__}, &IDatabaseService::phonebookGetContactGroupId,
                       contact, count);
}
int binder_get_phonebook_groupinfo(int a, int b, void* group) {
  return service.fetch(ExactSizeOrLog{group, VESK_PHONEBOOK_GROUP_SIZE, __func__},
                       &IDatabaseService::getPhonebookGroupInfo, a, b);
}
int binder_phonebook_rm_contact_from_group(int a, int b) {
  return service.value(&IDatabaseService::phonebookRemoveContactFromGroup, a, b);
}
int binder_phonebook_add_contact_to_group(int a, int b) {
  return service.value(&IDatabaseService::phonebookAddContactToGroup, a, b);
}
int binder_phonebook_add_new_group(const void* group) {
  return sendRecord<VESK_PHONEBOOK_GROUP_SIZE>(__func__, group, &IDatabaseService::phonebookAddNewGroup);
}
int binder_phonebook_update_group(const void* group) {
  return sendRecord<VESK_PHONEBOOK_GROUP_SIZE>(__func__, group, &IDatabaseService::phonebookUpdateGroup);
}
int binder_phonebook_delete_group(int group) {
  return service.value(&IDatabaseService::phonebookDeleteGroup, group);
}

/* Contacts of the phonebook */

int binder_phonebook_contact_retrieve(int a, int b, void* contact) {
  return service.fetch(ExactSizeOrLog{contact, VESK_CONTACT_SIZE, __func__},
                       &IDatabaseService::phonebookContactRetrieve, a, b);
}
int binder_phonebook_contact_delete(int a, int b) {
  return service.value(&IDatabaseService::phonebookContactDelete, a, b);
}
int binder_phonebook_contact_create(int value, const void* contact) {
  return sendRecord<VESK_CONTACT_SIZE>(__func__, contact, &IDatabaseService::phonebookContactCreate, value);
}
int binder_phonebook_contact_update(int value, const void* contact) {
  return sendRecord<VESK_CONTACT_SIZE>(__func__, contact, &IDatabaseService::phonebookContactUpdate, value);
}
int binder_phonebook_contact_search(int value, const char* text) {
  return service.value(&IDatabaseService::phonebookContactSearch, value, text);
}
int binder_phonebook_image_request(int value, void* picture) {
  return service.fetch(ExactSizeOrLog{picture, VESK_CONTACT_PICTURE_SIZE, __func__},
                       &IDatabaseService::phonebookImageDataGet, value);
}

/* Blacklist and whitelist */

void binder_black_white_list_request(int value) {
  service.send(&IDatabaseService::requestBlackWhiteListData, value);
}
int binder_phonebook_contact_add_blacklist(const void* entry) {
  return sendRecord<VESK_BLACKLIST_ENTRY_SIZE>(__func__, entry,
                                               &IDatabaseService::phonebookContactAddBlacklist);
}
int binder_phonebook_contact_add_whitelist(const void* entry) {
  return sendRecord<VESK_WHITELIST_ENTRY_SIZE>(__func__, entry,
                                               &IDatabaseService::phonebookContactAddWhitelist);
}
int binder_phonebook_contact_get_whitelist(int value, void* entry) {
  return service.fetch(ExactSizeOrLog{entry, VESK_WHITELIST_ENTRY_SIZE, __func__},
                       &IDatabaseService::phonebookContactGetWhitelist, value);
}
int binder_phonebook_contact_get_blacklist(int value, void* entry) {
  return service.fetch(ExactSizeOrLog{entry, VESK_BLACKLIST_ENTRY_SIZE, __func__},
                       &IDatabaseService::phonebookContactGetBlacklist, value);
}
int binder_phonebook_contact_set_blacklist(const void* entry) {
  return sendRecord<VESK_BLACKLIST_ENTRY_SIZE>(__func__, entry,
                                               &IDatabaseService::phonebookContactSetBlacklist);
}
int binder_phonebook_contact_set_whitelist(const void* entry) {
  return sendRecord<VESK_WHITELIST_ENTRY_SIZE>(__func__, entry,
                                               &IDatabaseService::phonebookContactSetWhitelist);
}
int binder_phonebook_contact_delete_blacklist(int value) {
  return service.value(&IDatabaseService::phonebookContactDeleteBlacklist, value);
}
int binder_phonebook_contact_delete_whitelist(int value) {
  return service.value(&IDatabaseService::phonebookContactDeleteWhitelist, value);
}
int binder_phonebook_contact_delete_all_blacklist(void) {
  return service.value(&IDatabaseService::phonebookContactDeleteAllBlacklist);
}
int binder_phonebook_contact_delete_all_whitelist(void) {
  return service.value(&IDatabaseService::phonebookContactDeleteAllWhitelist);
}

/* Call log */

int binder_get_clog_info_by_id(int id, void* entry) {
  return service.fetch(ExactSizeOrLog{entry, VESK_CALL_LOG_ENTRY_SIZE, __func__},
                       &IDatabaseService::getClogById, id);
}
int binder_clog_delete(int a, int b) { return service.value(&IDatabaseService::clogDelete, a, b); }

/* Memos */

int binder_get_memo_num(void) { return service.value(&IDatabaseService::getMemoNum); }
int binder_set_memo_info(const void* memo) {
  return service.value(&IDatabaseService::setMemoInfo, Record{memo, VESK_MEMO_SIZE});
}
int binder_del_memo(int memo) { return service.value(&IDatabaseService::delMemo, memo); }
int binder_add_memo(const void* memo) {
  return service.value(&IDatabaseService::addMemo, Record{memo, VESK_MEMO_SIZE});
}
void binder_memo_info_request(void) { service.send(&IDatabaseService::requestMemoData); }
int binder_get_memo_info_by_index(int index, void* memo) {
  return service.fetch(ExactSizeOrLog{memo, VESK_MEMO_SIZE, __func__}, &IDatabaseService::getMemoByIndex,
                       index);
}
void binder_check_memo_per_minute(void) { service.send(&IDatabaseService::checkMemoPerMinute); }

/* The phonebook of a Bluetooth device */

int binder_request_bt_phonebook_data(void) {
  return service.value(&IDatabaseService::requestBtPhonebookData);
}
int binder_get_bt_phonebook_contact_by_id(int id, void* contact) {
  return service.fetch(ExactSizeOrLog{contact, VESK_CONTACT_SIZE, __func__},
                       &IDatabaseService::getBtPhonebookContactById, id);
}

/* XML phonebooks */

int binder_open_xml_phonebook(int value) { return service.value(&IDatabaseService::openXmlPhonebook, value); }
int binder_request_xml_phonebook_data(int a, int b) {
  return service.value(&IDatabaseService::requestXmlPhonebookData, a, b);
}
int binder_get_xml_phonebook_contact_by_index(int index, void* contact) {
  return service.fetch(ExactSizeOrLog{contact, VESK_CONTACT_SIZE, __func__},
                       &IDatabaseService::getXmlPhonebookContactByIndex, index);
}
int binder_get_xml_phonebook_search_contact_by_index(int index, void* contact) {
  return service.fetch(ExactSizeOrLog{contact, VESK_CONTACT_SIZE, __func__},
                       &IDatabaseService::getXmlPhonebookSearchContactByIndex, index);
}

/* LDAP phonebooks */

int binder_open_ldap_phonebook(int value) {
  return service.value(&IDatabaseService::openLdapPhonebook, value);
}
int binder_request_ldap_phonebook_data(int a, int b) {
  return service.value(&IDatabaseService::requestLdapPhonebookData, a, b);
}
int binder_get_ldap_phonebook_contact_by_index(int index, void* contact) {
  return service.fetch(ExactSizeOrLog{contact, VESK_CONTACT_SIZE, __func__},
                       &IDatabaseService::getLdapPhonebookContactByIndex, index);
}
int binder_ldap_contact_search_request(const char* text) {
  return service.value(&IDatabaseService::ldapContactSearchRequest, text);
}

/* Door access */

int binder_door_access_init(void) { return service.value(&IDatabaseService::doorAccessInit); }
int binder_door_access_data_request(void) { return service.value(&IDatabaseService::doorAccessDataRequest); }
int binder_get_door_access_by_id(int id, void* access) {
  return service.fetch(ExactSizeOrLog{access, VESK_DOOR_ACCESS_SIZE, __func__},
                       &IDatabaseService::getDoorAccessById, id);
}
int binder_set_door_access_info(const void* access) {
  return service.value(&IDatabaseService::setDoorAccessInfo, Record{access, VESK_DOOR_ACCESS_SIZE});
}
int binder_add_door_access(const void* access) {
  return service.value(&IDatabaseService::addDoorAccess, Record{access, VESK_DOOR_ACCESS_SIZE});
}
int binder_del_door_access_by_id(int id) { return service.value(&IDatabaseService::delDoorAccessById, id); }
int binder_del_all_door_access(void) { return service.value(&IDatabaseService::delAllDoorAccess); }
int binderCheckDoorAccessInfo(const char* text, int value, void* access) {
  return service.fetch<VESK_DOOR_ACCESS_SIZE>(access, &IDatabaseService::checkDoorAccessInfo, text, value);
}
