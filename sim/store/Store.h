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

/** Bytes as a parameter of a statement; a std::string_view is a text. */
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
   * Runs an SQL statement with `parameters` in the places of its question marks, and calls `show`
   * with each row of the result. After a failure the transaction has failed: it runs no more
   * statements and is rolled back.
   */
  void run(const char* sql, std::initializer_list<Parameter> parameters = {}, const ShowRow& show = {});

  /** The key of the last INSERT. */
  int64_t lastKey() const;
  /** The number of rows that the last INSERT, UPDATE or DELETE changed. */
  int changedRows() const;

  /** Has the transaction rolled back. */
  void cancel() { failed_ = true; }

 private:
  friend class Store;
  explicit Transaction(sqlite3* database) : database_(database) {}

  sqlite3* const database_;
  bool failed_ = false;
  /** The reason of the failure of a statement; empty without one. */
  std::string error_;
};

/** The state of the device, in tables that its services create. A committed transaction survives
 * the end of the process, in any way; an interrupted one leaves no trace. Thread-safe. */
class Store {
 public:
  /**
   * Opens the file device.db in `directory`, and creates both if they are missing; without a
   * directory, opens a database in memory. Null, with the reason in `error`, on failure: a file
   * that is damaged, of another program or open in another device stays unchanged.
   */
  static std::unique_ptr<Store> open(const std::string& directory, std::string* error);

  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /** Runs `work`, which must not begin another transaction. True if its changes are committed;
   * otherwise the reason goes to `error` or, if that is null, to the log. */
  bool transact(const std::function<void(Transaction&)>& work, std::string* error = nullptr);

 private:
  explicit Store(sqlite3* database) : database_(database) {}

  /** Checks and locks the file, and marks a new one. */
  bool claim(std::string* error);
  /** For a BEGIN, a COMMIT and the like. */
  bool execute(const char* sql);
  std::string describeFailure() const;

  sqlite3* const database_;
  std::mutex mutex_;
};

}  // namespace sim
