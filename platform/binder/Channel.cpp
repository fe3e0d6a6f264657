#include "Channel.h"

#include <android/log.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

#include "ParcelAccess.h"
#include "RetryOnInterrupt.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** The longest time between a reply and the next request that counts as back to back. */
constexpr std::chrono::microseconds kBackToBack(10);
/** Checks of the slot between two sched_yield(), which costs much more than a check. */
constexpr unsigned kChecksPerYield = 16;
/** The time after which threads that still sleep are woken again. */
constexpr std::chrono::milliseconds kWakeTime(50);

void pauseProcessor() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#elif defined(__arm__) || defined(__aarch64__)
  asm volatile("yield");
#endif
}

status_t statusOfErrno() {
  const int error = errno;
  if (error == EPIPE || error == ECONNRESET || error == ENOTCONN) return DEAD_OBJECT;
  __android_log_print(ANDROID_LOG_ERROR, "binder", "a call has failed: %s", std::strerror(error));
  return FAILED_TRANSACTION;
}

msghdr messageOf(std::span<iovec> packet) {
  msghdr message = {};
  message.msg_iov = packet.data();
  message.msg_iovlen = packet.size();
  return message;
}

bool isValid(const FrameHeader& header) {
  return header.magic == kMagic && header.dataSize <= kMaxDataSize &&
         header.objectCount <= header.dataSize / sizeof(FlatBinder);
}

}  // namespace

Channel::Channel(UniqueFd socket, SharedSlots slots)
    : socket_(std::move(socket)), state_(std::make_shared<State>(std::move(slots))) {}

Channel::~Channel() {
  endSpin();
  // The parent of a forked child watches the same descriptor.
  if (reactor_ != nullptr && !Transport::self().forked) reactor_->remove(watchKey_);
}

status_t Channel::watchEnd(Reactor* reactor, std::function<void()> onEnd) {
  reactor_ = reactor;
  const auto handler = [reactor, state = state_, onEnd = std::move(onEnd)] {
    end(reactor, state);
    if (onEnd) onEnd();
  };
  // The rest of a large frame is read by the thread that uses the channel.
  return reactor->add(socket_.get(), EPOLLRDHUP | EPOLLONESHOT, handler, &watchKey_);
}

void Channel::end(Reactor* reactor, const std::shared_ptr<State>& state) {
  state->stage.store(kEnded);
  state->slots.in().rouseReceiver();
  state->slots.out().rouseSender();
  if (state->sleeps.load()) reactor->runAfter(kWakeTime, [reactor, state] { end(reactor, state); });
}

bool Channel::retire() {
  if (!state_->awaitsRequest.load()) return false;
  uint32_t stage = kOpen;
  state_->stage.compare_exchange_strong(stage, kRetired);
  state_->slots.in().rouseReceiver();
  return true;
}

status_t Channel::send(FrameHeader header, const Parcel* data, const std::vector<ObjectEntry>& objects,
                       const Deadline& deadline) {
  ScatterGather pieces;
  pieces.add(&header, sizeof(header));
  if (data != nullptr) {
    header.dataSize = static_cast<uint32_t>(data->dataSize());
    header.objectCount = static_cast<uint32_t>(objects.size());
    pieces.add(data->data(), data->dataSize());
    pieces.add(objects.data(), objects.size() * sizeof(ObjectEntry));
  }
  if (header.kind == FrameKind::kRequest && SpinLimiter::self().isEnabled() &&
      !SpinLimiter::self().isCrowded() && Clock::now() - lastReply_ < kBackToBack) {
    header.hints |= kHintBackToBack;
  }
  if (const status_t status = awaitRoom(deadline); status != OK) return status;
  SharedSlot& out = state_->slots.out();
  const size_t first = std::min(pieces.size(), SharedSlot::kCapacity);
  pieces.copyTo(out.bytes(), first);
  const bool isOtherAwake = out.fill(first);
  while (pieces.size() > 0) {
    const msghdr message = messageOf(pieces.next(std::min(pieces.size(), kPacketSize)));
    const ssize_t sent = retryOnInterrupt([&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL); });
    if (sent < 0) return statusOfErrno();
  }
  expectFrame(header, isOtherAwake);
  return OK;
}

void Channel::expectFrame(const FrameHeader& sent, bool isOtherAwake) {
  if (!SpinLimiter::self().isEnabled()) return;
  bool soon = false;
  // Waking a server takes so long that sleeping is cheaper than spinning.
  if (sent.kind == FrameKind::kRequest) soon = isOtherAwake;
  // The caller spins for this reply, or wakes up and calls again.
  if (sent.kind == FrameKind::kReply) soon = backToBack_ && sent.objectCount == 0;
  spins_ = soon && backoff_.shouldSpin() && SpinLimiter::self().enter();
}

void Channel::endSpin() {
  if (!spins_) return;
  spins_ = false;
  SpinLimiter::self().leave();
}

void Channel::spin() {
  const Clock::duration duration = SpinLimiter::self().duration();
  const Clock::time_point start = Clock::now();
  Clock::duration passed{0};
  for (unsigned checks = 1; !state_->slots.in().isFull() && passed < duration; ++checks) {
    pauseProcessor();
    if (checks % kChecksPerYield != 0) continue;
    // The other side may be waiting for this processor: the scheduler expects a thread that wakes
    // another to sleep next.
    ::sched_yield();
    passed = Clock::now() - start;
  }
  if (passed >= 2 * duration) SpinLimiter::self().wasPreempted(passed);
  endSpin();
  passed >= duration ? backoff_.failed() : backoff_.succeeded();
}

status_t Channel::awaitFrame(const Deadline& deadline, Stage last) {
  if (spins_) spin();
  SharedSlot& in = state_->slots.in();
  if (in.isFull()) return OK;
  state_->sleeps.store(true);
  status_t status = OK;
  while (status == OK) {
    // Reads the stage first: a frame that arrived before the end still counts.
    const bool isLast = state_->stage.load() >= last;
    if (in.isFull()) break;
    if (isLast) {
      status = DEAD_OBJECT;
    } else if (!in.sleepUntilFull([&] { return state_->stage.load() >= last; }, deadline) && !in.isFull()) {
      status = WOULD_BLOCK;
    }
  }
  state_->sleeps.store(false);
  return status;
}

status_t Channel::awaitRoom(const Deadline& deadline) {
  SharedSlot& out = state_->slots.out();
  if (hasEnded()) return DEAD_OBJECT;
  if (out.isEmpty()) return OK;
  state_->sleeps.store(true);
  status_t status = OK;
  while (status == OK && !out.isEmpty()) {
    if (hasEnded()) {
      status = DEAD_OBJECT;
    } else if (!out.sleepUntilEmpty([&] { return state_->stage.load() == kEnded; }, deadline) &&
               !out.isEmpty()) {
      status = WOULD_BLOCK;
    }
  }
  state_->sleeps.store(false);
  return status;
}

status_t Channel::awaitRequest() {
  state_->awaitsRequest.store(true);
  const status_t status = awaitFrame({}, kRetired);
  state_->awaitsRequest.store(false);
  if (status == OK) state_->requests.fetch_add(1, std::memory_order_relaxed);
  return status;
}

status_t Channel::receive(FrameHeader* header, Parcel* data, const Deadline& deadline) {
  if (const status_t status = awaitFrame(deadline); status != OK) return status;
  const status_t status = unpack(header, data);
  state_->slots.in().empty();
  if (status == OK && SpinLimiter::self().isEnabled()) {
    backToBack_ = header->kind == FrameKind::kRequest && (header->hints & kHintBackToBack) != 0;
    if (header->kind == FrameKind::kReply) lastReply_ = Clock::now();
  }
  return status;
}

status_t Channel::unpack(FrameHeader* header, Parcel* data) {
  const size_t size = state_->slots.in().size();
  const uint8_t* const bytes = state_->slots.in().bytes();
  if (size < sizeof(*header) || size > SharedSlot::kCapacity) return FAILED_TRANSACTION;
  std::memcpy(header, bytes, sizeof(*header));
  if (!isValid(*header)) return FAILED_TRANSACTION;

  ScatterGather pieces;
  uint8_t* const contents = ParcelAccess::prepare(data, header->dataSize);
  if (contents == nullptr) return FAILED_TRANSACTION;
  pieces.add(contents, header->dataSize);
  objects_.clear();
  if (header->objectCount > 0) {
    objects_.resize(header->objectCount);
    pieces.add(objects_.data(), objects_.size() * sizeof(ObjectEntry));
  }

  const size_t first = size - sizeof(*header);
  if (first != std::min(pieces.size(), SharedSlot::kCapacity - sizeof(*header))) return FAILED_TRANSACTION;
  pieces.copyFrom(bytes + sizeof(*header), first);

  while (pieces.size() > 0) {
    const size_t expected = std::min(pieces.size(), kPacketSize);
    msghdr message = messageOf(pieces.next(expected));
    const ssize_t received = retryOnInterrupt([&] { return ::recvmsg(socket_.get(), &message, MSG_TRUNC); });
    if (received < 0) return statusOfErrno();
    if (received == 0) return DEAD_OBJECT;
    if (static_cast<size_t>(received) != expected) return FAILED_TRANSACTION;
  }
  return OK;
}

}  // namespace android::transport
