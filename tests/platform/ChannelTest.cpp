#include "Channel.h"
#include "IdleChannels.h"
#include "Transport.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <thread>
#include <vector>

/* Both ends of a channel in one process: spinning, sleeping, hostile use of the shared slots. */

using android::DEAD_OBJECT;
using android::FAILED_TRANSACTION;
using android::OK;
using android::Parcel;
using namespace android::transport;
using std::chrono::microseconds;

namespace {

/** The sockets and the shared memory of a channel. */
struct ChannelEnds {
  ChannelEnds() : callerSlots(SharedSlots::make(&memory)), serverSlots(SharedSlots::accept(memory)) {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    caller = UniqueFd(ends[0]);
    server = UniqueFd(ends[1]);
  }
  UniqueFd memory;
  SharedSlots callerSlots;
  SharedSlots serverSlots;
  UniqueFd caller;
  UniqueFd server;
};

std::unique_ptr<Channel> watched(UniqueFd socket, SharedSlots slots) {
  auto channel = std::make_unique<Channel>(std::move(socket), std::move(slots));
  EXPECT_EQ(channel->watchEnd(&Transport::self().reactor), OK);
  return channel;
}

/** A channel whose server echoes each request. */
class EchoChannel {
 public:
  EchoChannel() {
    ChannelEnds ends;
    caller_ = watched(std::move(ends.caller), std::move(ends.callerSlots));
    server_ = watched(std::move(ends.server), std::move(ends.serverSlots));
    thread_ = std::thread([this] { serve(); });
  }
  ~EchoChannel() {
    stop();
    EXPECT_EQ(end_, DEAD_OBJECT);
  }

  /** True if the reply has the same bytes. */
  bool call(const std::vector<uint8_t>& bytes) {
    Parcel data;
    Parcel reply;
    FrameHeader header{.kind = FrameKind::kRequest};
    return data.setData(bytes.data(), bytes.size()) == OK && caller_->send(header, &data) == OK &&
           caller_->receive(&header, &reply) == OK && header.kind == FrameKind::kReply &&
           reply.dataSize() == bytes.size() && std::equal(bytes.begin(), bytes.end(), reply.data());
  }

  void stop() {
    caller_.reset();
    if (thread_.joinable()) thread_.join();
  }
  /** After stop(). */
  uint64_t spinsOfServer() const { return server_->backoff().spins(); }

 private:
  void serve() {
    for (;;) {
      FrameHeader header;
      Parcel data;
      end_ = server_->receive(&header, &data);
      if (end_ == OK) end_ = server_->send({.kind = FrameKind::kReply}, &data);
      if (end_ != OK) return;
    }
  }

  std::unique_ptr<Channel> caller_;
  std::unique_ptr<Channel> server_;
  std::thread thread_;
  android::status_t end_ = OK;
};

bool spins() { return SpinLimiter::self().duration().count() > 0; }

/** Busy-waits: a system call would let other threads run. */
void busyWait(microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
  }
}

template <typename Condition>
bool within(microseconds time, Condition condition) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  return condition();
}

TEST(SpinBackoffTest, DoublesSkippedSpinsAndResets) {
  SpinBackoff backoff;
  const auto skipped = [&] {
    uint32_t count = 0;
    while (!backoff.shouldSpin()) ++count;
    return count;
  };
  EXPECT_EQ(skipped(), 0U);
  for (const uint32_t expected : {1U, 3U, 7U, 15U, 31U, 63U, 127U, 255U, 511U, 1023U, 1023U}) {
    backoff.failed();
    EXPECT_EQ(skipped(), expected);
  }
  const uint64_t before = backoff.spins();
  for (int i = 0; i < 10; ++i) {
    EXPECT_TRUE(backoff.shouldSpin()) << "after a successful spin";
    backoff.succeeded();
  }
  EXPECT_EQ(backoff.spins(), before + 10);
  backoff.failed();
  EXPECT_EQ(skipped(), 1U) << "the backoff was reset";
}

TEST(ChannelTest, LosesNothingAroundTheSpinTimeout) {
  std::mt19937 random(1);
  std::vector<uint8_t> bytes(200'000);
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  // Mostly small frames, so that many arrive just as the receiver goes to sleep.
  const std::vector<size_t> sizes = {0,  4,      64,
                                     64, 4,      3000,
                                     64, 40'000, SharedSlot::kCapacity - sizeof(FrameHeader),
                                     64, 4,      SharedSlot::kCapacity - sizeof(FrameHeader) + 4,
                                     64, 512,    200'000};
  EchoChannel channel;
  for (int i = 0; i < 10'000; ++i) {
    const size_t size = sizes[random() % sizes.size()];
    ASSERT_TRUE(channel.call({bytes.end() - static_cast<ptrdiff_t>(size), bytes.end()})) << i;
    if (random() % 16 == 0) busyWait(microseconds(45 + random() % 15));
  }
}

TEST(ChannelTest, DoesNotSpinForSparseCalls) {
  EchoChannel channel;
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(channel.call({1, 2, 3, 4}));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  channel.stop();
  EXPECT_EQ(channel.spinsOfServer(), 0U);
}

/** The server end of a channel, and a caller that writes to the shared slots directly. */
struct Caller {
  explicit Caller(ChannelEnds ends = {})
      : socket(std::move(ends.caller)),
        sharedSlots(std::move(ends.callerSlots)),
        serverEnd(watched(std::move(ends.server), std::move(ends.serverSlots))),
        server(*serverEnd) {}

  void put(const FrameHeader& header, size_t size = sizeof(FrameHeader)) {
    std::memcpy(sharedSlots.out().bytes(), &header, sizeof(header));
    sharedSlots.out().fill(size);
  }
  android::status_t receive() {
    FrameHeader header;
    Parcel data;
    return server.receive(&header, &data);
  }
  /** The state of the slot from which the server receives. */
  std::atomic<uint32_t>& state() { return *reinterpret_cast<std::atomic<uint32_t>*>(&sharedSlots.out()); }
  static constexpr uint32_t kAwaited = 1;

  UniqueFd socket;
  SharedSlots sharedSlots;
  std::unique_ptr<Channel> serverEnd;
  Channel& server;
};

class SharedSlotTest : public testing::Test, protected Caller {};

const FrameHeader kRequest{.kind = FrameKind::kRequest, .hints = kHintBackToBack};

TEST_F(SharedSlotTest, FailedSpinsBecomeRare) {
  if (!spins()) GTEST_SKIP() << "needs two processors";
  // The hint announces an immediate request, but each request is sent after the server sleeps.
  const auto exchange = [this] {
    std::thread late([this] {
      while (state() != kAwaited) std::this_thread::yield();
      put(kRequest);
    });
    EXPECT_EQ(receive(), OK);
    late.join();
    EXPECT_EQ(server.send({.kind = FrameKind::kReply}), OK);
    sharedSlots.in().empty();
    return server.backoff().spins();
  };
  // After a preempted spin, the process does not spin for a while.
  EXPECT_TRUE(within(microseconds(30'000'000), [&] { return exchange() > 0; }));
  for (int i = 0; i < 200; ++i) exchange();
  // After the nth failed spin, 2^n - 1 waits skip the spin.
  EXPECT_LE(server.backoff().spins(), 8U);
}

TEST_F(SharedSlotTest, FrameSentBeforeTheEndIsReceived) {
  put(kRequest);
  socket = UniqueFd();
  while (!server.hasEnded()) std::this_thread::yield();
  EXPECT_EQ(receive(), OK);
  EXPECT_EQ(receive(), DEAD_OBJECT);
  EXPECT_EQ(server.send({.kind = FrameKind::kReply}), DEAD_OBJECT);
}

TEST_F(SharedSlotTest, RetiredServerTakesAPendingRequest) {
  EXPECT_FALSE(server.retire()) << "no thread waits";
  std::thread retiring([this] {
    while (!server.retire()) std::this_thread::yield();
  });
  EXPECT_EQ(server.awaitRequest(), DEAD_OBJECT);
  retiring.join();
  put(kRequest);
  EXPECT_EQ(server.awaitRequest(), OK);
  EXPECT_EQ(receive(), OK);
  EXPECT_EQ(server.send({.kind = FrameKind::kReply}), OK);
  EXPECT_EQ(server.awaitRequest(), DEAD_OBJECT);
}

TEST(IdleChannelsTest, EndedChannelIsNotReused) {
  IdleChannels idle;
  for (const bool ends : {true, false}) {
    ChannelEnds both;
    auto channel = watched(std::move(both.caller), std::move(both.callerSlots));
    const Channel* const put = channel.get();
    if (ends) both.server = UniqueFd();
    EXPECT_EQ(within(microseconds(ends ? 10'000'000 : 0), [&] { return channel->hasEnded(); }), ends);
    idle.put(std::move(channel));
    EXPECT_EQ(idle.take().get(), ends ? nullptr : put);
  }
}

TEST_F(SharedSlotTest, EndWakesSleepingThreads) {
  for (const bool sends : {false, true}) {
    SCOPED_TRACE(sends ? "waiting for room" : "waiting for a request");
    Caller peer;
    if (sends) {
      ASSERT_EQ(peer.server.send({.kind = FrameKind::kReply}), OK);
      EXPECT_EQ(peer.server.send({.kind = FrameKind::kReply}, nullptr, {}, std::chrono::steady_clock::now()),
                android::WOULD_BLOCK);
    }
    std::thread death([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      peer.socket = UniqueFd();
    });
    EXPECT_EQ(sends ? peer.server.send({.kind = FrameKind::kReply}) : peer.receive(), DEAD_OBJECT);
    death.join();
  }
}

std::atomic<bool> isBlocked = false;
std::atomic<bool> mayContinue = false;

TEST_F(SharedSlotTest, UndoneWakeUpIsRepeated) {
  struct sigaction action = {};
  action.sa_flags = SA_RESTART;
  action.sa_handler = [](int) {
    isBlocked = true;
    while (!mayContinue) ::sched_yield();
  };
  struct sigaction before;
  ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);
  std::atomic<bool> isDone = false;
  std::thread receiver([&] {
    EXPECT_EQ(receive(), DEAD_OBJECT);
    isDone = true;
  });
  while (state() != kAwaited) std::this_thread::yield();
  // The signal handler keeps the server off the futex while it is woken. When the server returns,
  // the caller has restored the state that makes it sleep.
  ::pthread_kill(receiver.native_handle(), SIGUSR1);
  const bool blocked = within(microseconds(500'000), [] { return isBlocked.load(); });
  socket = UniqueFd();
  if (blocked) {
    while (state() == kAwaited) std::this_thread::yield();
    state() = kAwaited;
  }
  mayContinue = true;
  EXPECT_TRUE(within(microseconds(10'000'000), [&] { return isDone.load(); }));
  while (!isDone) sharedSlots.out().rouseReceiver();
  receiver.join();
  ::sigaction(SIGUSR1, &before, nullptr);
  if (!blocked) GTEST_SKIP() << "signals are delivered only after the system call";
}

TEST_F(SharedSlotTest, ReplyWaitsUntilThePreviousIsTaken) {
  ASSERT_EQ(server.send({.kind = FrameKind::kReply, .code = 1}), OK);
  std::thread slow([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    sharedSlots.in().empty();
  });
  EXPECT_EQ(server.send({.kind = FrameKind::kReply, .code = 2}), OK);
  slow.join();
  FrameHeader header;
  std::memcpy(&header, sharedSlots.in().bytes(), sizeof(header));
  EXPECT_EQ(header.code, 2U);
}

TEST_F(SharedSlotTest, EndInTheMiddleOfAFrame) {
  put({.kind = FrameKind::kRequest, .dataSize = 100'000}, SharedSlot::kCapacity);
  std::thread death([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    socket = UniqueFd();
  });
  EXPECT_EQ(receive(), DEAD_OBJECT);
  death.join();
}

class SharedSlotFrameTest : public SharedSlotTest, public testing::WithParamInterface<size_t> {};

TEST_P(SharedSlotFrameTest, InvalidSizeIsRefused) {
  put(kRequest, GetParam());
  EXPECT_EQ(receive(), FAILED_TRANSACTION);
}

INSTANTIATE_TEST_SUITE_P(Sizes, SharedSlotFrameTest,
                         testing::Values(0, 39, 41, SharedSlot::kCapacity + 1, size_t{0xffffffff}));

TEST_F(SharedSlotTest, InvalidStateDoesNotBlock) {
  sharedSlots.out().fill(0);
  state() = 77;
  EXPECT_EQ(receive(), FAILED_TRANSACTION);
}

TEST_F(SharedSlotTest, UnsealedMemoryIsRefused) {
  const UniqueFd unsealed(::memfd_create("unsealed", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  ASSERT_EQ(::ftruncate(unsealed.get(), 2 * sizeof(SharedSlot)), 0);
  const UniqueFd small(::memfd_create("small", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  ASSERT_EQ(::fcntl(small.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL), 0);
  const UniqueFd noMemory(::open("/dev/null", O_RDWR | O_CLOEXEC));
  for (const int fd : {unsealed.get(), small.get(), noMemory.get()}) {
    EXPECT_FALSE(SharedSlots::accept(UniqueFd(::dup(fd))));
  }
}

}  // namespace
