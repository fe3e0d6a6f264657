#include "OwnerProcesses.h"

#include <android/log.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "BpBinder.h"
#include "RetryOnInterrupt.h"
#include "RuntimeDir.h"
#include "Transport.h"

namespace android::transport {

namespace {

using Clock = std::chrono::steady_clock;

/**
 * How long a process may take to answer that it can be watched or that an object may be held, for which none
 * of its own code has to run. A process that is stopped or stuck counts as out of reach.
 */
constexpr std::chrono::milliseconds kAnswerTimeout(5000);
constexpr Clock::time_point kNoWait{};

Clock::time_point answerDeadline() { return Clock::now() + kAnswerTimeout; }

/** A process that is stopped or stuck accepts nothing when its queue is full. The error number; EAGAIN at the
 * deadline. */
int connectBy(Clock::time_point deadline, int socket, const sockaddr_un& address) {
  for (;;) {
    // A time limit of 0 would mean none. It is set for each attempt, so that signals don't extend the wait.
    const int leftMs = std::max(1, millisecondsUntil(deadline));
    timeval limit = {};
    limit.tv_sec = leftMs / 1000;
    limit.tv_usec = leftMs % 1000 * 1000;
    if (::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit)) < 0) return errno;
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) break;
    if (errno != EINTR) return errno;
    if (Clock::now() >= deadline) return EAGAIN;
  }
  const timeval none = {};
  return ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &none, sizeof(none)) < 0 ? errno : 0;
}

/** Connects to a process and sends the Hello. DEAD_OBJECT if there is none. `failure` describes any other
 * failure. */
status_t openConnection(uint64_t process, ConnectionKind kind, Clock::time_point deadline,
                        UniqueFd* connection, std::string* failure) {
  sockaddr_un address;
  if (!runtime_dir::socketAddress(process, &address)) return FAILED_TRANSACTION;
  const auto failed = [&](int error) -> status_t {
    *failure = std::string("can't connect to ") + address.sun_path + ": " +
               (error == EAGAIN ? "it takes no connections" : std::strerror(error));
    return FAILED_TRANSACTION;
  };
  UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  if (!socket.valid()) return failed(errno);
  const int error = connectBy(deadline, socket.get(), address);
  if (error != 0) return error == ECONNREFUSED || error == ENOENT ? DEAD_OBJECT : failed(error);

  ucred credentials;
  socklen_t size = sizeof(credentials);
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) < 0) return failed(errno);
  if (credentials.uid != ::geteuid()) {
    *failure = std::string(address.sun_path) + " belongs to another user";
    return PERMISSION_DENIED;
  }
  const Hello hello{.kind = kind, .process = Transport::self().id};
  const auto greeting = [&] { return ::send(socket.get(), &hello, sizeof(hello), MSG_NOSIGNAL); };
  if (retryOnInterrupt(greeting) < 0)
    return errno == EPIPE || errno == ECONNRESET ? DEAD_OBJECT : failed(errno);
  *connection = std::move(socket);
  return OK;
}

/** Logs why a process can't be reached, once while that stays so. Never under a lock: the application's
 * logger may use the binder. */
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
      // Those who waited for this attempt share its failure. Whoever comes next makes a new one: the cause
      // may have gone.
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
  if (const status_t status = openConnection(id_, ConnectionKind::kWatch, deadline, &watch, failure);
      status != OK) {
    return status;
  }
  Hello answer;
  if (!waitReadable(watch.get(), deadline)) {
    *failure = "process " + std::to_string(id_) + " doesn't answer";
    return FAILED_TRANSACTION;
  }
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(watch.get(), &answer, sizeof(answer), MSG_TRUNC | MSG_DONTWAIT); });
  if (size == 0 || (size < 0 && errno == ECONNRESET)) return DEAD_OBJECT;
  if (size != sizeof(answer) || answer.magic != kMagic || answer.process != id_) {
    *failure = "process " + std::to_string(id_) + " answers with what is no greeting";
    return FAILED_TRANSACTION;
  }

  watch_ = std::move(watch);
  const status_t status = Transport::self().reactor.add(
      watch_.get(), EPOLLIN, [self = shared_from_this()] { self->onWatchReadable(); }, &watchKey_);
  if (status != OK) *failure = std::string("can't wait for the end of a process: ") + std::strerror(-status);
  return status;
}

void OwnerProcess::onWatchReadable() {
  ObjectDeath number;
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(watch_.get(), &number, sizeof(number), MSG_DONTWAIT | MSG_TRUNC); });
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
    // It may have died between the answer and now.
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
  }
  // Another thread was faster, and its proxy has a reference of its own.
  sendRelease(number);
  *object = std::move(result);
  return OK;
}

std::unique_ptr<Channel> OwnerProcess::takeChannel(status_t* status) {
  std::unique_ptr<Channel> channel = idle_.take();
  if (channel == nullptr) channel = openChannel(answerDeadline(), status);
  if (channel == nullptr || !hasUnreleased_) return channel;
  std::vector<uint64_t> unreleased;
  {
    const std::lock_guard lock(mutex_);
    hasUnreleased_ = false;
    unreleased.swap(unreleased_);
  }
  for (size_t i = 0; i < unreleased.size(); ++i) {
    *status = channel->trySend({.kind = FrameKind::kRelease, .object = unreleased[i]});
    if (*status == OK) continue;
    deferRelease(&unreleased[i], unreleased.size() - i);
    return *status == WOULD_BLOCK ? std::move(channel) : nullptr;
  }
  return channel;
}

std::unique_ptr<Channel> OwnerProcess::openChannel(Clock::time_point deadline, status_t* status) const {
  UniqueFd connection;
  std::string failure;
  *status = openConnection(id_, ConnectionKind::kChannel, deadline, &connection, &failure);
  if (*status == OK || deadline != kNoWait) logOnce(failure);
  if (*status != OK) return nullptr;
  auto channel = std::make_unique<Channel>(std::move(connection), Channel::Side::kCalls);
  channel->share();
  return channel;
}

void OwnerProcess::returnChannel(std::unique_ptr<Channel> channel) {
  idle_.put(std::move(channel));
  // Asked only now: whoever sets it clears the idle channels after that.
  if (isDead()) idle_.clear();
}

status_t OwnerProcess::transact(uint64_t number, uint32_t code, const Parcel& data, Parcel* reply,
                                uint32_t flags) {
  reply->freeData();
  if (Transport::self().forked) return FAILED_TRANSACTION;
  if (isDead()) return DEAD_OBJECT;
  if (data.dataSize() > kMaxDataSize) return FAILED_TRANSACTION;
  Transport& transport = Transport::self();
  std::vector<ObjectEntry> entries;
  status_t status = transport.flattenBinders(data, &entries);
  if (status != OK) return status;
  const SpinLimiter::Call call;
  std::unique_ptr<Channel> channel = takeChannel(&status);
  if (channel == nullptr) return status;

  FrameHeader header{.kind = FrameKind::kRequest, .object = number, .code = code, .flags = flags};
  status = channel->send(header, &data, entries);
  if (status == OK) status = channel->receive(&header, reply);
  if (status == OK && header.kind != FrameKind::kReply) status = FAILED_TRANSACTION;
  if (status == OK && !channel->objects().empty()) {
    status = transport.unflattenBinders(reply, channel->objects());
    if (status == OK) status = channel->send({.kind = FrameKind::kClaimed});
  }
  // After an error a channel is of no more use; closing it costs its other end no more than a thread.
  if (status == OK) {
    returnChannel(std::move(channel));
    status = header.status;
  }
  if (status != OK) reply->freeData();
  return status;
}

status_t OwnerProcess::acquire(uint64_t number) {
  status_t status = OK;
  std::unique_ptr<Channel> channel = takeChannel(&status);
  if (channel == nullptr) return status;
  FrameHeader header{.kind = FrameKind::kAcquire, .object = number};
  Parcel none;
  const Clock::time_point deadline = answerDeadline();
  status = channel->trySend(header, deadline);
  if (status == WOULD_BLOCK) status = FAILED_TRANSACTION;
  if (status == OK && !channel->waitReadable(deadline)) status = FAILED_TRANSACTION;
  if (status == OK) status = channel->receive(&header, &none);
  if (status == OK && header.kind != FrameKind::kReply) status = FAILED_TRANSACTION;
  if (status != OK) return status;
  returnChannel(std::move(channel));
  return header.status;
}

void OwnerProcess::sendRelease(uint64_t number) {
  if (isDead()) return;
  // Whoever lets an object go must not wait for its process. What can't be sent now is sent by a thread that
  // may wait, or with the next call.
  status_t status = OK;
  std::unique_ptr<Channel> channel = idle_.take();
  if (channel == nullptr) channel = openChannel(kNoWait, &status);
  if (channel != nullptr) status = channel->trySend({.kind = FrameKind::kRelease, .object = number});
  if (channel == nullptr || status != OK) deferRelease(&number, 1);
  if (channel != nullptr && (status == OK || status == WOULD_BLOCK)) returnChannel(std::move(channel));
  // There may be no next call.
  if (status == WOULD_BLOCK && !sendsDeferred_.exchange(true)) {
    Transport::self().reactor.callbacks().run([self = shared_from_this()] { self->sendDeferredReleases(); });
  }
}

void OwnerProcess::sendDeferredReleases() {
  status_t status = OK;
  do {
    std::vector<uint64_t> unreleased;
    {
      const std::lock_guard lock(mutex_);
      hasUnreleased_ = false;
      unreleased.swap(unreleased_);
    }
    std::unique_ptr<Channel> channel = idle_.take();
    if (channel == nullptr) channel = openChannel(kNoWait, &status);
    size_t sent = 0;
    while (channel != nullptr && status == OK && sent < unreleased.size()) {
      status = channel->trySend({.kind = FrameKind::kRelease, .object = unreleased[sent]}, answerDeadline());
      if (status == OK) ++sent;
    }
    if (sent < unreleased.size()) deferRelease(&unreleased[sent], unreleased.size() - sent);
    if (channel != nullptr && (status == OK || status == WOULD_BLOCK)) returnChannel(std::move(channel));
    sendsDeferred_ = false;
    // What has been put off since then found a thread that was about to send it.
  } while (status == OK && !isDead() && hasUnreleased_ && !sendsDeferred_.exchange(true));
}

void OwnerProcess::deferRelease(const uint64_t* numbers, size_t count) {
  const std::lock_guard lock(mutex_);
  unreleased_.insert(unreleased_.end(), numbers, numbers + count);
  hasUnreleased_ = true;
}

void OwnerProcess::release(const BpBinder& proxy) {
  if (Transport::self().forked) return;
  {
    const std::lock_guard lock(mutex_);
    const auto entry = proxies_.find(proxy.number());
    if (entry != proxies_.end() && entry->second.unsafe_get() == &proxy) proxies_.erase(entry);
  }
  sendRelease(proxy.number());
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
  auto dead = std::make_shared<sp<BpBinder>>(std::move(proxy));
  Transport::self().reactor.callbacks().run([dead] {
    (*dead)->sendObituaries();
    dead->clear();
  });
}

void OwnerProcess::died() {
  Transport::self().reactor.remove(watchKey_);
  watch_ = UniqueFd();
  Transport::self().owners.remove(*this);
  auto proxies = std::make_shared<std::vector<sp<BpBinder>>>();
  {
    const std::lock_guard lock(mutex_);
    dead_ = true;
    for (const auto& [number, proxy] : proxies_) {
      if (sp<BpBinder> alive = proxy.promote(); alive != nullptr) proxies->push_back(std::move(alive));
    }
    proxies_.clear();
  }
  idle_.clear();
  if (proxies->empty()) return;
  Transport::self().reactor.callbacks().run([proxies] {
    for (const sp<BpBinder>& proxy : *proxies) proxy->sendObituaries();
    proxies->clear();
  });
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
