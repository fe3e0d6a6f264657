#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/Records.h"
#include "store/Store.h"

namespace sim {

/** A table of the store that maps numbers to blobs. Each method is part of a transaction. */
class BlobTable {
 public:
  /** `name` becomes part of the SQL and must not come from a user. */
  explicit BlobTable(const char* name) : name_(name) {}

  /** Creates the table. False if it exists. */
  bool create(Transaction& transaction) const;
  int32_t count(Transaction& transaction) const;
  /** False if there is no such entry. */
  bool erase(Transaction& transaction, int32_t id) const;
  void eraseAll(Transaction& transaction) const;

 protected:
  std::optional<std::string> find(Transaction& transaction, int32_t id) const;
  /** In the order of the numbers. */
  std::vector<std::pair<int32_t, std::string>> all(Transaction& transaction) const;
  /** A number that no entry has had before. */
  int32_t newId(Transaction& transaction) const;
  /** Adds an entry, or replaces it. */
  void put(Transaction& transaction, int32_t id, std::string_view bytes) const;

 private:
  std::string sql(const char* before, const char* after) const { return before + name_ + after; }

  const std::string name_;
};

/** A table that maps numbers to records. If a record has a member `id`, that is its number. */
template <typename Record>
class RecordTable : public BlobTable {
 public:
  using BlobTable::BlobTable;

  std::optional<Record> find(Transaction& transaction, int32_t id) const {
    const std::optional<std::string> bytes = BlobTable::find(transaction, id);
    return bytes ? unpack<Record>(*bytes) : std::nullopt;
  }

  std::vector<Record> all(Transaction& transaction) const {
    std::vector<Record> records;
    for (const auto& [id, bytes] : BlobTable::all(transaction)) {
      if (const std::optional<Record> record = unpack<Record>(bytes)) records.push_back(*record);
    }
    return records;
  }

  /** Adds a record under a new number. Returns the number. */
  int32_t add(Transaction& transaction, Record record) const {
    record.id = newId(transaction);
    put(transaction, record);
    return record.id;
  }

  void put(Transaction& transaction, int32_t id, const Record& record) const {
    BlobTable::put(transaction, id, bytesOf(record));
  }

  void put(Transaction& transaction, const Record& record) const { put(transaction, record.id, record); }

  /** False if there is no record to replace. */
  bool replace(Transaction& transaction, const Record& record) const {
    if (!find(transaction, record.id)) return false;
    put(transaction, record);
    return true;
  }

  /** Erases the records for which `condition` holds. Returns their number. */
  template <typename Condition>
  int32_t eraseIf(Transaction& transaction, Condition condition) const {
    int32_t count = 0;
    for (const Record& record : all(transaction)) {
      if (condition(record) && erase(transaction, record.id)) ++count;
    }
    return count;
  }
};

}  // namespace sim
