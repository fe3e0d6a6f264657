#include "store/Store.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "TemporaryDirectory.h"
#include "settings/Settings.h"

static std::atomic<bool> diskIsFull = false;

/** Replaces the function with which SQLite writes. */
extern "C" __attribute__((visibility("default"))) ssize_t pwrite64(int fd, const void* bytes, size_t size,
                                                                   off64_t offset) {
  if (diskIsFull) {
    errno = ENOSPC;
    return -1;
  }
  static const auto next =
      reinterpret_cast<ssize_t (*)(int, const void*, size_t, off64_t)>(::dlsym(RTLD_NEXT, "pwrite64"));
  return next(fd, bytes, size, offset);
}

namespace {

using sim::Blob;
using sim::Row;
using sim::Settings;
using sim::Store;
using sim::Transaction;
using sim::Values;
using vesk::test::ChildProcess;
using vesk::test::TemporaryDirectory;

std::unique_ptr<Store> openStore(const std::string& directory) {
  std::string error;
  std::unique_ptr<Store> store = Store::open(directory, &error);
  EXPECT_NE(store, nullptr) << error;
  return store;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void putName(Transaction& transaction, int64_t id, const std::string& name) {
  transaction.run("CREATE TABLE IF NOT EXISTS names (id INTEGER PRIMARY KEY, name BLOB)");
  transaction.run("INSERT OR REPLACE INTO names VALUES (?, ?)", {id, Blob{name}});
}

std::string namesIn(Store& store) {
  std::string names;
  store.transact([&](Transaction& transaction) {
    transaction.run("SELECT id, name FROM names ORDER BY id", {}, [&](const Row& row) {
      names += std::to_string(row.integer(0)) + "=" + row.bytes(1) + ";";
    });
  });
  return names;
}

TEST(Store, WrittenRowsPersist) {
  const TemporaryDirectory directory;
  const std::string bytes("a\0'b", 4);
  {
    const auto store = openStore(directory.path() + "/new");
    EXPECT_TRUE(store->transact([&](Transaction& transaction) {
      putName(transaction, 7, bytes);
      EXPECT_EQ(transaction.lastKey(), 7);
      putName(transaction, 8, "");
      EXPECT_EQ(transaction.changedRows(), 1);
    }));
  }
  EXPECT_EQ(namesIn(*openStore(directory.path() + "/new")), "7=" + bytes + ";8=;");
}

TEST(Store, FailedTransactionsAreRolledBack) {
  const auto store = openStore("");
  store->transact([](Transaction& transaction) { putName(transaction, 1, "kept"); });
  std::string error;
  EXPECT_FALSE(store->transact(
      [](Transaction& transaction) {
        putName(transaction, 2, "gone");
        transaction.run("INSERT INTO nowhere VALUES (1)");
        putName(transaction, 3, "gone");
      },
      &error));
  EXPECT_EQ(error, "no such table: nowhere");
  EXPECT_FALSE(store->transact([](Transaction& transaction) {
    putName(transaction, 4, "gone");
    transaction.cancel();
  }));
  EXPECT_EQ(namesIn(*store), "1=kept;");
}

TEST(Store, UnusableFilesStayUnchanged) {
  struct {
    const char* what;
    void (*spoil)(std::string& content);
    const char* error;
  } const rows[] = {
      {"a text", [](std::string& content) { content = "hello\n"; }, "not the state of a vesk-device"},
      {"another program's", [](std::string& content) { content[68] = 'X'; },
       "not the state of a vesk-device"},
      {"a newer device's", [](std::string& content) { content[63] = 2; }, "newer vesk-device (format 2)"},
      {"cut", [](std::string& content) { content.resize(4096); }, "is damaged"},
      {"overwritten", [](std::string& content) { std::fill_n(content.begin() + 4096, 64, 'X'); },
       "is damaged"},
      {"a damaged schema", [](std::string& content) { std::fill_n(content.begin() + 100, 8, 'X'); },
       "is damaged"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const TemporaryDirectory directory;
    const std::string file = directory.path() + "/device.db";
    openStore(directory.path())->transact([](Transaction& transaction) { putName(transaction, 1, "name"); });
    std::string content = contentOf(file);
    ASSERT_GE(content.size(), 8192U);
    row.spoil(content);
    std::ofstream(file, std::ios::binary) << content;

    std::string error;
    EXPECT_EQ(Store::open(directory.path(), &error), nullptr);
    EXPECT_TRUE(error.starts_with(file + ": ")) << error;
    EXPECT_NE(error.find(row.error), std::string::npos) << error;
    EXPECT_EQ(contentOf(file), content);
  }
}

TEST(Store, MissingDirectoryIsReported) {
  const TemporaryDirectory directory;
  std::string error;
  EXPECT_EQ(Store::open(directory.path() + "/a/b", &error), nullptr);
  EXPECT_EQ(error, directory.path() + "/a/b: No such file or directory");
}

TEST(Store, FullDiskIsReportedAndSurvived) {
  const TemporaryDirectory directory;
  const auto store = openStore(directory.path());
  const auto put = [&](int64_t id, std::string* error) {
    return store->transact(
        [&](Transaction& transaction) { putName(transaction, id, std::string(20'000, 'x')); }, error);
  };
  std::string error;
  ASSERT_TRUE(put(1, &error)) << error;
  diskIsFull = true;
  const bool isSaved = put(2, &error);
  diskIsFull = false;
  EXPECT_FALSE(isSaved);
  EXPECT_EQ(error, "database or disk is full");
  EXPECT_EQ(namesIn(*store), "1=" + std::string(20'000, 'x') + ";");
  EXPECT_TRUE(put(3, &error)) << error;
  EXPECT_EQ(namesIn(*store).find(";3="), 20'002U);
}

constexpr int kKeys = 40;

/** Saves states until it is killed; all values of a state have the same number. */
CHILD_ROLE(saver) {
  Settings settings(openStore(args[0]));
  std::string error;
  if (!settings.load({}, &error)) return 1;
  parent.ready();
  for (;;) {
    const std::string next = settings.use([](Values& values) {
      const std::string number = std::to_string(values.empty() ? 1 : std::stoi(values.begin()->second) + 1);
      // More than a page, of varying length.
      for (int key = 0; key < kKeys; ++key) {
        values["key" + std::to_string(key)] =
            number + std::string(static_cast<size_t>(100 + std::stoi(number) % 100), ' ');
      }
      return number;
    });
    if (!settings.save(&error)) return 1;
    parent.channel().send(next);
  }
}

TEST(Store, FileIsLockedAgainstASecondDevice) {
  const TemporaryDirectory directory;
  ChildProcess other("saver", {directory.path()});
  std::string error;
  EXPECT_EQ(Store::open(directory.path(), &error), nullptr);
  EXPECT_EQ(error, directory.path() + "/device.db: another vesk-device has it open");
  other.kill();
  EXPECT_NE(openStore(directory.path()), nullptr);
}

TEST(Store, StateIsConsistentAfterKills) {
  const TemporaryDirectory directory;
  std::mt19937 random(4711);
  for (int round = 0; round < 25; ++round) {
    int saved = 0;
    {
      ChildProcess device("saver", {directory.path()});
      for (auto states = random() % 4; states > 0; --states) saved = std::stoi(device.channel().receive());
      usleep(static_cast<useconds_t>(random() % 4000));
      device.kill();
    }
    Settings settings(openStore(directory.path()));
    std::string error;
    ASSERT_TRUE(settings.load({}, &error)) << error;
    settings.use([&](const Values& values) {
      ASSERT_TRUE(values.size() == kKeys || (saved == 0 && values.empty())) << values.size();
      for (const auto& [key, value] : values) ASSERT_EQ(value, values.begin()->second) << key;
      if (saved != 0) {
        ASSERT_GE(std::stoi(values.begin()->second), saved);
      }
    });
    if (HasFatalFailure()) return;
  }
}

}  // namespace
