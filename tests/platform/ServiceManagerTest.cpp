#include <binder/ProcessState.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "TestService.h"

using android::BAD_VALUE;
using android::defaultServiceManager;
using android::IBinder;
using android::OK;
using android::PERMISSION_DENIED;
using android::sp;
using android::String16;
using android::String8;

namespace {

class ServiceManagerTest : public testing::Test {
 protected:
  ServiceManagerTest() {
    android::ProcessState::self()->startThreadPool();
    ::setenv("BINDER_LOOKUP_MS", "0", 1);
  }
  ~ServiceManagerTest() override { ::unsetenv("BINDER_LOOKUP_MS"); }
};

sp<IBinder> lookUp(const char* name) { return defaultServiceManager()->checkService(String16(name)); }

std::set<std::string> listed() {
  std::set<std::string> names;
  for (const String16& name : defaultServiceManager()->listServices()) names.insert(String8(name).c_str());
  return names;
}

TEST_F(ServiceManagerTest, RefusesInvalidNames) {
  const sp<IBinder> object = new TestObject();
  const auto add = [&](const std::string& name) {
    return defaultServiceManager()->addService(String16(name.data(), name.size()), object);
  };
  using namespace std::string_literals;
  for (const std::string& name :
       {""s, "."s, ".."s, ".hidden"s, "../escape"s, "a/b"s, "a\0b"s, "line\nbreak"s, std::string(128, 'n')}) {
    EXPECT_EQ(add(name), BAD_VALUE) << name;
    EXPECT_EQ(lookUp(name.c_str()), nullptr) << name;
  }
  for (const std::string& name : {"a"s, std::string(127, 'n'), "with space"s, "t\xc3\xbcr"s}) {
    EXPECT_EQ(add(name), OK) << name;
    EXPECT_EQ(lookUp(name.c_str()), object) << "the object itself in its own process";
  }
  EXPECT_EQ(defaultServiceManager()->addService(String16("null"), nullptr), BAD_VALUE);
}

TEST_F(ServiceManagerTest, LatestRegistrationWins) {
  ServiceProcess first("test.name");
  const sp<IBinder> before = lookUp("test.name");
  ASSERT_EQ(callWith(before, TestObject::kKeep, before), OK);
  {
    ServiceProcess second("test.name");
    const sp<IBinder> after = lookUp("test.name");
    EXPECT_NE(after, before);
    EXPECT_EQ(binderFrom(after, TestObject::kGetKept), nullptr) << "the new service";
    EXPECT_EQ(binderFrom(before, TestObject::kGetKept), before)
        << "the old service still serves existing references";
  }
  EXPECT_EQ(lookUp("test.name"), nullptr);
}

TEST_F(ServiceManagerTest, ServiceIsKeptUntilItsNameIsReplaced) {
  const int before = TestObject::alive;
  ASSERT_EQ(defaultServiceManager()->addService(String16("test.own"), new TestObject()), OK);
  EXPECT_EQ(TestObject::alive, before + 1);
  ASSERT_EQ(defaultServiceManager()->addService(String16("test.own"), new TestObject()), OK);
  EXPECT_EQ(TestObject::alive, before + 1);
  EXPECT_EQ(increment(lookUp("test.own"), 1), 2);
}

TEST_F(ServiceManagerTest, ConcurrentRegistrationsKeepTheService) {
  for (int round = 0; round < 100; ++round) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back(
          [] { EXPECT_EQ(defaultServiceManager()->addService(String16("test.own"), new TestObject()), OK); });
    }
    for (std::thread& thread : threads) thread.join();
    ASSERT_NE(lookUp("test.own"), nullptr);
  }
}

TEST_F(ServiceManagerTest, NamesOfDeadProcessesAreIgnored) {
  ServiceProcess alive("test.alive");
  {
    ServiceProcess killed("test.dead");
    EXPECT_EQ(listed().count("test.dead"), 1U);
    killed.kill();
  }
  EXPECT_EQ(lookUp("test.dead"), nullptr);
  EXPECT_EQ(listed().count("test.alive"), 1U);
  EXPECT_EQ(listed().count("test.dead"), 0U);
  ServiceProcess successor("test.dead");
  EXPECT_EQ(increment(lookUp("test.dead"), 1), 2);
}

TEST_F(ServiceManagerTest, DeadServiceIsNeverFound) {
  for (int round = 0; round < 20; ++round) {
    ServiceProcess process("test.dead");
    const sp<IBinder> held = lookUp("test.dead");
    ASSERT_NE(held, nullptr);
    process.kill();
    EXPECT_EQ(lookUp("test.dead"), nullptr) << "even before its death notification";
  }
}

TEST_F(ServiceManagerTest, ExitingProcessRemovesItsFiles) {
  const std::filesystem::path directory = std::getenv("BINDER_RUNTIME_DIR");
  const auto files = [&] {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
      names.insert(entry.path().filename());
    }
    return names;
  };
  lookUp("test.exiting");
  const std::set<std::string> before = files();
  {
    ServiceProcess process("test.exiting");
    EXPECT_NE(files(), before);
  }
  std::set<std::string> after = files();
  after.erase(".lock");
  // The process may also have removed files that other processes had left.
  EXPECT_TRUE(std::ranges::includes(before, after)) << testing::PrintToString(after);
}

TEST_F(ServiceManagerTest, WaitsForAnAbsentService) {
  const auto timed = [](const char* name) {
    const auto start = std::chrono::steady_clock::now();
    const sp<IBinder> service = defaultServiceManager()->getService(String16(name));
    return std::pair(service, std::chrono::steady_clock::now() - start);
  };
  using std::chrono::milliseconds;
  EXPECT_LT(timed("test.absent").second, milliseconds(1000));
  ::setenv("BINDER_LOOKUP_MS", "200", 1);
  EXPECT_EQ(timed("test.absent").first, nullptr);
  EXPECT_GE(timed("test.absent").second, milliseconds(200));

  // Unset and invalid values select the default.
  for (const char* value : {static_cast<const char*>(nullptr), "soon", "-1"}) {
    value == nullptr ? ::unsetenv("BINDER_LOOKUP_MS") : ::setenv("BINDER_LOOKUP_MS", value, 1);
    sp<IBinder> found;
    std::thread waiting([&] { found = timed("test.slow").first; });
    std::this_thread::sleep_for(milliseconds(100));
    ServiceProcess process("test.slow");
    waiting.join();
    EXPECT_NE(found, nullptr);
    process.kill();
  }
}

/** Exits with 0 if the service of that name answers. */
CHILD_ROLE(caller) {
  parent.ready();
  const sp<IBinder> service = lookUp(args[0].c_str());
  return service != nullptr && increment(service, 1) == 2 ? 0 : 1;
}

TEST_F(ServiceManagerTest, RegistersAfterTheDirectoryWasRemoved) {
  const sp<IBinder> object = new TestObject();
  ASSERT_EQ(defaultServiceManager()->addService(String16("test.before"), object), OK);
  std::filesystem::remove_all(std::getenv("BINDER_RUNTIME_DIR"));
  ASSERT_EQ(defaultServiceManager()->addService(String16("test.after"), object), OK);
  vesk::test::ChildProcess child("caller", {"test.after"});
  EXPECT_EQ(child.wait(), 0);
}

/** Registers in the directory that the test has prepared; the exit code is the status. */
CHILD_ROLE(registersIn) {
  ::setenv("BINDER_RUNTIME_DIR", args[0].c_str(), 1);
  // Root could write everywhere.
  if (args.size() > 1 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return 99;
  parent.ready();
  const sp<IBinder> object = new TestObject();
  return -defaultServiceManager()->addService(String16("test.elsewhere"), object);
}

TEST_F(ServiceManagerTest, UsesOnlyAPrivateDirectory) {
  const std::string base = std::getenv("BINDER_RUNTIME_DIR");
  const auto registerIn = [](const std::string& directory) {
    vesk::test::ChildProcess child("registersIn", {directory});
    return -child.wait();
  };
  EXPECT_EQ(registerIn(base + "/made"), OK);
  struct stat info;
  ASSERT_EQ(::stat((base + "/made").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700U);

  ASSERT_EQ(::mkdir((base + "/open").c_str(), 0700), 0);
  ASSERT_EQ(::chmod((base + "/open").c_str(), 0777), 0);
  EXPECT_EQ(registerIn(base + "/open"), PERMISSION_DENIED);
  std::ofstream(base + "/file") << "no directory";
  EXPECT_EQ(registerIn(base + "/file"), PERMISSION_DENIED);
  ASSERT_EQ(::symlink("made", (base + "/link").c_str()), 0);
  EXPECT_EQ(registerIn(base + "/link"), PERMISSION_DENIED);
  EXPECT_EQ(registerIn(base + "/absent/deeper"), android::NAME_NOT_FOUND);
  EXPECT_EQ(registerIn(base + "/" + std::string(120, 'd')), BAD_VALUE) << "too long for the path of a socket";
  if (::geteuid() == 0) {
    ASSERT_EQ(::mkdir((base + "/foreign").c_str(), 0700), 0);
    ASSERT_EQ(::chown((base + "/foreign").c_str(), 65534, 65534), 0);
    EXPECT_EQ(registerIn(base + "/foreign"), PERMISSION_DENIED);
    ASSERT_EQ(::chmod((base + "/foreign").c_str(), 0500), 0);
    ASSERT_EQ(::chmod(base.c_str(), 0711), 0);
    vesk::test::ChildProcess owner("registersIn", {base + "/foreign", "as its owner"});
    EXPECT_EQ(-owner.wait(), PERMISSION_DENIED) << "not writable";
  }
}

}  // namespace
