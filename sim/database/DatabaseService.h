#pragma once

#include <com/qv/IDatabaseService.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/Records.h"
#include "database/DatabaseTables.h"
#include "database/RemotePhonebook.h"

namespace sim {

/**
 * The database service of the simulated device. Each change is one transaction of the store. A method that
 * refuses answers -1 where it has nothing but a number to give, and EX_ILLEGAL_ARGUMENT with a message where
 * it has none, or a record. docs/simulated-device.md tells what the numbers mean.
 */
class DatabaseService : public com::qv::BnDatabaseService {
 public:
  // The rows name them so.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit DatabaseService(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** To be called before anything else: makes the tables, with what a new device has in them. False, with the
   * reason in `error`, if the store fails. */
  bool prepare(std::string* error);

  /** A short message comes in. False if the number or the text is too long, or the store fails. */
  bool receiveSms(int32_t line, const std::string& number, const std::string& text);
  /** How many messages wait in the voice mail of a line. False if there is no such line, or the store fails.
   */
  bool setVoiceMail(int32_t line, int32_t unheard, int32_t heard);

  /** Puts a call that has ended into the call log. */
  void logCall(const CallLogRecord& call);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/DatabaseService.def>
#undef METHOD

 private:
  using Work = std::function<int32_t(Transaction&)>;

  /** What `work` gives, in one transaction; kRefused, and nothing has happened, if it gives that or the store
   * fails: `error` then tells why, or, if it is null, the log. */
  int32_t perform(const Work& work, std::string* error = nullptr);
  Status answer(int32_t* result, const Work& work);
  /** For a method without a result. */
  Status carryOut(const Work& work);

  template <typename Record>
  Status show(const std::function<std::optional<Record>(Transaction&)>& find, CommonParcelable* record,
              int32_t* result = nullptr);
  Status showContact(const std::optional<ContactRecord>& contact, CommonParcelable* record, int32_t* result);
  template <typename Record, typename Check>
  Status add(const RecordTable<Record>& table, const CommonParcelable& record, int32_t* result, Check check);
  template <typename Record, typename Check>
  Status set(const RecordTable<Record>& table, const CommonParcelable& record, int32_t* result, Check check);
  template <typename Record>
  Status erase(const RecordTable<Record>& table, int32_t id, int32_t* result);
  template <typename Record>
  Status eraseAll(const RecordTable<Record>& table, int32_t* result);

  int32_t listContacts(Transaction& transaction, const std::function<bool(const ContactRecord&)>& condition);
  int32_t contactId(int32_t how, int32_t number) const;
  int32_t createContact(Transaction& transaction, int32_t group, const ContactRecord& contact);
  int32_t updateContact(Transaction& transaction, int32_t group, const ContactRecord& contact);
  int32_t deleteContact(Transaction& transaction, int32_t id);
  int32_t searchContacts(Transaction& transaction, std::string_view text);

  const std::shared_ptr<Store> store_;
  const DatabaseTables tables_;

  /** Guards what follows. */
  std::mutex mutex_;
  /** What the last request or search has found, in order. */
  std::vector<int32_t> listed_;
  const RemotePhonebook bluetooth_ = bluetoothPhonebook();
  RemotePhonebook xml_ = xmlPhonebook();
  RemotePhonebook ldap_ = ldapPhonebook();
  bool isXmlOpen_ = false;
  bool isLdapOpen_ = false;
  bool isLdapSearched_ = false;
};

}  // namespace sim
