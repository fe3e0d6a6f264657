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
#include "common/Service.h"
#include "database/DatabaseTables.h"

namespace sim {

/** The record at an index from 0; empty if there is none. */
template <typename Record>
std::optional<Record> entryAt(const std::vector<Record>& records, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= records.size()) return std::nullopt;
  return records[static_cast<size_t>(index)];
}

/**
 * The database service of the simulated device. Each change is one transaction of the store. On
 * refusal, methods that return only an integer return -1; methods that return a record or nothing
 * throw EX_ILLEGAL_ARGUMENT with a message.
 */
class DatabaseService : public com::qv::BnDatabaseService {
 public:
  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit DatabaseService(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** Creates the tables with the content of a new device, if they are missing. To be called first.
   * False, with the reason in `error`, if the store fails. */
  bool prepare(std::string* error);

  /** Stores an incoming short message. False if the number or the text is too long, or the store
   * fails. */
  bool receiveSms(int32_t line, const std::string& number, const std::string& text);
  /**
   * Sets the counters of a line's voice mail. False if there is no such line, or the store fails.
   */
  bool setVoiceMail(int32_t line, int32_t unheard, int32_t heard);

  /** Adds a call that has ended to the call log. */
  void logCall(const CallLogRecord& call);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/DatabaseService.def>
#undef METHOD

 private:
  using Work = std::function<int32_t(Transaction&)>;

  /**
   * Runs `work` in a transaction and returns its result. If the result is kRefused, or the store
   * fails, nothing is changed. The reason of a failure is stored in `error` or, if that is null,
   * logged.
   */
  int32_t perform(const Work& work, std::string* error = nullptr);
  Status answer(int32_t* result, const Work& work);
  /** For a method that returns a record or nothing. */
  Status carryOut(const Work& work);

  template <typename Find>
  Status show(Find find, CommonParcelable* record, int32_t* result = nullptr) {
    return carryOut([&](Transaction& transaction) {
      const auto found = find(transaction);
      if (!found) return kRefused;
      *record = pack(*found);
      if (result != nullptr) *result = found->id;
      return 0;
    });
  }
  template <typename Record>
  Status showAt(const RecordTable<Record>& table, int32_t index, CommonParcelable* record, int32_t* result) {
    return show([&](Transaction& transaction) { return entryAt(table.all(transaction), index); }, record,
                result);
  }
  template <typename Record>
  Status add(const RecordTable<Record>& table, const CommonParcelable& record, int32_t* result) {
    return answer(result, [&](Transaction& transaction) {
      const std::optional<Record> added = unpack<Record>(record);
      return added && isValid(*added) ? table.add(transaction, *added) : kRefused;
    });
  }
  template <typename Record>
  Status set(const RecordTable<Record>& table, const CommonParcelable& record, int32_t* result) {
    return answer(result, [&](Transaction& transaction) {
      const std::optional<Record> changed = unpack<Record>(record);
      return changed && isValid(*changed) && table.replace(transaction, *changed) ? 0 : kRefused;
    });
  }
  Status erase(const BlobTable& table, int32_t id, int32_t* result);
  Status eraseAll(const BlobTable& table, int32_t* result);

  int32_t listContacts(Transaction& transaction, const std::function<bool(const ContactRecord&)>& condition);
  int32_t contactId(int32_t how, int32_t number) const;
  int32_t createContact(Transaction& transaction, int32_t group, const ContactRecord& contact);
  int32_t updateContact(Transaction& transaction, int32_t group, const ContactRecord& contact);
  int32_t deleteContact(Transaction& transaction, int32_t id);
  int32_t searchContacts(Transaction& transaction, std::string_view text);

  const std::shared_ptr<Store> store_;
  const DatabaseTables tables_;

  /** Guards the members below. */
  std::mutex mutex_;
  /** The contacts that the last request or search found, in order. */
  std::vector<int32_t> listed_;
  /** The same for the remote phonebooks. */
  std::vector<ContactRecord> foundXml_;
  std::vector<ContactRecord> foundLdap_;
};

}  // namespace sim
