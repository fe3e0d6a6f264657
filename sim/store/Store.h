#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace sim {

/** A parameter of a statement that is a blob; a std::string_view is a text. */
struct Blob {
  std::string_view bytes;
};

using Parameter = std::variant<int64_t, std::string_view, Blob>;

/** A row of a result, valid during the callback. Columns count from 0. */
class Row {
 public:
  explicit Row(sqlite3_stmt* statement) : statement_(statement) {}

  int64_t integer(int column) const;
  /** A text or a blob. */
  std::string bytes(int column) const;

 private:
  sqlite3_stmt* statement_;
};

/** A transaction of the store. */
class Transaction {
 public:
  using ShowRow = std::function<void(const Row&)>;

  /**
   * Runs an SQL statement with `parameters` for its question marks, and calls `show` with each row
   * of the result. If a statement fails, the transaction runs no more statements and is rolled
   * back.
   */
  void run(const char* sql, std::initializer_list<Parameter> parameters = {}, const ShowRow& show = {});

  /** The key of the last INSERT. */
  int64_t lastKey() const;
  /** The number of rows that the last INSERT, UPDATE or DELETE changed. */
  int changedRows() const;

  /** The transaction runs no more statements and is rolled back. */
  void cancel() { failed_ = true; }

 private:
  friend class Store;
  explicit Transaction(sqlite3* database) : database_(database) {}

  sqlite3* const database_;
  bool failed_ = false;
  /** The reason of the failure of a statement; empty without one. */
  std::string error_;
};

/**
 * The state of the device, in tables that its services create. A committed transaction survives any
 * end of the process; an interrupted one changes nothing. Thread-safe.
 */
class Store {
 public:
  /**
   * Opens the file device.db in `directory`, and creates both if they are missing. If `directory`
   * is empty, opens a database in memory. Returns null, with the reason in `error`, on failure. A
   * file that is damaged, of another program or open in another device stays unchanged.
   */
  static std::unique_ptr<Store> open(const std::string& directory, std::string* error);

  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /** Runs `work`, which must not begin another transaction, and commits its changes. False if they
   * are not committed; the reason is stored in `error` or, if that is null, logged. */
  bool transact(const std::function<void(Transaction&)>& work, std::string* error = nullptr);

 private:
  explicit Store(sqlite3* database) : database_(database) {}

  /** Checks and locks the file. Marks a new file as one of this program. */
  bool claim(std::string* error);
  /** Runs a statement without parameters and results, such as BEGIN or COMMIT. */
  bool execute(const char* sql);
  std::string describeFailure() const;

  sqlite3* const database_;
  std::mutex mutex_;
};

}  // namespace sim
