#include "OwnerProcesses.h"

#include <android/log.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "BpBinder.h"
#include "Connect.h"
#include "RetryOnInterrupt.h"
#include "RuntimeDir.h"
#include "Transport.h"

namespace android::transport {

namespace {

using Clock = std::chrono::steady_clock;

/**
 * The time limit for the answers to a Hello and to an acquire, which need none of the owner's own
 * code. An owner that is stopped or stuck counts as unreachable.
 */
constexpr std::chrono::milliseconds kAnswerTimeout(5000);
/** Attempts to send a frame, if the channels end before the owner takes it. */
constexpr int kMaxAttempts = 4;

Clock::time_point answerDeadline() { return Clock::now() + kAnswerTimeout; }

/** Logs why a process can't be reached, unless that was the last failure. Not to be called under a
 * lock: the application's logger may use the binder. */
void logOnce(const std::string& failure) {
  static std::mutex& mutex = *new std::mutex;
  static std::string& last = *new std::string;
  {
    const std::lock_guard lock(mutex);
    if (last == failure) return;
    last = failure;
  }
  if (!failure.empty()) __android_log_print(ANDROID_LOG_ERROR, "binder", "%s", failure.c_str());
}

}  // namespace

status_t OwnerProcess::connect() {
  std::string failure;
  status_t status;
  {
    const std::lock_guard connecting(connecting_);
    if (connected_) return *connected_;
    connected_ = status = openWatch(&failure);
    if (status != OK) {
      // The threads that waited for this attempt share its failure. The next makes a new one, since
      // the cause may have gone.
      dead_.store(true, std::memory_order_release);
      Transport::self().owners.remove(*this);
    }
  }
  logOnce(failure);
  return status;
}

status_t OwnerProcess::openWatch(std::string* failure) {
  const Clock::time_point deadline = answerDeadline();
  UniqueFd watch;
  const Hello hello{.kind = ConnectionKind::kWatch, .process = Transport::self().id};
  if (const status_t status = openConnection(id_, hello, -1, deadline, &watch, failure); status != OK)
    return status;
  Hello answer;
  pollfd poller{watch.get(), POLLIN, 0};
  // The time left is computed for each attempt, so that signals don't extend the wait.
  if (retryOnInterrupt([&] { return ::poll(&poller, 1, millisecondsUntil(deadline)); }) <= 0) {
    *failure = "process " + std::to_string(id_) + " doesn't answer";
    return FAILED_TRANSACTION;
  }
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(watch.get(), &answer, sizeof(answer), MSG_TRUNC | MSG_DONTWAIT); });
  if (size == 0 || (size < 0 && errno == ECONNRESET)) return DEAD_OBJECT;
  if (size != sizeof(answer) || answer.magic != kMagic || answer.process != id_) {
    *failure = "process " + std::to_string(id_) + " answers with an invalid greeting";
    return FAILED_TRANSACTION;
  }

  watch_ = std::move(watch);
  const status_t status = Transport::self().reactor.add(
      watch_.get(), EPOLLIN, [self = shared_from_this()] { self->onWatchReady(); }, &watchKey_);
  if (status != OK) *failure = std::string("can't wait for the end of a process: ") + std::strerror(-status);
  return status;
}

void OwnerProcess::onWatchReady() {
  {
    const std::lock_guard lock(mutex_);
    if (!unsentReleases_.empty()) sendReleases();
  }
  ObjectDeath number;
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(watch_.get(), &number, sizeof(number), MSG_DONTWAIT | MSG_TRUNC); });
  if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
  size == sizeof(number) ? objectDied(number) : died();
}

sp<BpBinder> OwnerProcess::knownProxy(uint64_t number) {
  const auto entry = proxies_.find(number);
  return entry == proxies_.end() ? nullptr : entry->second.promote();
}

status_t OwnerProcess::proxy(uint64_t number, sp<IBinder>* object) {
  {
    const std::lock_guard lock(mutex_);
    if (sp<BpBinder> known = knownProxy(number); known != nullptr) {
      *object = std::move(known);
      return OK;
    }
    ++acquiring_[number].threads;
  }
  const status_t status = acquire(number);
  sp<BpBinder> result;
  {
    const std::lock_guard lock(mutex_);
    const auto acquiring = acquiring_.find(number);
    // The object may have died since the answer.
    const bool isDeadAlready = acquiring->second.isDead;
    if (--acquiring->second.threads == 0) acquiring_.erase(acquiring);
    if (status != OK) return status;
    if (isDeadAlready) return DEAD_OBJECT;
    result = knownProxy(number);
    if (result == nullptr) {
      *object = result = new BpBinder(shared_from_this(), number);
      if (!isDead()) proxies_[number] = result;
      return OK;
    }
    // Another thread was faster, and its proxy has a reference of its own.
    release(number);
  }
  *object = std::move(result);
  return OK;
}

std::unique_ptr<Channel> OwnerProcess::openChannel(status_t* status) {
  UniqueFd memory;
  UniqueFd connection;
  std::string failure;
  SharedSlots slots = SharedSlots::make(&memory);
  if (!slots) {
    failure = std::string("no shared memory for a channel: ") + std::strerror(errno);
    *status = FAILED_TRANSACTION;
  } else {
    const Hello hello{.kind = ConnectionKind::kChannel, .process = Transport::self().id};
    *status = openConnection(id_, hello, memory.get(), answerDeadline(), &connection, &failure);
  }
  std::unique_ptr<Channel> channel;
  if (*status == OK) {
    channel = std::make_unique<Channel>(std::move(connection), std::move(slots));
    const status_t watched = channel->watchEnd(&Transport::self().reactor, [weak = weak_from_this()] {
      if (const std::shared_ptr<OwnerProcess> self = weak.lock(); self != nullptr) self->idle_.closeEnded();
    });
    if (watched != OK) {
      failure = std::string("can't wait for the end of a channel: ") + std::strerror(-watched);
      *status = FAILED_TRANSACTION;
      channel = nullptr;
    }
  }
  logOnce(failure);
  return channel;
}

status_t OwnerProcess::exchange(const FrameHeader& request, const Parcel* data,
                                const std::vector<ObjectEntry>& objects, const Deadline& deadline,
                                std::unique_ptr<Channel>* channel, FrameHeader* header, Parcel* reply) {
  for (int attempt = 1;; ++attempt) {
    status_t status = OK;
    *channel = attempt == 1 ? idle_.take() : nullptr;
    if (*channel == nullptr) *channel = openChannel(&status);
    if (*channel == nullptr) return status;
    status = (*channel)->send(request, data, objects, deadline);
    const bool isSent = status == OK;
    if (isSent) status = (*channel)->receive(header, reply, deadline);
    if (status == OK) return header->kind == FrameKind::kReply ? OK : FAILED_TRANSACTION;
    // The owner may close a channel at any time. A frame that it has not taken can be sent again.
    const bool isTaken = isSent && !(*channel)->hasUntaken();
    if (status != DEAD_OBJECT || isTaken) return status == WOULD_BLOCK ? FAILED_TRANSACTION : status;
    if (attempt < kMaxAttempts) continue;
    if (!runtime_dir::isListening(id_)) return DEAD_OBJECT;
    logOnce("process " + std::to_string(id_) + " closes new channels");
    return FAILED_TRANSACTION;
  }
}

status_t OwnerProcess::transact(uint64_t number, uint32_t code, const Parcel& data, Parcel* reply,
                                uint32_t flags) {
  Transport& transport = Transport::self();
  reply->freeData();
  if (transport.forked) return FAILED_TRANSACTION;
  if (isDead()) return DEAD_OBJECT;
  if (data.dataSize() > kMaxDataSize) return FAILED_TRANSACTION;
  std::vector<ObjectEntry> entries;
  status_t status = transport.flattenBinders(data, &entries);
  if (status != OK) return status;
  const SpinLimiter::Call call;
  std::unique_ptr<Channel> channel;
  FrameHeader header;
  status = exchange({.kind = FrameKind::kRequest, .object = number, .code = code, .flags = flags}, &data,
                    entries, {}, &channel, &header, reply);
  if (status == OK && !channel->objects().empty()) {
    status = transport.unflattenBinders(reply, channel->objects());
    if (status == OK) status = channel->send({.kind = FrameKind::kClaimed});
  }
  if (status == OK) {
    idle_.put(std::move(channel));
    status = header.status;
  }
  if (status != OK) reply->freeData();
  return status;
}

status_t OwnerProcess::acquire(uint64_t number) {
  std::unique_ptr<Channel> channel;
  FrameHeader header;
  Parcel none;
  const status_t status = exchange({.kind = FrameKind::kAcquire, .object = number}, nullptr, {},
                                   answerDeadline(), &channel, &header, &none);
  if (status != OK) return status;
  idle_.put(std::move(channel));
  return header.status;
}

void OwnerProcess::release(uint64_t number) {
  if (!watch_.valid()) return;
  unsentReleases_.push_back(number);
  if (unsentReleases_.size() == 1) sendReleases();
}

void OwnerProcess::sendReleases() {
  size_t sent = 0;
  while (sent < unsentReleases_.size()) {
    const size_t count = std::min(unsentReleases_.size() - sent, kMaxReleases);
    const auto sending = [&] {
      return ::send(watch_.get(), &unsentReleases_[sent], count * sizeof(Release),
                    MSG_NOSIGNAL | MSG_DONTWAIT);
    };
    if (retryOnInterrupt(sending) < 0) break;
    sent += count;
  }
  unsentReleases_.erase(unsentReleases_.begin(), unsentReleases_.begin() + static_cast<ptrdiff_t>(sent));
  const uint32_t events = unsentReleases_.empty() ? EPOLLIN : EPOLLIN | EPOLLOUT;
  if (std::exchange(watchedEvents_, events) != events) Transport::self().reactor.setEvents(watchKey_, events);
}

void OwnerProcess::release(const BpBinder& proxy) {
  if (Transport::self().forked) return;
  const std::lock_guard lock(mutex_);
  const auto entry = proxies_.find(proxy.number());
  if (entry != proxies_.end() && entry->second.unsafe_get() == &proxy) proxies_.erase(entry);
  release(proxy.number());
}

void OwnerProcess::objectDied(uint64_t number) {
  sp<BpBinder> proxy;
  {
    const std::lock_guard lock(mutex_);
    if (const auto acquiring = acquiring_.find(number); acquiring != acquiring_.end()) {
      acquiring->second.isDead = true;
    }
    proxy = knownProxy(number);
    proxies_.erase(number);
  }
  if (proxy == nullptr) return;
  proxy->markDead();
  proxy->sendObituaries();
}

void OwnerProcess::died() {
  Transport::self().reactor.remove(watchKey_);
  Transport::self().owners.remove(*this);
  std::vector<sp<BpBinder>> proxies;
  {
    const std::lock_guard lock(mutex_);
    dead_ = true;
    watch_ = UniqueFd();
    unsentReleases_.clear();
    for (const auto& [number, proxy] : proxies_) {
      if (sp<BpBinder> alive = proxy.promote(); alive != nullptr) proxies.push_back(std::move(alive));
    }
    proxies_.clear();
  }
  idle_.clear();
  for (const sp<BpBinder>& proxy : proxies) proxy->sendObituaries();
}

status_t OwnerProcesses::connect(uint64_t process, std::shared_ptr<OwnerProcess>* owner) {
  {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<OwnerProcess>& known = owners_[process];
    if (known == nullptr) known = std::make_shared<OwnerProcess>(process);
    *owner = known;
  }
  return (*owner)->connect();
}

void OwnerProcesses::remove(const OwnerProcess& owner) {
  const std::lock_guard lock(mutex_);
  const auto entry = owners_.find(owner.id());
  if (entry != owners_.end() && entry->second.get() == &owner) owners_.erase(entry);
}

}  // namespace android::transport
