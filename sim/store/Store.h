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

/** One row of an answer, while it is being shown. Columns count from 0. */
class Row {
 public:
  explicit Row(sqlite3_stmt* statement) : statement_(statement) {}

  int64_t integer(int column) const;
  /** A text or a blob. */
  std::string bytes(int column) const;

 private:
  sqlite3_stmt* statement_;
};

/** What happens in a transaction happens wholly or not at all. */
class Transaction {
 public:
  using ShowRow = std::function<void(const Row&)>;

  /**
   * Runs one statement in SQL, with `parameters` in the places of its question marks, and shows each row of
   * the answer. If it fails, the transaction has failed: later statements are not run, and none has any
   * effect.
   */
  void run(const char* sql, std::initializer_list<Parameter> parameters = {}, const ShowRow& show = {});

  /** The key that the last INSERT made. */
  int64_t lastKey() const;
  /** How many rows the last INSERT, UPDATE or DELETE touched. */
  int changedRows() const;

  /** None of it is to have any effect. */
  void cancel() { failed_ = true; }

 private:
  friend class Store;
  explicit Transaction(sqlite3* database) : database_(database) {}

  sqlite3* const database_;
  bool failed_ = false;
  /** Why a statement failed; empty if none did. */
  std::string error_;
};

/**
 * What the device keeps, in tables that its services make for themselves, each in a transaction with CREATE
 * TABLE IF NOT EXISTS. What a transaction has written survives the end of the process, however that comes
 * about; a transaction that the end interrupts leaves nothing behind. For any thread.
 */
class Store {
 public:
  /**
   * Opens the file device.db in `directory`, both of which are made if they don't exist; in memory, so that
   * nothing is kept, without a directory. Null if that can't be done, with the reason in `error`: a file that
   * is damaged, that is not ours or that another device has open is left as it is.
   */
  static std::unique_ptr<Store> open(const std::string& directory, std::string* error);

  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /** Runs `work`, which must not begin another transaction. Whether what it did is there to stay; if a
   * statement or the writing failed, `error` tells why, or, if it is null, the log. */
  bool transact(const std::function<void(Transaction&)>& work, std::string* error = nullptr);

 private:
  explicit Store(sqlite3* database) : database_(database) {}

  /** Makes sure that the file is ours, whole, and nobody else's; a new one becomes so. */
  bool claim(std::string* error);
  /** For a BEGIN, a COMMIT and the like. */
  bool execute(const char* sql);
  std::string describeFailure() const;

  sqlite3* const database_;
  std::mutex mutex_;
};

}  // namespace sim
