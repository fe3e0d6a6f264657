#include "Channel.h"

#include <android/log.h>
#include <poll.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/uio.h>

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

/** What a call may take to follow on the one before and still count as back to back. */
constexpr std::chrono::microseconds kBackToBack(10);
/** A system call costs much more than a look. */
constexpr unsigned kLooksPerYield = 16;
/** Up to this size, to send one piece and copy it together before costs less than to send several. */
constexpr size_t kCopiedSize = 2048;
/** Until threads that may still sleep are woken again. */
constexpr std::chrono::milliseconds kRouseTime(50);

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

bool waitFor(int socket, int16_t events, const Deadline& deadline) {
  pollfd poller{socket, events, 0};
  // Computed for each attempt, so that signals don't extend the wait.
  return retryOnInterrupt([&] { return ::poll(&poller, 1, deadline ? millisecondsUntil(*deadline) : -1); }) >
         0;
}

msghdr messageOf(std::span<iovec> packet) {
  msghdr message = {};
  message.msg_iov = packet.data();
  message.msg_iovlen = packet.size();
  return message;
}

ssize_t sendPacket(int socket, std::span<iovec> packet) {
  const msghdr message = messageOf(packet);
  return retryOnInterrupt([&] { return ::sendmsg(socket, &message, MSG_NOSIGNAL); });
}

bool isValid(const FrameHeader& header) {
  return header.magic == kMagic && header.dataSize <= kMaxDataSize &&
         header.objectCount <= header.dataSize / sizeof(FlatBinder);
}

}  // namespace

bool waitReadable(int socket, const Deadline& deadline) { return waitFor(socket, POLLIN, deadline); }

Channel::~Channel() {
  endSpin();
  // The parent watches the descriptor that a forked child has, too.
  if (!Transport::self().forked) Transport::self().reactor.remove(watchKey_);
}

void Channel::share() {
  UniqueFd shared;
  SharedSlots sharedSlots = SharedSlots::make(&shared);
  if (!sharedSlots) return;
  end_->slots = std::move(sharedSlots);
  if (!watchEnd()) return;
  FrameHeader header{.kind = FrameKind::kShare};
  iovec packet{&header, sizeof(header)};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  msghdr message = messageOf({&packet, 1});
  message.msg_control = control;
  message.msg_controllen = sizeof(control);
  cmsghdr* const rights = CMSG_FIRSTHDR(&message);
  rights->cmsg_level = SOL_SOCKET;
  rights->cmsg_type = SCM_RIGHTS;
  rights->cmsg_len = CMSG_LEN(sizeof(int));
  const int fd = shared.get();
  std::memcpy(CMSG_DATA(rights), &fd, sizeof(fd));
  // If it can't be sent, neither can the first frame, or the channel does without.
  ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT);
}

bool Channel::watchEnd() {
  Reactor& reactor = Transport::self().reactor;
  // All else that comes over the socket is read by the channel itself.
  return reactor.add(
             socket_.get(), EPOLLRDHUP | EPOLLONESHOT, [&reactor, end = end_] { End::report(&reactor, end); },
             &watchKey_) == OK;
}

void Channel::End::report(Reactor* reactor, const std::shared_ptr<End>& end) {
  end->ended.store(true);
  end->slots.in().rouseReceiver();
  end->slots.out().rouseSender();
  if (end->sleeps.load()) reactor->runAfter(kRouseTime, [reactor, end] { report(reactor, end); });
}

status_t Channel::send(FrameHeader header, const Parcel* data, const std::vector<ObjectEntry>& objects) {
  ScatterGather pieces;
  pieces.add(&header, sizeof(header));
  if (data != nullptr) {
    header.dataSize = static_cast<uint32_t>(data->dataSize());
    header.objectCount = static_cast<uint32_t>(objects.size());
    pieces.add(data->data(), data->dataSize());
    pieces.add(objects.data(), objects.size() * sizeof(ObjectEntry));
  }
  if (isShared_) return sendBySharedSlot(&header, &pieces);
  // The caller has nothing on the way but the request that this answers, and so knows it before it sends
  // more.
  isShared_ = header.kind == FrameKind::kReply && end_->slots;
  if (isShared_) header.hints |= kHintShared;
  return sendPackets(&pieces);
}

status_t Channel::sendBySharedSlot(FrameHeader* header, ScatterGather* pieces) {
  if (header->kind == FrameKind::kRequest && SpinLimiter::self().isEnabled() &&
      !SpinLimiter::self().isCrowded() && Clock::now() - lastReply_ < kBackToBack) {
    header->hints |= kHintBackToBack;
  }
  if (const status_t status = awaitRoom(); status != OK) return status;
  const size_t first = std::min(pieces->size(), SharedSlot::kCapacity);
  pieces->copyTo(end_->slots.out().bytes(), first);
  const bool isOtherAwake = end_->slots.out().fill(first);
  ssize_t sent = 0;
  while (sent >= 0 && pieces->size() > 0) {
    sent = sendPacket(socket_.get(), pieces->next(std::min(pieces->size(), kPacketSize)));
  }
  if (sent < 0) return statusOfErrno();
  expectFrame(*header, isOtherAwake);
  return OK;
}

void Channel::expectFrame(const FrameHeader& sent, bool isOtherAwake) {
  if (!SpinLimiter::self().isEnabled()) return;
  bool soon = false;
  // Whoever has to be woken for a request takes so long that it is cheaper to sleep, too.
  if (sent.kind == FrameKind::kRequest) soon = isOtherAwake;
  // The caller looks for this reply, or will wake up and call again.
  if (sent.kind == FrameKind::kReply) soon = backToBack_ && sent.objectCount == 0;
  spins_ = soon && backoff_.take() && SpinLimiter::self().enter();
}

status_t Channel::sendPackets(ScatterGather* pieces) {
  const size_t first = std::min(pieces->size(), kFirstPacketSize);
  ssize_t sent;
  if (first <= kCopiedSize) {
    pieces->copyTo(buffer_.data(), first);
    sent = retryOnInterrupt([&] { return ::send(socket_.get(), buffer_.data(), first, MSG_NOSIGNAL); });
  } else {
    sent = sendPacket(socket_.get(), pieces->next(first));
  }
  while (sent >= 0 && pieces->size() > 0) {
    sent = sendPacket(socket_.get(), pieces->next(std::min(pieces->size(), kPacketSize)));
  }
  return sent < 0 ? statusOfErrno() : OK;
}

status_t Channel::trySend(FrameHeader header, Clock::time_point deadline) {
  if (isShared_) {
    const status_t status = awaitRoom(deadline);
    if (status != OK) return status;
    std::memcpy(end_->slots.out().bytes(), &header, sizeof(header));
    end_->slots.out().fill(sizeof(header));
    return OK;
  }
  const auto send = [&] {
    return ::send(socket_.get(), &header, sizeof(header), MSG_NOSIGNAL | MSG_DONTWAIT);
  };
  if (retryOnInterrupt(send) >= 0) return OK;
  if (errno != EAGAIN && errno != EWOULDBLOCK) return statusOfErrno();
  return waitFor(socket_.get(), POLLOUT, deadline) ? trySend(header) : WOULD_BLOCK;
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
  for (unsigned looks = 1; !end_->slots.in().isFull() && passed < duration; ++looks) {
    pauseProcessor();
    if (looks % kLooksPerYield != 0) continue;
    // The other side may be waiting for this very processor: who wakes a thread up is expected to sleep next.
    ::sched_yield();
    passed = Clock::now() - start;
  }
  if (passed >= 2 * duration) SpinLimiter::self().wasPreempted(passed);
  endSpin();
  passed >= duration ? backoff_.failed() : backoff_.paid();
}

status_t Channel::awaitFrame(const Deadline& deadline) {
  SharedSlot& in = end_->slots.in();
  if (in.isFull()) return OK;
  end_->sleeps.store(true);
  status_t status = OK;
  while (status == OK) {
    // In this order: a frame may have come before the end.
    const bool ended = end_->ended.load();
    if (in.isFull()) break;
    if (ended) {
      status = DEAD_OBJECT;
    } else if (!in.sleepUntilFull(end_->ended, deadline) && !in.isFull()) {
      status = WOULD_BLOCK;
    }
  }
  end_->sleeps.store(false);
  return status;
}

status_t Channel::awaitRoom(const Deadline& deadline) {
  SharedSlot& out = end_->slots.out();
  if (hasEnded()) return DEAD_OBJECT;
  if (out.isEmpty()) return OK;
  end_->sleeps.store(true);
  status_t status = OK;
  while (status == OK && !out.isEmpty()) {
    if (end_->ended.load()) {
      status = DEAD_OBJECT;
    } else if (!out.sleepUntilEmpty(end_->ended, deadline) && !out.isEmpty()) {
      status = WOULD_BLOCK;
    }
  }
  end_->sleeps.store(false);
  return status;
}

bool Channel::waitReadable(const Deadline& deadline) {
  if (isShared_) return awaitFrame(deadline) != WOULD_BLOCK;
  return transport::waitReadable(socket_.get(), deadline);
}

ssize_t Channel::receivePacket() {
  const auto receive = [&] { return ::recv(socket_.get(), buffer_.data(), buffer_.size(), MSG_TRUNC); };
  if (!awaitsShare_) return retryOnInterrupt(receive);
  awaitsShare_ = false;
  iovec packet{buffer_.data(), buffer_.size()};
  // As many as a message can have: each has to be closed, but for one that comes alone.
  constexpr size_t kMostDescriptors = 253;
  alignas(cmsghdr) char control[CMSG_SPACE(kMostDescriptors * sizeof(int))];
  msghdr message = messageOf({&packet, 1});
  message.msg_control = control;
  message.msg_controllen = sizeof(control);
  const ssize_t size =
      retryOnInterrupt([&] { return ::recvmsg(socket_.get(), &message, MSG_TRUNC | MSG_CMSG_CLOEXEC); });
  UniqueFd shared;
  const cmsghdr* const rights = size >= 0 ? CMSG_FIRSTHDR(&message) : nullptr;
  if (rights != nullptr && rights->cmsg_level == SOL_SOCKET && rights->cmsg_type == SCM_RIGHTS) {
    const size_t count = (rights->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (size_t i = 0; i < count; ++i) {
      int fd;
      std::memcpy(&fd, CMSG_DATA(rights) + i * sizeof(fd), sizeof(fd));
      UniqueFd received(fd);
      if (count == 1) shared = std::move(received);
    }
  }
  FrameHeader header;
  if (size != sizeof(header)) return size;
  std::memcpy(&header, buffer_.data(), sizeof(header));
  if (header.magic != kMagic || header.kind != FrameKind::kShare) return size;
  acceptShare(shared);
  return retryOnInterrupt(receive);
}

void Channel::acceptShare(const UniqueFd& shared) {
  end_->slots = SharedSlots::accept(shared);
  if (!end_->slots) return;
  if (!watchEnd()) end_->slots = SharedSlots();
}

status_t Channel::receive(FrameHeader* header, Parcel* data) {
  if (!isShared_) {
    const ssize_t size = receivePacket();
    if (size < 0) return statusOfErrno();
    if (size == 0) return DEAD_OBJECT;
    const status_t status = unpack(buffer_.data(), static_cast<size_t>(size), kFirstPacketSize, header, data);
    isShared_ = status == OK && header->kind == FrameKind::kReply && (header->hints & kHintShared) != 0 &&
                watchKey_ != 0;
    return status;
  }
  if (spins_) spin();
  if (const status_t status = awaitFrame(); status != OK) return status;
  const status_t status =
      unpack(end_->slots.in().bytes(), end_->slots.in().size(), SharedSlot::kCapacity, header, data);
  end_->slots.in().empty();
  if (status == OK && SpinLimiter::self().isEnabled()) {
    backToBack_ = header->kind == FrameKind::kRequest && (header->hints & kHintBackToBack) != 0;
    if (header->kind == FrameKind::kReply) lastReply_ = Clock::now();
  }
  return status;
}

status_t Channel::unpack(const uint8_t* bytes, size_t size, size_t most, FrameHeader* header, Parcel* data) {
  if (size < sizeof(*header) || size > most) return FAILED_TRANSACTION;
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
  if (first != std::min(pieces.size(), most - sizeof(*header))) return FAILED_TRANSACTION;
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
