#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/Records.h"
#include "store/Store.h"

namespace sim {

/** What stands in one table of the store: bytes by number. Each member is a part of a transaction. */
class ByteTable {
 public:
  struct Entry {
    int32_t id;
    std::string bytes;
  };

  /** `name` is one of our own, not of a user's making. */
  explicit ByteTable(const char* name) : name_(name) {}

  /** Makes the table. False if it was there. */
  bool create(Transaction& transaction) const;

  int32_t count(Transaction& transaction) const;
  std::optional<std::string> find(Transaction& transaction, int32_t id) const;
  /** By number. */
  std::vector<Entry> all(Transaction& transaction) const;
  /** A number that none has had before. */
  int32_t newId(Transaction& transaction) const;
  /** In the place of what had the number, if anything did. */
  void put(Transaction& transaction, int32_t id, std::string_view bytes) const;
  /** False if there was none. */
  bool erase(Transaction& transaction, int32_t id) const;
  void eraseAll(Transaction& transaction) const;

 private:
  std::string sql(const char* before, const char* after) const { return before + name_ + after; }

  const std::string name_;
};

/** Records that carry their own number, as `id`. */
template <typename Record>
class RecordTable {
 public:
  explicit RecordTable(const char* name) : table_(name) {}

  bool create(Transaction& transaction) const { return table_.create(transaction); }

  int32_t count(Transaction& transaction) const { return table_.count(transaction); }

  std::optional<Record> find(Transaction& transaction, int32_t id) const {
    const std::optional<std::string> bytes = table_.find(transaction, id);
    return bytes ? unpack<Record>(*bytes) : std::nullopt;
  }

  std::vector<Record> all(Transaction& transaction) const {
    std::vector<Record> records;
    for (const ByteTable::Entry& entry : table_.all(transaction)) {
      if (const std::optional<Record> record = unpack<Record>(entry.bytes)) records.push_back(*record);
    }
    return records;
  }

  /** Gives the record a number, which is the result. */
  int32_t add(Transaction& transaction, Record record) const {
    record.id = table_.newId(transaction);
    put(transaction, record);
    return record.id;
  }

  void put(Transaction& transaction, const Record& record) const {
    table_.put(transaction, record.id, bytesOf(record));
  }

  /** False if there was none. */
  bool erase(Transaction& transaction, int32_t id) const { return table_.erase(transaction, id); }
  void eraseAll(Transaction& transaction) const { table_.eraseAll(transaction); }

  /** False, and nothing happens, if there is none to take the place of. */
  bool replace(Transaction& transaction, const Record& record) const {
    if (!find(transaction, record.id)) return false;
    put(transaction, record);
    return true;
  }

  /** Erases those for which `condition` holds. How many that were. */
  template <typename Condition>
  int32_t eraseIf(Transaction& transaction, Condition condition) const {
    int32_t count = 0;
    for (const Record& record : all(transaction)) {
      if (condition(record) && erase(transaction, record.id)) ++count;
    }
    return count;
  }

 private:
  const ByteTable table_;
};

}  // namespace sim
