#include "Lane.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>

#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

/* The two ends of a lane, and what can go wrong where one looks for a frame while the other sends it. */

using android::DEAD_OBJECT;
using android::FAILED_TRANSACTION;
using android::OK;
using android::Parcel;
using namespace android::transport;
using std::chrono::microseconds;

namespace {

struct Sockets {
  Sockets() {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    caller = UniqueFd(ends[0]);
    server = UniqueFd(ends[1]);
  }
  UniqueFd caller;
  UniqueFd server;
};

/** A lane whose serving end answers each request with its own data. */
class EchoLane {
 public:
  EchoLane() {
    Sockets sockets;
    caller_ = std::make_unique<Lane>(std::move(sockets.caller), Lane::Side::kCalls);
    caller_->share();
    server_ = std::make_unique<Lane>(std::move(sockets.server), Lane::Side::kServes);
    thread_ = std::thread([this] { serve(); });
  }
  ~EchoLane() {
    stop();
    EXPECT_EQ(end_, DEAD_OBJECT);
  }

  /** False if the answer is another one. */
  bool call(const std::vector<uint8_t>& bytes) {
    Parcel data;
    Parcel reply;
    FrameHeader header{.kind = FrameKind::kRequest};
    return data.setData(bytes.data(), bytes.size()) == OK && caller_->send(header, &data) == OK &&
           caller_->receive(&header, &reply) == OK && header.kind == FrameKind::kReply &&
           reply.dataSize() == bytes.size() && std::equal(bytes.begin(), bytes.end(), reply.data());
  }

  bool release() { return caller_->trySend({.kind = FrameKind::kRelease}) == OK; }

  void stop() {
    caller_.reset();
    if (thread_.joinable()) thread_.join();
  }
  /** Once stopped. */
  uint64_t looksOfServer() const { return server_->patience().looks(); }
  int releases() const { return releases_; }

 private:
  void serve() {
    for (;;) {
      FrameHeader header;
      Parcel data;
      end_ = server_->receive(&header, &data);
      if (end_ != OK) return;
      if (header.kind == FrameKind::kRelease) {
        ++releases_;
      } else {
        end_ = server_->send({.kind = FrameKind::kReply}, &data);
        if (end_ != OK) return;
      }
    }
  }

  std::unique_ptr<Lane> caller_;
  std::unique_ptr<Lane> server_;
  std::thread thread_;
  android::status_t end_ = OK;
  int releases_ = 0;
};

bool looksOut() { return Lookouts::self().patience().count() > 0; }

/** Goes by without a system call, which would let others run. */
void pass(microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
  }
}

TEST(PatienceTest, DoublesWhatItSkipsAndComesBack) {
  Patience patience;
  const auto skipped = [&] {
    uint32_t count = 0;
    while (!patience.take()) ++count;
    return count;
  };
  EXPECT_EQ(skipped(), 0U);
  for (const uint32_t expected : {1U, 3U, 7U, 15U, 31U, 63U, 127U, 255U, 511U, 1023U, 1023U}) {
    patience.failed();
    EXPECT_EQ(skipped(), expected);
  }
  const uint64_t before = patience.looks();
  for (int i = 0; i < 10; ++i) {
    EXPECT_TRUE(patience.take()) << "while it pays";
    patience.paid();
  }
  EXPECT_EQ(patience.looks(), before + 10);
  patience.failed();
  EXPECT_EQ(skipped(), 1U) << "as if it had never failed";
}

TEST(LaneTest, NothingIsLostAtTheEdgeOfPatience) {
  std::mt19937 random(1);
  std::vector<uint8_t> bytes(40'000);
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  // Small ones mostly, so that many meet a receiver that is just about to go to sleep.
  const std::vector<size_t> sizes = {0, 4, 64, 512, 64, 4, 3000, kFirstPacketSize, 64, 40'000};
  EchoLane lane;
  int released = 0;
  for (int i = 0; i < 20'000; ++i) {
    const size_t size = sizes[random() % sizes.size()];
    ASSERT_TRUE(lane.call({bytes.end() - static_cast<ptrdiff_t>(size), bytes.end()})) << i;
    if (random() % 8 == 0) {
      ASSERT_TRUE(lane.release());
      ++released;
    }
    if (random() % 16 == 0) pass(microseconds(45 + random() % 15));
  }
  lane.stop();
  EXPECT_EQ(lane.releases(), released);
}

TEST(LaneTest, CallsThatComeSeldomAreNeverLookedFor) {
  EchoLane lane;
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(lane.call({1, 2, 3, 4}));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  lane.stop();
  EXPECT_EQ(lane.looksOfServer(), 0U);
}

/** A caller that does by hand what a lane does, and not always rightly. */
class RawCaller {
 public:
  explicit RawCaller(UniqueFd socket) : socket_(std::move(socket)) {}

  void share(int fd) const {
    FrameHeader header{.kind = FrameKind::kShare};
    iovec packet{&header, sizeof(header)};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr message = {};
    message.msg_iov = &packet;
    message.msg_iovlen = 1;
    if (fd >= 0) {
      message.msg_control = control;
      message.msg_controllen = sizeof(control);
      cmsghdr* const rights = CMSG_FIRSTHDR(&message);
      rights->cmsg_level = SOL_SOCKET;
      rights->cmsg_type = SCM_RIGHTS;
      rights->cmsg_len = CMSG_LEN(sizeof(int));
      std::memcpy(CMSG_DATA(rights), &fd, sizeof(fd));
    }
    EXPECT_GT(::sendmsg(socket_.get(), &message, 0), 0);
  }
  void request() const {
    const FrameHeader header{.kind = FrameKind::kRequest, .hints = kHintBackToBack};
    EXPECT_GT(::send(socket_.get(), &header, sizeof(header), 0), 0);
  }
  void takeReply() const {
    FrameHeader header;
    EXPECT_EQ(::recv(socket_.get(), &header, sizeof(header), 0), ssize_t{sizeof(header)});
  }
  void end() { socket_ = UniqueFd(); }

 private:
  UniqueFd socket_;
};

class MailboxTest : public testing::Test {
 protected:
  explicit MailboxTest(Sockets sockets = {})
      : caller(std::move(sockets.caller)), server(std::move(sockets.server), Lane::Side::kServes) {}

  void SetUp() override {
    if (!looksOut()) GTEST_SKIP() << "needs two processors";
  }

  /** Has the server answer requests until it looks into its mailbox; that is claimed then. */
  void haveItLook() {
    UniqueFd shared;
    mailboxes = Mailboxes::make(&shared);
    ASSERT_TRUE(mailboxes);
    caller.share(shared.get());
    do {
      exchange();
      // A process that had to wait for a processor rests for a while.
      if (!mailboxes.out().claim()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    } while (mailboxes.out().isIdle());
  }
  void exchange() {
    caller.request();
    FrameHeader header;
    Parcel data;
    ASSERT_EQ(server.receive(&header, &data), OK);
    ASSERT_EQ(server.send({.kind = FrameKind::kReply}), OK);
    caller.takeReply();
  }
  android::status_t receive() {
    FrameHeader header;
    Parcel data;
    return server.receive(&header, &data);
  }

  RawCaller caller;
  Lane server;
  Mailboxes mailboxes;
};

TEST_F(MailboxTest, LooksInVainBecomeRare) {
  UniqueFd shared;
  mailboxes = Mailboxes::make(&shared);
  caller.share(shared.get());
  // The hint promises a call at once, and it never comes by the mailbox.
  while (server.patience().looks() == 0) exchange();
  for (int i = 0; i < 500; ++i) exchange();
  // After the nth, 2^n - 1 waits go by without.
  EXPECT_LE(server.patience().looks(), 9U);
}

TEST_F(MailboxTest, ACallerThatDiesWhileItWrites) {
  haveItLook();
  std::thread death([this] {
    pass(microseconds(200));
    caller.end();
  });
  EXPECT_EQ(receive(), DEAD_OBJECT);
  death.join();
}

TEST_F(MailboxTest, ACallerThatTakesItsTimeToWrite) {
  haveItLook();
  std::thread slow([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const FrameHeader header{.kind = FrameKind::kRequest};
    std::memcpy(mailboxes.out().bytes(), &header, sizeof(header));
    mailboxes.out().fill(sizeof(header));
  });
  EXPECT_EQ(receive(), OK);
  slow.join();
}

class MailboxFrameTest : public MailboxTest, public testing::WithParamInterface<size_t> {};

TEST_P(MailboxFrameTest, IsNone) {
  haveItLook();
  const FrameHeader request{.kind = FrameKind::kRequest};
  std::memcpy(mailboxes.out().bytes(), &request, sizeof(request));
  mailboxes.out().fill(GetParam());
  EXPECT_EQ(receive(), FAILED_TRANSACTION);
}

INSTANTIATE_TEST_SUITE_P(Sizes, MailboxFrameTest,
                         testing::Values(0, 39, 41, kFirstPacketSize + 1, size_t{0xffffffff}));

TEST_F(MailboxTest, MemoryThatCouldBeTakenAwayIsRefused) {
  const UniqueFd unsealed(::memfd_create("unsealed", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  ASSERT_EQ(::ftruncate(unsealed.get(), 2 * sizeof(Mailbox)), 0);
  const UniqueFd small(::memfd_create("small", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  ASSERT_EQ(::fcntl(small.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL), 0);
  const UniqueFd noMemory(::open("/dev/null", O_RDWR | O_CLOEXEC));
  for (const int fd : {unsealed.get(), small.get(), noMemory.get()}) {
    EXPECT_FALSE(Mailboxes::accept(UniqueFd(::dup(fd))));
  }
  caller.share(-1);
  exchange();
  caller.request();
  EXPECT_EQ(receive(), OK) << "the socket is still there";
}

}  // namespace
