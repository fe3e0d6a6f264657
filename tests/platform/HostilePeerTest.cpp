#include <binder/HostPlatform.h>
#include <binder/ProcessState.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <list>
#include <random>

#include "Frame.h"
#include "ParcelAccess.h"
#include "RawPeer.h"
#include "TestService.h"

/* Raw connections to a service process: invalid input costs at most that connection. */

using android::DEAD_OBJECT;
using android::IBinder;
using android::OK;
using android::sp;
using namespace android::transport;
using vesk::test::kStranger;
using vesk::test::numberOf;
using vesk::test::RawPeer;
using vesk::test::socketOf;

namespace {

class HostilePeerTest : public testing::Test {
 protected:
  HostilePeerTest()
      : process("test.service"),
        service(process.get()),
        path(socketOf("test.service")),
        number(numberOf("test.service")),
        watch(path) {
    watch.greet(ConnectionKind::kWatch);
    Hello answer{};
    EXPECT_TRUE(watch.receive(&answer, sizeof(answer)));
    EXPECT_EQ(answer.magic, kMagic);
  }
  ~HostilePeerTest() override {
    EXPECT_EQ(increment(service, 1), 2) << "the service still answers other processes";
    process.child().stop();
  }

  RawPeer channel() {
    RawPeer peer(path);
    peer.greet(ConnectionKind::kChannel);
    return peer;
  }

  ServiceProcess process;
  const sp<IBinder> service;
  const std::string path;
  const uint64_t number;
  RawPeer watch;
};

TEST_F(HostilePeerTest, InvalidHello) {
  const auto refused = [&](const char* what, const auto& bytes) {
    RawPeer peer(path);
    peer.send(&bytes, sizeof(bytes));
    peer.expectClosed(what);
  };
  refused("too short", char{'x'});
  refused("too long", std::array<char, 5000>{});
  refused("no magic", Hello{.magic = 1, .kind = ConnectionKind::kChannel, .process = kStranger});
  refused("unknown kind", Hello{.kind = ConnectionKind{7}, .process = kStranger});
  refused("a channel of an unknown process", Hello{.kind = ConnectionKind::kChannel, .process = 12345});
  refused("a process that is connected already", Hello{.kind = ConnectionKind::kWatch, .process = kStranger});
}

TEST_F(HostilePeerTest, InvalidWatchMessageDropsTheHolder) {
  RawPeer working = channel();
  working.sendFrame({.kind = FrameKind::kAcquire, .object = number});
  EXPECT_EQ(working.statusOfReply(), OK);
  watch.send("hello", 5);
  watch.expectClosed("not a list of releases");
  // The references of the process end with its watch connection.
  working.sendFrame({.kind = FrameKind::kRequest, .object = number, .code = IBinder::PING_TRANSACTION});
  EXPECT_EQ(working.statusOfReply(), DEAD_OBJECT);
  working.sendFrame({.kind = FrameKind::kAcquire, .object = number});
  EXPECT_EQ(working.statusOfReply(), DEAD_OBJECT);
}

TEST_F(HostilePeerTest, ForgedAndUnheldObjects) {
  RawPeer peer = channel();
  for (const uint64_t forged : {uint64_t{0}, uint64_t{1}, number + 1, ~uint64_t{0}}) {
    peer.sendFrame({.kind = FrameKind::kAcquire, .object = forged});
    EXPECT_EQ(peer.statusOfReply(), DEAD_OBJECT);
    peer.sendFrame({.kind = FrameKind::kRequest, .object = forged, .code = IBinder::PING_TRANSACTION});
    EXPECT_EQ(peer.statusOfReply(), DEAD_OBJECT);
  }
  peer.sendFrame({.kind = FrameKind::kRequest, .object = number, .code = IBinder::PING_TRANSACTION});
  EXPECT_EQ(peer.statusOfReply(), DEAD_OBJECT) << "known, but not held";
  const Release releases[5] = {number, number, number, 0, 1};
  watch.send(releases, sizeof(releases));
  peer.sendFrame({.kind = FrameKind::kAcquire, .object = number});
  EXPECT_EQ(peer.statusOfReply(), OK);
}

TEST_F(HostilePeerTest, InvalidFrames) {
  const FrameHeader request{.kind = FrameKind::kRequest, .object = number, .code = TestObject::kEcho};
  const auto refused = [&](const char* what, auto change, size_t bodySize) {
    RawPeer peer = channel();
    FrameHeader header = request;
    change(&header);
    peer.sendFrame(header, std::vector<uint8_t>(bodySize, 0xa5));
    peer.expectClosed(what);
  };
  using Header = FrameHeader*;
  refused(
      "no magic", [](Header h) { h->magic = 0; }, 0);
  refused(
      "unknown kind", [](Header h) { h->kind = FrameKind{99}; }, 0);
  refused(
      "a reply without a request", [](Header h) { h->kind = FrameKind::kReply; }, 0);
  refused(
      "a claim without a reply", [](Header h) { h->kind = FrameKind::kClaimed; }, 0);
  refused(
      "less data than stated", [](Header h) { h->dataSize = 100; }, 99);
  refused(
      "more data than stated", [](Header h) { h->dataSize = 100; }, 101);
  refused(
      "above the limit", [](Header h) { h->dataSize = kMaxDataSize + 1; }, 100);
  refused(
      "far above the limit", [](Header h) { h->dataSize = ~0U; }, 100);
  refused(
      "more objects than fit", [](Header h) { h->objectCount = 1; }, sizeof(ObjectEntry));
  refused(
      "very many objects", [](Header h) { h->objectCount = ~0U; }, 100);

  RawPeer half = channel();
  half.sendBytes(std::string(reinterpret_cast<const char*>(&request), sizeof(request) / 2));
  half.expectClosed("half a header");

  std::mt19937 random(1);
  for (int i = 0; i < 300; ++i) {
    RawPeer peer(path);
    std::string bytes(random() % 200 + 1, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    if (i % 2 == 0) {
      peer.greet(ConnectionKind::kChannel);
      peer.sendBytes(bytes);
    } else {
      peer.send(bytes.data(), bytes.size());
    }
    peer.expectClosed("noise");
  }
}

TEST_F(HostilePeerTest, IncompleteFrameAndSilentConnections) {
  RawPeer peer = channel();
  const FrameHeader header{.kind = FrameKind::kRequest, .object = number, .dataSize = 100'000};
  peer.sendFrame(header, std::vector<uint8_t>(SharedSlot::kCapacity - sizeof(header)));
  std::vector<RawPeer> silent;
  for (int i = 0; i < 100; ++i) silent.emplace_back(path);
  EXPECT_EQ(increment(service, 5), 6) << "while the other connections are open";
}

TEST_F(HostilePeerTest, UnreadObjectDeaths) {
  const android::String16 name("test.mortal");
  const sp<TestObject> object = new TestObject;
  ASSERT_EQ(android::defaultServiceManager()->addService(name, object), OK);
  RawPeer holder(socketOf("test.mortal"));
  holder.greet(ConnectionKind::kWatch);
  Hello answer{};
  ASSERT_TRUE(holder.receive(&answer, sizeof(answer)));
  RawPeer held(socketOf("test.mortal"));
  held.greet(ConnectionKind::kChannel);
  const auto isHeld = [&] {
    EXPECT_EQ(android::defaultServiceManager()->addService(name, object), OK);
    held.sendFrame({.kind = FrameKind::kAcquire, .object = numberOf("test.mortal")});
    return held.statusOfReply() == OK;
  };
  int deaths = 0;
  for (; deaths < 10'000 && isHeld(); ++deaths) android::host::killObject(object);
  int received = 0;
  for (ObjectDeath death = 0; holder.receive(&death, sizeof(death));) ++received;
  EXPECT_GT(received, 10);
  EXPECT_LT(deaths, 10'000) << "the holder counts as dead when no more deaths can be sent";
}

TEST_F(HostilePeerTest, UnreadReplies) {
  constexpr size_t kSize = 0x80000;
  std::list<RawPeer> channels;
  for (int i = 0; i < 10; ++i) {
    channels.push_back(channel());
    channels.back().sendFrame({.kind = FrameKind::kAcquire, .object = number});
    channels.back().sendFrame({.kind = FrameKind::kRequest,
                               .object = number,
                               .code = TestObject::kReplyOfSize,
                               .dataSize = sizeof(int32_t)},
                              std::vector<uint8_t>{0, 0, kSize >> 16, 0});
  }
  EXPECT_EQ(increment(service, 5), 6) << "while threads wait to send half a megabyte";
  for (RawPeer& late : channels) {
    EXPECT_EQ(late.statusOfReply(), OK);
    size_t left = sizeof(FrameHeader) + kSize - SharedSlot::kCapacity;
    std::vector<uint8_t> packet(kPacketSize);
    for (; left > kPacketSize; left -= kPacketSize) ASSERT_TRUE(late.receive(packet.data(), kPacketSize));
    EXPECT_TRUE(late.receive(packet.data(), left)) << "the rest";
  }
}

TEST_F(HostilePeerTest, InvalidMemory) {
  for (const char* memory : {"", "/dev/null"}) {
    const UniqueFd fd(::open(memory, O_RDWR | O_CLOEXEC));
    RawPeer peer(path);
    peer.greetWith(ConnectionKind::kChannel, fd.get());
    peer.expectClosed(memory);
  }
}

TEST_F(HostilePeerTest, InvalidBinders) {
  RawPeer peer = channel();
  peer.sendFrame({.kind = FrameKind::kAcquire, .object = number});
  ASSERT_EQ(peer.statusOfReply(), OK);

  // Two flattened binders, eight bytes apart.
  struct Data {
    FlatBinder first{.present = 1};
    uint64_t between = 0;
    FlatBinder second{.present = 1};
  };
  constexpr uint32_t kSecond = offsetof(Data, second);
  const auto statusWith = [&](const Data& data, const std::vector<ObjectEntry>& entries) {
    std::vector<uint8_t> body(sizeof(data) + entries.size() * sizeof(ObjectEntry));
    std::memcpy(body.data(), &data, sizeof(data));
    if (!entries.empty()) {
      std::memcpy(body.data() + sizeof(data), entries.data(), entries.size() * sizeof(ObjectEntry));
    }
    peer.sendFrame({.kind = FrameKind::kRequest,
                    .object = number,
                    .code = TestObject::kKeep,
                    .dataSize = sizeof(data),
                    .objectCount = static_cast<uint32_t>(entries.size())},
                   body);
    return peer.statusOfReply();
  };
  const auto at = [](uint32_t offset) { return ObjectEntry{.owner = 77, .number = 88, .offset = offset}; };
  EXPECT_EQ(statusWith({}, {at(0), at(kSecond)}), OK) << "objects of an absent process";
  EXPECT_EQ(statusWith({}, {at(kSecond), at(0)}), android::BAD_VALUE) << "out of order";
  EXPECT_EQ(statusWith({}, {at(0), at(0)}), android::BAD_VALUE) << "twice";
  EXPECT_EQ(statusWith({}, {at(4)}), android::BAD_VALUE) << "misplaced";
  EXPECT_EQ(statusWith({}, {at(kSecond + 4)}), android::BAD_VALUE) << "past the end";
  EXPECT_EQ(statusWith({}, {at(~0U - 3)}), android::BAD_VALUE) << "far past the end";
  EXPECT_EQ(statusWith({.first = {.type = 0}}, {at(0)}), android::BAD_VALUE) << "no binder there";
}

CHILD_ROLE(otherUser) {
  if (::setgid(65534) != 0 || ::setuid(65534) != 0) return 2;
  parent.ready();
  RawPeer peer(args[0]);
  // Without a Hello, the timeout would close the connection as well.
  peer.greet(ConnectionKind::kWatch);
  peer.expectClosed("another user");
  return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}

TEST_F(HostilePeerTest, AnotherUserIsRefused) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to change the user";
  // Opens the directory, so that only the check of the process is left.
  ASSERT_EQ(::chmod(std::getenv("BINDER_RUNTIME_DIR"), 0755), 0);
  ASSERT_EQ(::chmod(path.c_str(), 0777), 0);
  vesk::test::ChildProcess other("otherUser", {path});
  EXPECT_EQ(other.wait(), 0);
  ASSERT_EQ(::chmod(std::getenv("BINDER_RUNTIME_DIR"), 0700), 0);
}

}  // namespace
