#include <binder/ProcessState.h>
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <list>
#include <sstream>

#include "LogCapture.h"
#include "TestService.h"

/* Failures of system calls and of the C library under the transport. The wrappers below replace
 * those functions and fail on demand. Each failure either causes an error whose log line names the
 * cause, or only a delay. Afterwards the transport works again. */

using android::DEAD_OBJECT;
using android::FAILED_TRANSACTION;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;

namespace {

constexpr int kAlways = 1 << 30;

std::atomic<const char*> failing = nullptr;
std::atomic<int> errorNumber = 0;
std::atomic<int> timesLeft = 0;
/** True on threads whose calls never fail on demand. */
thread_local bool isExempt = false;

bool fails(const char* call) {
  const char* const name = failing;
  if (isExempt || name == nullptr || std::strcmp(name, call) != 0) return false;
  if (timesLeft.fetch_sub(1) <= 0) return false;
  errno = errorNumber;
  return true;
}

void arm(const char* call, int error, int times) {
  failing = nullptr;
  errorNumber = error;
  timesLeft = times;
  failing = call;
}
void disarm() { failing = nullptr; }

}  // namespace

#define FAILING(result, failure, name, parameters, arguments, specifiers)                       \
  extern "C" __attribute__((visibility("default"))) result name parameters specifiers {         \
    if (fails(#name)) return failure;                                                           \
    static const auto next = reinterpret_cast<result(*) parameters>(::dlsym(RTLD_NEXT, #name)); \
    return next arguments;                                                                      \
  }

FAILING(ssize_t, -1, send, (int fd, const void* bytes, size_t size, int flags), (fd, bytes, size, flags), )
FAILING(ssize_t, -1, recv, (int fd, void* bytes, size_t size, int flags), (fd, bytes, size, flags), )
FAILING(ssize_t, -1, sendmsg, (int fd, const msghdr* message, int flags), (fd, message, flags), )
FAILING(ssize_t, -1, recvmsg, (int fd, msghdr* message, int flags), (fd, message, flags), )
FAILING(int, -1, connect, (int fd, const sockaddr* address, socklen_t size), (fd, address, size), )
FAILING(int, -1, accept4, (int fd, sockaddr* address, socklen_t* size, int flags),
        (fd, address, size, flags), )
FAILING(int, -1, poll, (pollfd * fds, nfds_t count, int timeout), (fds, count, timeout), )
FAILING(int, -1, socket, (int domain, int type, int protocol), (domain, type, protocol), noexcept)
FAILING(int, -1, epoll_create1, (int flags), (flags), noexcept)
FAILING(int, -1, epoll_ctl, (int epoll, int what, int fd, epoll_event* event), (epoll, what, fd, event),
        noexcept)
FAILING(int, -1, memfd_create, (const char* name, unsigned flags), (name, flags), noexcept)
FAILING(int, -1, fallocate, (int fd, int mode, off_t start, off_t size), (fd, mode, start, size), )
FAILING(int, -1, dup, (int fd), (fd), noexcept)
FAILING(int, -1, fstat, (int fd, struct stat* info), (fd, info), noexcept)
FAILING(int, errno, pthread_create,
        (pthread_t * thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument),
        (thread, attributes, run, argument), noexcept)

namespace {

sp<IBinder> lookUp() { return android::defaultServiceManager()->checkService(String16("test.service")); }

/** Echoes a call that fits into a slot, and one of several packets. */
android::status_t use(const sp<IBinder>& service) {
  if (const int32_t answer = increment(service, 1); answer != 2) return answer;
  const std::vector<uint8_t> bytes(300'000, 0x5a);
  Parcel data;
  Parcel reply;
  data.write(bytes.data(), bytes.size());
  const android::status_t status = service->transact(TestObject::kEcho, data, &reply);
  if (status != OK) return status;
  return reply.dataSize() == bytes.size() && std::memcmp(reply.data(), bytes.data(), bytes.size()) == 0
             ? OK
             : android::BAD_VALUE;
}

std::string textOf(const std::vector<vesk::test::LogLine>& lines) {
  std::string text;
  for (const auto& line : lines) text += line.text + "\n";
  return text;
}

/** A service whose next fault is set by the message "call error times". Any other message clears
 * the fault. Each message is answered with the log lines since the previous one. */
CHILD_ROLE(faultyService) {
  isExempt = true;
  vesk::test::LogCapture log;
  if (android::defaultServiceManager()->addService(String16("test.service"), new TestObject) != OK) return 1;
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  // Never destroyed: other threads may still read the name of the previous fault.
  static std::list<std::string>& calls = *new std::list<std::string>;
  for (std::string command; !(command = parent.channel().receive(-1)).empty();) {
    disarm();
    int error = 0;
    int times = 0;
    if (std::istringstream(command) >> calls.emplace_back() >> error >> times)
      arm(calls.back().c_str(), error, times);
    parent.channel().send(textOf(log.take()) + " ");
  }
  return 0;
}

enum class Where { kCaller, kService };

struct FaultRow {
  Where where;
  const char* call;
  int error;
  int times;
  /** The status of a call over existing connections. */
  android::status_t standing;
  /** Whether a lookup that needs new connections succeeds. */
  bool isFound;
  const char* logged;
};

constexpr Where kCaller = Where::kCaller;
constexpr Where kService = Where::kService;

constexpr FaultRow kRows[] = {
    {kCaller, "recv", EINTR, 3, OK, true, ""},
    {kCaller, "sendmsg", EINTR, 3, OK, true, ""},
    {kCaller, "recvmsg", EINTR, 3, OK, true, ""},
    {kCaller, "poll", EINTR, 3, OK, true, ""},
    {kCaller, "connect", EINTR, 1, OK, true, ""},
    {kService, "send", EINTR, 3, OK, true, ""},
    {kService, "recv", EINTR, 3, OK, true, ""},
    {kService, "sendmsg", EINTR, 3, OK, true, ""},
    {kService, "recvmsg", EINTR, 3, OK, true, ""},
    {kService, "accept4", EINTR, 3, OK, true, ""},
    // The rest of a frame that does not fit into a slot.
    {kCaller, "sendmsg", ENOMEM, kAlways, FAILED_TRANSACTION, false, "Cannot allocate memory"},
    {kCaller, "recvmsg", ENOMEM, kAlways, FAILED_TRANSACTION, true, "Cannot allocate memory"},
    {kService, "sendmsg", ENOMEM, kAlways, DEAD_OBJECT, true, "Cannot allocate memory"},
    {kCaller, "socket", ENFILE, kAlways, OK, false, "Too many open files in system"},
    {kCaller, "connect", EAGAIN, kAlways, OK, false, "it takes no connections"},
    {kCaller, "connect", EACCES, kAlways, OK, false, "Permission denied"},
    {kCaller, "epoll_ctl", ENOSPC, kAlways, OK, false, "No space left on device"},
    {kCaller, "memfd_create", EMFILE, kAlways, OK, false, "no shared memory for a channel"},
    {kCaller, "fallocate", ENOMEM, kAlways, OK, false, "Cannot allocate memory"},
    {kService, "send", ENOBUFS, kAlways, OK, false, "No buffer space available"},
    {kService, "fstat", ENOMEM, kAlways, OK, false, "closes new channels"},
    // The transport waits for the end of a temporary shortage.
    {kService, "accept4", EMFILE, 3, OK, true, "can't accept connections: Too many open files"},
    {kService, "accept4", ENOMEM, 3, OK, true, "can't accept connections: Cannot allocate memory"},
    {kService, "pthread_create", EAGAIN, 3, OK, true, "no thread for a caller"},
    {kService, "dup", EMFILE, 3, OK, true, ""},
    {kService, "fstat", ENOMEM, 2, OK, true, ""},
};

/** Uses the service during the fault, over existing or over new connections. */
void expectOfRow(const FaultRow& row, vesk::test::ChildProcess& process, bool isStanding) {
  SCOPED_TRACE(isStanding ? "existing connections" : "new connections");
  const auto command = [&](const std::string& message) {
    process.channel().send(message);
    return process.channel().receive();
  };
  sp<IBinder> service;
  if (isStanding) service = lookUp();
  vesk::test::LogCapture log;
  if (row.where == kService) {
    command(std::string(row.call) + " " + std::to_string(row.error) + " " + std::to_string(row.times));
  } else {
    arm(row.call, row.error, row.times);
  }
  if (!isStanding) service = lookUp();
  const android::status_t status = service == nullptr ? OK : use(service);
  disarm();
  std::string logged;
  const auto takeLog = [&] {
    logged += (row.where == kService ? command("clear") : "") + textOf(log.take());
  };
  takeLog();
  // The service may log after the call has returned: it logs on another thread.
  if (!isStanding) {
    waitUntil("the log", [&] {
      if (logged.find(row.logged) == std::string::npos) takeLog();
      return logged.find(row.logged) != std::string::npos;
    });
  }
  EXPECT_EQ(service != nullptr, isStanding || row.isFound);
  if (isStanding) {
    EXPECT_EQ(status, row.standing);
  }
  // Not every fault affects every call.
  if (status != OK || service == nullptr) {
    EXPECT_NE(logged.find(row.logged), std::string::npos) << logged;
    EXPECT_STRNE(row.logged, "");
  }
  if (!isStanding && row.where == kCaller) {
    EXPECT_LT(timesLeft.load(), row.times) << "the fault did not occur";
  }
  EXPECT_LT(std::count(logged.begin(), logged.end(), '\n'), 3) << logged;
  service = lookUp();
  ASSERT_NE(service, nullptr) << "after the fault";
  EXPECT_EQ(use(service), OK);
}

TEST(FaultTest, LogsTheCauseAndRecovers) {
  android::ProcessState::self()->startThreadPool();
  for (const FaultRow& row : kRows) {
    SCOPED_TRACE(std::string(row.call) + " in the " + (row.where == kCaller ? "caller" : "service") + ": " +
                 std::strerror(row.error));
    vesk::test::ChildProcess process("faultyService");
    for (const bool isStanding : {false, true}) expectOfRow(row, process, isStanding);
  }
}

/** A process whose first use of the transport fails. Sends its log lines. */
CHILD_ROLE(firstUser) {
  vesk::test::LogCapture log;
  const auto registers = [] {
    return android::defaultServiceManager()->addService(String16("test.first"), new TestObject) == OK;
  };
  arm(args[0].c_str(), std::stoi(args[1]), kAlways);
  const bool cantRegister = !registers();
  const bool cantFind = lookUp() == nullptr;
  disarm();
  const std::string logged = textOf(log.take());
  const bool hasRecovered = registers() && lookUp() != nullptr && use(lookUp()) == OK;
  parent.ready();
  parent.channel().send(logged);
  return cantRegister && cantFind && hasRecovered ? 0 : 1;
}

TEST(FaultTest, FirstUseFailsAndRecovers) {
  const ServiceProcess process("test.service");
  const struct {
    const char* call;
    int error;
    const char* logged;
  } rows[] = {{"epoll_create1", EMFILE, "Too many open files"},
              {"pthread_create", EAGAIN, "Resource temporarily unavailable"},
              {"epoll_ctl", ENOMEM, "Cannot allocate memory"}};
  for (const auto& row : rows) {
    vesk::test::ChildProcess child("firstUser", {row.call, std::to_string(row.error)});
    const std::string logged = child.channel().receive();
    EXPECT_NE(logged.find(std::string("can't wait for connections: ") + row.logged), std::string::npos)
        << logged;
    EXPECT_NE(logged.find(std::string("can't wait for the end of a process: ") + row.logged),
              std::string::npos)
        << logged;
    EXPECT_EQ(child.wait(), 0) << row.call;
  }
}

}  // namespace
