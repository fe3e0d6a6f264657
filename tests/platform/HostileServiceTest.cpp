#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <list>

#include "Frame.h"
#include "LogCapture.h"
#include "ParcelAccess.h"
#include "RawPeer.h"
#include "TestService.h"

/* Invalid answers of a registered process, and an untrusted runtime directory: the caller gets an
 * error, and still reaches other services. */

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;
using namespace android::transport;
using vesk::test::kStranger;
using vesk::test::RawPeer;

namespace {

/** The id of the hostile process. Each row has its own: the death of the previous process may not
 * have been noticed yet. */
uint64_t hostileProcess = 0x1000;

/** The answers of a hostile process. */
struct Answers {
  const char* what;
  std::string toWatch;
  std::string toAcquire;
  std::string toRequest;
};

template <class... Parts>
std::string bytes(const Parts&... parts) {
  std::string result;
  (result.append(reinterpret_cast<const char*>(&parts), sizeof(parts)), ...);
  return result;
}

FrameHeader reply(uint32_t dataSize = 0, uint32_t objectCount = 0) {
  return {.kind = FrameKind::kReply, .dataSize = dataSize, .objectCount = objectCount};
}

std::filesystem::path directory() { return std::getenv("BINDER_RUNTIME_DIR"); }

/** A hostile process in the runtime directory, with a service named "hostile". */
class HostileService {
 public:
  explicit HostileService(const Answers& answers)
      : answers_(answers), listening_(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof(address.sun_path), "%s/.process-%016x", directory().c_str(),
                  static_cast<unsigned>(hostileProcess));
    socket_ = address.sun_path;
    EXPECT_EQ(::bind(listening_.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(::listen(listening_.get(), 10), 0);
    char text[32];
    std::snprintf(text, sizeof(text), "%x:1", static_cast<unsigned>(hostileProcess));
    std::filesystem::create_symlink(text, directory() / "hostile");
    thread_ = std::thread([this] { run(); });
  }
  ~HostileService() {
    ::shutdown(listening_.get(), SHUT_RDWR);
    thread_.join();
    std::filesystem::remove(socket_);
    std::filesystem::remove(directory() / "hostile");
  }

 private:
  void run() {
    std::list<UniqueFd> connections;
    std::list<std::thread> threads;
    for (;;) {
      UniqueFd connection(::accept(listening_.get(), nullptr, nullptr));
      if (!connection.valid()) break;
      threads.emplace_back([this, fd = connection.get()] {
        serve(fd);
        ::shutdown(fd, SHUT_RDWR);
      });
      connections.push_back(std::move(connection));
    }
    for (const UniqueFd& connection : connections) ::shutdown(connection.get(), SHUT_RDWR);
    for (std::thread& thread : threads) thread.join();
  }

  void serve(int connection) const {
    Hello hello{};
    UniqueFd memory;
    pollfd poller{connection, POLLIN, 0};
    if (::poll(&poller, 1, -1) <= 0 || !receiveHello(connection, &hello, &memory)) return;
    if (hello.kind == ConnectionKind::kWatch) {
      const std::string& answer = answers_.toWatch;
      if (answer.empty() || ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL) <= 0) return;
      char byte;
      ::recv(connection, &byte, 1, 0);
      return;
    }
    vesk::test::RawSlots slots(SharedSlots::accept(memory));
    for (std::string bytes; (bytes = slots.receive(connection)).size() >= sizeof(FrameHeader);) {
      FrameHeader frame{};
      std::memcpy(&frame, bytes.data(), sizeof(frame));
      const std::string& answer = frame.kind == FrameKind::kAcquire ? answers_.toAcquire : answers_.toRequest;
      // A row without this answer ends the connection instead.
      if (answer.empty() || !slots.send(connection, answer)) return;
    }
  }

  const Answers answers_;
  std::string socket_;
  UniqueFd listening_;
  std::thread thread_;
};

class HostileServiceTest : public testing::Test {
 protected:
  HostileServiceTest() : honest("test.service"), service(honest.get()) {}
  ~HostileServiceTest() override { EXPECT_EQ(increment(service, 1), 2) << "the other service is reached"; }

  static sp<IBinder> lookUp(const char* name) {
    return android::defaultServiceManager()->checkService(String16(name));
  }

  ServiceProcess honest;
  const sp<IBinder> service;
};

TEST_F(HostileServiceTest, InvalidAnswers) {
  // isRefused() fills in the process.
  const std::string watch = bytes(Hello{.kind = ConnectionKind::kWatch, .process = 0});
  const std::string acquired = bytes(reply());
  FrameHeader otherVersion = reply();
  otherVersion.magic += 1;
  const std::string anothers = bytes(Hello{.kind = ConnectionKind::kWatch, .process = 5});
  const FlatBinder binder{.present = 1};
  const ObjectEntry unknown{.owner = 77, .number = 88, .offset = 4};
  const auto isRefused = [&](Answers answers) {
    ++hostileProcess;
    if (answers.toWatch.size() >= sizeof(Hello) && answers.toWatch != anothers) {
      std::memcpy(answers.toWatch.data() + offsetof(Hello, process), &hostileProcess, sizeof(hostileProcess));
    }
    const HostileService hostile(answers);
    sp<IBinder> object = lookUp("hostile");
    if (answers.toRequest.empty()) {
      EXPECT_EQ(object, nullptr) << answers.what;
      return;
    }
    ASSERT_NE(object, nullptr) << answers.what;
    Parcel data;
    Parcel result;
    EXPECT_NE(object->transact(IBinder::FIRST_CALL_TRANSACTION, data, &result), OK) << answers.what;
    EXPECT_EQ(result.dataSize(), 0U) << answers.what;
  };
  const Answers rows[] = {
      {"nothing", "", "", ""},
      {"a hello of another version",
       bytes(Hello{.magic = kMagic + 1, .kind = ConnectionKind::kWatch, .process = 0}), "", ""},
      {"another process's hello", anothers, "", ""},
      {"half a hello", watch.substr(0, 8), "", ""},
      {"more than a hello", watch + "more", "", ""},
      {"nothing to an acquire", watch, "", ""},
      {"an acquire that claims", watch, bytes(FrameHeader{.kind = FrameKind::kClaimed}), ""},
      {"half a frame", watch, acquired.substr(0, 20), ""},
      {"a frame of another version", watch, bytes(otherVersion), ""},
      {"a request for a reply", watch, acquired, bytes(FrameHeader{.kind = FrameKind::kRequest})},
      {"a reply of another version", watch, acquired, bytes(otherVersion)},
      {"less data than stated", watch, acquired, bytes(reply(8), uint32_t{0})},
      {"more data than stated", watch, acquired, bytes(reply(4), uint64_t{0})},
      {"above the limit", watch, acquired, bytes(reply(kMaxDataSize + 1))},
      {"more objects than fit", watch, acquired, bytes(reply(4, 1), uint32_t{0}, unknown)},
      {"a misplaced object", watch, acquired, bytes(reply(sizeof(binder), 1), binder, unknown)},
      {"half a header and no more", watch, acquired, acquired.substr(0, 20)},
  };
  for (const Answers& row : rows) isRefused(row);
}

TEST_F(HostileServiceTest, AFloodOfSilentConnections) {
  const std::string path = vesk::test::socketOf("test.service");
  std::list<RawPeer> silent;
  for (int i = 0; i < 600; ++i) silent.emplace_back(path);
  EXPECT_EQ(increment(service, 1), 2) << "while the connections are silent";
  silent.front().expectClosed("the oldest is closed for a new one");
  silent.back().expectClosed("timeout without a Hello");
}

TEST_F(HostileServiceTest, UnclaimedReplyIsHeldUntilItsReceiverEnds) {
  const auto alive = [&] {
    Parcel data;
    Parcel result;
    return service->transact(TestObject::kCountAlive, data, &result) == OK ? result.readInt32() : -1;
  };
  const std::string path = vesk::test::socketOf("test.service");
  const uint64_t number = vesk::test::numberOf("test.service");
  {
    RawPeer watch(path);
    watch.greet(ConnectionKind::kWatch);
    Hello answer{};
    ASSERT_TRUE(watch.receive(&answer, sizeof(answer)));
    RawPeer channel(path);
    channel.greet(ConnectionKind::kChannel);
    channel.sendFrame({.kind = FrameKind::kAcquire, .object = number});
    ASSERT_EQ(channel.statusOfReply(), OK);
    channel.sendFrame({.kind = FrameKind::kRequest, .object = number, .code = TestObject::kMakeObject});
    EXPECT_GT(channel.receiveFrame().size(), sizeof(FrameHeader));
    EXPECT_EQ(alive(), 2);
  }
  waitUntil("the object to be destroyed", [&] { return alive() == 1; });
}

/** Listens as another user on a socket in this user's directory. */
CHILD_ROLE(impostor) {
  const UniqueFd listening(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, (directory() / ".process-0000000000000099").c_str());
  if (::bind(listening.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) return 1;
  if (::setgid(65534) != 0 || ::setuid(65534) != 0 || ::listen(listening.get(), 10) != 0) return 2;
  parent.ready();
  parent.waitForEnd();
  return 0;
}

TEST_F(HostileServiceTest, SendsNothingToAnotherUsersProcess) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to change the user";
  const vesk::test::ChildProcess child("impostor");
  std::filesystem::create_symlink("99:1", directory() / "tricky");
  vesk::test::LogCapture log;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp("tricky"), nullptr);
  const auto lines = log.take();
  ASSERT_EQ(lines.size(), 1U) << "logged once";
  EXPECT_NE(lines[0].text.find(".process-0000000000000099 belongs to another user"), std::string::npos)
      << lines[0];
  std::filesystem::remove(directory() / "tricky");
}

TEST_F(HostileServiceTest, InvalidServiceLinks) {
  const struct {
    const char* what;
    const char* text;
  } rows[] = {{"a file", "/etc/passwd"},
              {"a path", "../../1:1"},
              {"no number", "zz:1"},
              {"three numbers", "1:1:1"},
              {"an absent process", "99:1"},
              {"very long", "11111111111111111111111111111111111111111111111111111111111111111111:1"}};
  for (const auto& row : rows) {
    std::filesystem::create_symlink(row.text, directory() / "tricky");
    EXPECT_EQ(lookUp("tricky"), nullptr) << row.what;
    std::filesystem::remove(directory() / "tricky");
  }
  std::filesystem::create_directory(directory() / "tricky");
  EXPECT_EQ(lookUp("tricky"), nullptr) << "a directory";
  EXPECT_NE(android::defaultServiceManager()->addService(String16("tricky"), new TestObject), OK);
  std::filesystem::remove(directory() / "tricky");
}

TEST_F(HostileServiceTest, UntrustedDirectory) {
  vesk::test::LogCapture log;
  const struct {
    const char* fault;
    std::function<void()> make;
    std::function<void()> repair;
  } rows[] = {
      {"can be written by others", [] { ::chmod(directory().c_str(), 0777); },
       [] { ::chmod(directory().c_str(), 0700); }},
      {"belongs to another user", [] { ::chown(directory().c_str(), 65534, 65534); },
       [] { ::chown(directory().c_str(), 0, 0); }},
      {"is not a directory",
       [] {
         std::filesystem::rename(directory(), directory().string() + ".real");
         std::filesystem::create_symlink(directory().string() + ".real", directory());
       },
       [] {
         std::filesystem::remove(directory());
         std::filesystem::rename(directory().string() + ".real", directory());
       }},
      {"No such file or directory",
       [] { std::filesystem::rename(directory(), directory().string() + ".away"); },
       [] { std::filesystem::rename(directory().string() + ".away", directory()); }},
  };
  for (const auto& row : rows) {
    if (std::string(row.fault) == "belongs to another user" && ::geteuid() != 0) continue;
    row.make();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp("test.service"), nullptr) << row.fault;
    const auto lines = log.take();
    EXPECT_EQ(lines.size(), 1U) << row.fault << ": logged once, not for each attempt";
    if (!lines.empty()) {
      EXPECT_NE(lines[0].text.find(row.fault), std::string::npos) << lines[0];
    }
    row.repair();
    EXPECT_NE(lookUp("test.service"), nullptr) << row.fault << ", repaired";
  }
}

TEST_F(HostileServiceTest, FilesOfKilledProcessesAreRemoved) {
  const auto leave = [](const char* name) { std::filesystem::create_symlink("gone", directory() / name); };
  leave(".unready-0000000000000001");
  leave(".new-0000000000000001");
  ServiceProcess next("next.service");
  for (const auto& entry : std::filesystem::directory_iterator(directory())) {
    const std::string name = entry.path().filename();
    EXPECT_FALSE(name.starts_with(".unready-") || name.starts_with(".new-")) << name;
  }
}

}  // namespace
