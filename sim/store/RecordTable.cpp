#include "store/RecordTable.h"

namespace sim {

bool BlobTable::create(Transaction& transaction) const {
  bool exists = false;
  transaction.run("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?", {std::string_view(name_)},
                  [&](const Row&) { exists = true; });
  if (exists) return false;
  transaction.run(
      sql("CREATE TABLE ", " (id INTEGER PRIMARY KEY AUTOINCREMENT, bytes BLOB NOT NULL)").c_str());
  return true;
}

int32_t BlobTable::count(Transaction& transaction) const {
  int32_t count = 0;
  transaction.run(sql("SELECT count(*) FROM ", "").c_str(), {},
                  [&](const Row& row) { count = static_cast<int32_t>(row.integer(0)); });
  return count;
}

std::optional<std::string> BlobTable::find(Transaction& transaction, int32_t id) const {
  std::optional<std::string> bytes;
  transaction.run(sql("SELECT bytes FROM ", " WHERE id = ?").c_str(), {int64_t{id}},
                  [&](const Row& row) { bytes = row.bytes(0); });
  return bytes;
}

std::vector<std::pair<int32_t, std::string>> BlobTable::all(Transaction& transaction) const {
  std::vector<std::pair<int32_t, std::string>> entries;
  transaction.run(sql("SELECT id, bytes FROM ", " ORDER BY id").c_str(), {}, [&](const Row& row) {
    entries.emplace_back(static_cast<int32_t>(row.integer(0)), row.bytes(1));
  });
  return entries;
}

int32_t BlobTable::newId(Transaction& transaction) const {
  transaction.run(sql("INSERT INTO ", " (bytes) VALUES (x'')").c_str());
  return static_cast<int32_t>(transaction.lastKey());
}

void BlobTable::put(Transaction& transaction, int32_t id, std::string_view bytes) const {
  transaction.run(sql("INSERT OR REPLACE INTO ", " (id, bytes) VALUES (?, ?)").c_str(),
                  {int64_t{id}, Blob{bytes}});
}

bool BlobTable::erase(Transaction& transaction, int32_t id) const {
  transaction.run(sql("DELETE FROM ", " WHERE id = ?").c_str(), {int64_t{id}});
  return transaction.changedRows() > 0;
}

void BlobTable::eraseAll(Transaction& transaction) const { transaction.run(sql("DELETE FROM ", "").c_str()); }

}  // namespace sim
