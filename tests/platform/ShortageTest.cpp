#include <binder/ProcessState.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>

#include "LogCapture.h"
#include "RawPeer.h"
#include "TestService.h"

/* A temporary shortage or a stopped process fails only the calls made meanwhile. */

using android::DEAD_OBJECT;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;

namespace {

class ShortageTest : public testing::Test {
 protected:
  ShortageTest() : process("test.service") { android::ProcessState::self()->startThreadPool(); }

  ServiceProcess process;
};

sp<IBinder> lookUp() { return android::defaultServiceManager()->checkService(String16("test.service")); }

/** Connects until the queue of the listening socket is full. */
void fillQueueOf(const std::string& socketPath) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, socketPath.c_str());
  for (int connected = 0; connected == 0;) {
    const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    ::close(fd);
  }
}

void setTimer(suseconds_t microseconds) {
  const itimerval timer = {{0, microseconds}, {0, microseconds}};
  ASSERT_EQ(::setitimer(ITIMER_REAL, &timer, nullptr), 0);
}

class StoppedProcessTest : public ShortageTest, public testing::WithParamInterface<bool> {};

INSTANTIATE_TEST_SUITE_P(Queue, StoppedProcessTest, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "Full" : "Free"; });

TEST_P(StoppedProcessTest, TimesOutAndIsFoundAgain) {
  process.child().suspend();
  if (GetParam()) fillQueueOf(vesk::test::socketOf("test.service"));
  const auto start = std::chrono::steady_clock::now();
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  ASSERT_EQ(::sigaction(SIGALRM, &action, nullptr), 0);
  setTimer(500'000);
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      EXPECT_EQ(lookUp(), nullptr);
    });
  }
  // The kernel delivers the timer's signals to the main thread, which connects on behalf of all.
  EXPECT_EQ(lookUp(), nullptr);
  for (std::thread& thread : threads) thread.join();
  // All threads wait for the same five seconds, regardless of signals.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(9));
  setTimer(0);
  process.child().resume();
  for (int i = 0; i < 2; ++i) {
    const sp<IBinder> service = lookUp();
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(increment(service, 1), 2);
  }
}

TEST_F(ShortageTest, FailedAcquireDoesNotMarkTheObjectDead) {
  const sp<IBinder> service = process.get();
  const auto limitFiles = [&](int32_t number) {
    Parcel data;
    Parcel reply;
    data.writeInt32(number);
    return service->transact(TestObject::kLimitFiles, data, &reply);
  };
  const sp<IBinder> object = new TestObject();
  ASSERT_EQ(limitFiles(1), OK);
  EXPECT_EQ(callWith(service, TestObject::kKeep, object), android::FAILED_TRANSACTION);
  ASSERT_EQ(limitFiles(0), OK);
  ASSERT_EQ(callWith(service, TestObject::kKeep, object), OK);
  Parcel data;
  Parcel reply;
  data.writeInt32(1);
  ASSERT_EQ(service->transact(TestObject::kCallKept, data, &reply), OK);
  EXPECT_EQ(reply.readInt32(), OK);
}

TEST_F(ShortageTest, DescriptorShortageIsLoggedOnce) {
  ASSERT_NE(lookUp(), nullptr);
  vesk::test::LogCapture log;
  rlimit before;
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(lookUp(), nullptr);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  const auto lines = log.take();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines[0].text.find("Too many open files"), std::string::npos) << lines[0];
  EXPECT_NE(lookUp(), nullptr);
}

int32_t aliveAt(const sp<IBinder>& service) {
  Parcel data;
  Parcel reply;
  return service->transact(TestObject::kCountAlive, data, &reply) == OK ? reply.readInt32() : -1;
}

/** Waits until the service's objects are destroyed. A process of its own, so that the releases must
 * arrive without further calls of the former holder. */
CHILD_ROLE(observer) {
  const sp<IBinder> service = android::defaultServiceManager()->getService(String16("test.service"));
  parent.ready();
  for (int i = 0; i < 1000; ++i) {
    if (aliveAt(service) == 1) return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return 1;
}

TEST_F(ShortageTest, ReleasesToAStoppedProcessDoNotBlock) {
  const sp<IBinder> service = process.get();
  std::vector<sp<IBinder>> objects;
  for (int i = 0; i < 2000; ++i) objects.push_back(binderFrom(service, TestObject::kMakeObject));
  ASSERT_EQ(aliveAt(service), 2001);
  process.child().suspend();
  objects.clear();
  process.child().resume();
  EXPECT_EQ(vesk::test::ChildProcess("observer").wait(), 0);
}

TEST_F(ShortageTest, LateAcquireIsReleased) {
  const sp<IBinder> service = process.get();
  ServiceProcess keeper("test.keeper");
  const sp<IBinder> keeping = keeper.get();
  ASSERT_EQ(callWith(keeping, TestObject::kKeep, binderFrom(service, TestObject::kMakeObject)), OK);
  process.child().suspend();
  EXPECT_EQ(binderFrom(keeping, TestObject::kGetKept), nullptr) << "the owner does not answer";
  process.child().resume();
  Parcel none;
  Parcel reply;
  EXPECT_EQ(keeping->transact(TestObject::kDropKept, none, &reply), OK);
  waitUntil("the object to be destroyed", [&] { return aliveAt(service) == 1; });
}

/** A service with a limit on descriptors or memory. */
CHILD_ROLE(limitedService) {
  const int resource = args[0] == "descriptors" ? RLIMIT_NOFILE : RLIMIT_AS;
  const auto number = static_cast<rlim_t>(args[0] == "descriptors" ? 40 : 700 << 20);
  const rlimit limit{number, number};
  if (::setrlimit(static_cast<__rlimit_resource>(resource), &limit) != 0) return 2;
  vesk::test::LogCapture log;
  android::defaultServiceManager()->addService(String16("test.limited"), new TestObject());
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

class LimitedServiceTest : public ShortageTest, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Limits, LimitedServiceTest, testing::Values("descriptors", "memory"),
                         [](const auto& parameter) { return std::string(parameter.param); });

TEST_P(LimitedServiceTest, AnswersABurstOfCallersAndShrinks) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  if (std::string(GetParam()) == "memory") GTEST_SKIP() << "the sanitizers need the address space";
#endif
  vesk::test::ChildProcess limited("limitedService", {GetParam()});
  const sp<IBinder> service = android::defaultServiceManager()->getService(String16("test.limited"));
  ASSERT_NE(service, nullptr);
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 120; ++i) {
    threads.emplace_back([&] {
      for (int call = 0; call < 2; ++call) {
        Parcel data;
        Parcel reply;
        if (service->transact(TestObject::kSleep, data, &reply) != OK) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  const std::filesystem::path tasks = "/proc/" + std::to_string(limited.pid()) + "/task";
  waitUntil("threads to end",
            [&] { return std::distance(std::filesystem::directory_iterator(tasks), {}) < 16; });
  waitUntil("descriptors to be closed",
            [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}) < 40; });
  EXPECT_EQ(increment(service, 1), 2);
}

bool isForked = false;

}  // namespace

/** Called by the leak sanitizer. In a forked child the memory of the parent's other threads looks
 * leaked. */
extern "C" int __lsan_is_turned_off();
extern "C" int __lsan_is_turned_off() { return isForked ? 1 : 0; }

namespace {

/** Forks repeatedly while a thread uses a service. The children exit through the static destructors
 * of their parent. */
CHILD_ROLE(forker) {
  static sp<IBinder> service;  // Its destructor runs in both processes.
  static sp<IBinder> own = new TestObject();
  service = android::defaultServiceManager()->getService(String16("test.service"));
  const auto addOwn = [] { return android::defaultServiceManager()->addService(String16("test.own"), own); };
  const auto findOwn = [] { return android::defaultServiceManager()->checkService(String16("test.own")); };
  if (addOwn() != OK) return 4;
  parent.ready();
  std::atomic<bool> ends = false;
  std::thread user([&] {
    while (!ends) binderFrom(service, TestObject::kMakeObject);
  });
  int wrong = 0;
  for (int i = 0; i < 60; ++i) {
    const pid_t child = ::fork();
    if (child == 0) {
      isForked = true;
      ::alarm(10);
      if (i % 2 == 0) std::exit(0);
      const bool isRefused =
          increment(service, 1) == android::FAILED_TRANSACTION &&
          callWith(service, TestObject::kKeep, new TestObject()) == android::FAILED_TRANSACTION &&
          addOwn() == android::FAILED_TRANSACTION && findOwn() == nullptr;
      std::exit(isRefused ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    if (status != 0) ++wrong;
  }
  ends = true;
  user.join();
  const std::clock_t before = std::clock();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const bool isBusy = std::clock() - before > CLOCKS_PER_SEC / 10;
  return increment(service, 1) == 2 && findOwn() == own && !isBusy ? wrong : 100;
}

TEST_F(ShortageTest, AForkedChildLeavesItsParentAlone) {
  vesk::test::ChildProcess child("forker");
  EXPECT_EQ(child.wait(), 0);
}

/** Makes a call while the limit on file sizes is below the memory of a channel. */
CHILD_ROLE(smallFiles) {
  const rlimit limit{4096, 4096};
  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
  parent.ready();
  vesk::test::LogCapture log;
  const bool isFound = lookUp() != nullptr;
  return !isFound && log.take()[0].text == "no shared memory for a channel: File too large" ? 0 : 1;
}

TEST_F(ShortageTest, FileSizeLimitIsAnError) { EXPECT_EQ(vesk::test::ChildProcess("smallFiles").wait(), 0); }

CHILD_ROLE(lockHolder) {
  const int lock =
      ::open((std::string(std::getenv("BINDER_RUNTIME_DIR")) + "/.lock").c_str(), O_RDWR | O_CLOEXEC);
  if (::flock(lock, LOCK_EX) != 0) return 1;
  parent.ready();
  parent.waitForEnd();
  return 0;
}

TEST_F(ShortageTest, RegistersWhileAnotherProcessHoldsTheLock) {
  const vesk::test::ChildProcess holder("lockHolder");
  std::vector<std::thread> threads;
  // All threads stop waiting for the lock at the same time.
  for (int i = 0; i < 100; ++i) {
    threads.emplace_back([i] {
      const String16 name(("test." + std::to_string(i)).c_str());
      const sp<IBinder> object = new TestObject();
      EXPECT_EQ(android::defaultServiceManager()->addService(name, object), OK);
      EXPECT_EQ(android::defaultServiceManager()->checkService(name), object);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

std::atomic<int> blockedLogs = 0;
std::atomic<bool> mayLog = false;

TEST_F(ShortageTest, BlockedLoggerAndDescriptorShortageDoNotBlockOtherProcesses) {
  const auto add = [] {
    return android::defaultServiceManager()->addService(String16("test.own"), new TestObject());
  };
  ASSERT_EQ(add(), OK);
  const std::string path = vesk::test::socketOf("test.own");
  vesk::test::RawPeer first(path);
  first.greet(android::transport::ConnectionKind::kWatch);
  android::transport::Hello hello{};
  ASSERT_TRUE(first.receive(&hello, sizeof(hello)));
  __android_log_set_logger([](const __android_log_message*) {
    ++blockedLogs;
    mayLog.wait(false);
  });
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, path.c_str());
  const android::transport::UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  rlimit before;
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  waitUntil("the failure to be logged", [] { return blockedLogs > 0; });
  const std::clock_t start = std::clock();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 10) << "a busy loop";
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);

  vesk::test::RawPeer second(path);
  second.greet(android::transport::ConnectionKind::kChannel);
  second.sendFrame(
      {.kind = android::transport::FrameKind::kAcquire, .object = vesk::test::numberOf("test.own")});
  EXPECT_EQ(second.statusOfReply(), OK) << "while the logger blocks";
  ASSERT_EQ(::unlink(path.c_str()), 0);
  EXPECT_EQ(add(), OK) << "on another socket";
  EXPECT_EQ(blockedLogs, 1);
  mayLog = true;
  mayLog.notify_all();
  __android_log_set_logger(nullptr);
}

}  // namespace
