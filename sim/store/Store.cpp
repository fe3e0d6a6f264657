#include "store/Store.h"

#include <android/log.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace sim {

namespace {

constexpr const char* kTag = "vesk-device";
/** Marks the files of vesk-device. */
constexpr uint32_t kApplicationId = 0x5645534b;
/** Increases when older versions can no longer read the file. */
constexpr int kFormat = 1;
/** Covers a device that is about to exit and still holds the file. */
constexpr int kBusyTimeoutMs = 1000;

/** The header of an SQLite file. */
struct FileHeader {
  static constexpr size_t kSize = 100;
  static constexpr size_t kApplicationIdOffset = 68;
  static constexpr std::string_view kMagic{"SQLite format 3\0", 16};
};

std::string describe(const std::string& what, int errorNumber) {
  return what + ": " + std::strerror(errorNumber);
}

/** Reads the file itself: SQLite may write to a file of another program as soon as it opens it. */
bool isForeign(int fd) {
  unsigned char header[FileHeader::kSize];
  const ssize_t size = pread(fd, header, sizeof(header), 0);
  if (size == 0) return false;
  if (size != sizeof(header)) return true;
  const unsigned char* id = header + FileHeader::kApplicationIdOffset;
  return std::memcmp(header, FileHeader::kMagic.data(), FileHeader::kMagic.size()) != 0 ||
         (uint32_t{id[0]} << 24 | uint32_t{id[1]} << 16 | uint32_t{id[2]} << 8 | id[3]) != kApplicationId;
}

/** Creates the directory and the file, readable by their owner alone: they contain passwords. */
bool prepareFile(const std::string& directory, const std::string& path, std::string* error) {
  if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
    *error = describe(directory, errno);
    return false;
  }
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) {
    *error = describe(path, errno);
    return false;
  }
  const bool foreign = isForeign(fd);
  close(fd);
  if (foreign) *error = path + ": this is not the state of a vesk-device";
  return !foreign;
}

void bind(sqlite3_stmt* statement, int place, const Parameter& parameter) {
  const auto size = [](std::string_view bytes) { return static_cast<sqlite3_uint64>(bytes.size()); };
  if (const auto* integer = std::get_if<int64_t>(&parameter)) {
    sqlite3_bind_int64(statement, place, *integer);
  } else if (const auto* text = std::get_if<std::string_view>(&parameter)) {
    sqlite3_bind_text64(statement, place, text->data(), size(*text), SQLITE_TRANSIENT, SQLITE_UTF8);
  } else {
    const std::string_view bytes = std::get<Blob>(parameter).bytes;
    // A null pointer would be stored as NULL.
    sqlite3_bind_blob64(statement, place, bytes.empty() ? "" : bytes.data(), size(bytes), SQLITE_TRANSIENT);
  }
}

}  // namespace

int64_t Row::integer(int column) const { return sqlite3_column_int64(statement_, column); }

std::string Row::bytes(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
  return bytes == nullptr ? std::string()
                          : std::string(bytes, static_cast<size_t>(sqlite3_column_bytes(statement_, column)));
}

void Transaction::run(const char* sql, std::initializer_list<Parameter> parameters, const ShowRow& show) {
  if (failed_) return;
  sqlite3_stmt* statement = nullptr;
  int result = sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr);
  if (result == SQLITE_OK) {
    int place = 0;
    for (const Parameter& parameter : parameters) bind(statement, ++place, parameter);
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
      if (show) show(Row(statement));
    }
  }
  if (result != SQLITE_DONE) {
    failed_ = true;
    error_ = sqlite3_errmsg(database_);
  }
  sqlite3_finalize(statement);
}

int64_t Transaction::lastKey() const { return sqlite3_last_insert_rowid(database_); }

int Transaction::changedRows() const { return sqlite3_changes(database_); }

std::unique_ptr<Store> Store::open(const std::string& directory, std::string* error) {
  std::string path = ":memory:";
  if (!directory.empty()) {
    path = directory + "/device.db";
    if (!prepareFile(directory, path, error)) return nullptr;
  }
  sqlite3* database = nullptr;
  const int result =
      sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  if (database == nullptr) {
    *error = path + ": " + sqlite3_errstr(result);
    return nullptr;
  }
  std::unique_ptr<Store> store(new Store(database));
  if (result != SQLITE_OK || !store->claim(error)) {
    if (result != SQLITE_OK) *error = store->describeFailure();
    *error = path + ": " + *error;
    return nullptr;
  }
  return store;
}

Store::~Store() { sqlite3_close(database_); }

bool Store::claim(std::string* error) {
  sqlite3_busy_timeout(database_, kBusyTimeoutMs);
  // SQLite keeps the lock of the first transaction, so that no other device writes to the file.
  if (!execute("PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; BEGIN EXCLUSIVE")) {
    *error = describeFailure();
    return false;
  }
  Transaction transaction(database_);
  const auto ask = [&](const char* sql) {
    int64_t answer = 0;
    transaction.run(sql, {}, [&](const Row& row) { answer = row.integer(0); });
    return answer;
  };
  bool accepted = false;
  // SQLite has rolled an interrupted first transaction back, so that a file without the mark is
  // empty.
  if (ask("PRAGMA application_id") == 0) {
    transaction.run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
    transaction.run(("PRAGMA user_version = " + std::to_string(kFormat)).c_str());
    accepted = true;
  } else if (const int64_t format = ask("PRAGMA user_version"); format > kFormat) {
    *error = "this is the state of a newer vesk-device (format " + std::to_string(format) + ")";
  } else {
    std::string damage;
    transaction.run("PRAGMA quick_check(1)", {}, [&](const Row& row) { damage = row.bytes(0); });
    accepted = damage == "ok";
    if (!accepted) *error = "the file is damaged: " + damage;
  }
  if (transaction.failed_) *error = "the file is damaged: " + transaction.error_;
  if (accepted && !transaction.failed_) {
    if (execute("COMMIT")) return true;
    *error = describeFailure();
  }
  execute("ROLLBACK");
  return false;
}

bool Store::transact(const std::function<void(Transaction&)>& work, std::string* error) {
  const std::lock_guard lock(mutex_);
  std::string failure;
  if (execute("BEGIN")) {
    Transaction transaction(database_);
    work(transaction);
    if (!transaction.failed_ && execute("COMMIT")) return true;
    failure = transaction.failed_ ? transaction.error_ : describeFailure();
    // Does nothing after a failure that has already rolled back.
    execute("ROLLBACK");
  } else {
    failure = describeFailure();
  }
  if (error != nullptr) {
    *error = failure;
  } else if (!failure.empty()) {
    __android_log_print(ANDROID_LOG_ERROR, kTag, "the state can't be changed: %s", failure.c_str());
  }
  return false;
}

bool Store::execute(const char* sql) {
  return sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string Store::describeFailure() const {
  switch (sqlite3_errcode(database_)) {
    case SQLITE_BUSY:
      return "another vesk-device has it open";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return std::string("the file is damaged: ") + sqlite3_errmsg(database_);
    default:
      return sqlite3_errmsg(database_);
  }
}

}  // namespace sim
