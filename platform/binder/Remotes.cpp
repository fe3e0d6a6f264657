#include "Remotes.h"

#include <android/log.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "BpBinder.h"
#include "RuntimeDir.h"
#include "Transport.h"

namespace android::transport {

namespace {

/**
 * How long a process may take to answer that it can be watched or that an object may be held, for which none
 * of its own code has to run. One that is stopped or stuck counts as out of reach.
 */
constexpr int kAnswerTimeoutMs = 5000;

/** Connects to a process and sends the Hello. */
status_t openConnection(uint64_t process, ConnectionKind kind, UniqueFd* connection) {
  sockaddr_un address;
  if (!runtime_dir::socketAddress(process, &address)) return FAILED_TRANSACTION;
  UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  int result = -1;
  if (socket.valid()) {
    do {
      result = ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    } while (result < 0 && errno == EINTR);
  }
  if (result < 0) {
    if (errno == ECONNREFUSED || errno == ENOENT) return DEAD_OBJECT;
    __android_log_print(ANDROID_LOG_ERROR, "binder", "can't connect to %s: %s", address.sun_path,
                        std::strerror(errno));
    return FAILED_TRANSACTION;
  }

  ucred credentials;
  socklen_t size = sizeof(credentials);
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) < 0 ||
      credentials.uid != ::geteuid()) {
    __android_log_print(ANDROID_LOG_ERROR, "binder", "%s belongs to another user", address.sun_path);
    return PERMISSION_DENIED;
  }
  const Hello hello{.kind = kind, .process = Transport::self().id};
  if (::send(socket.get(), &hello, sizeof(hello), MSG_NOSIGNAL) != sizeof(hello)) return DEAD_OBJECT;
  *connection = std::move(socket);
  return OK;
}

}  // namespace

status_t Remote::connect() {
  const std::lock_guard connecting(connecting_);
  if (!connected_) {
    connected_ = openWatch();
    if (*connected_ != OK) {
      // Those who waited for this attempt share its failure. Whoever comes next makes a new one: the cause
      // may have gone.
      dead_.store(true, std::memory_order_release);
      Transport::self().remotes.remove(*this);
    }
  }
  return *connected_;
}

status_t Remote::openWatch() {
  UniqueFd watch;
  if (const status_t status = openConnection(id_, ConnectionKind::kWatch, &watch); status != OK) {
    return status;
  }
  Hello answer;
  if (!waitReadable(watch.get(), kAnswerTimeoutMs)) return FAILED_TRANSACTION;
  const ssize_t size = ::recv(watch.get(), &answer, sizeof(answer), MSG_TRUNC | MSG_DONTWAIT);
  if (size == 0 || (size < 0 && errno == ECONNRESET)) return DEAD_OBJECT;
  if (size != sizeof(answer) || answer.magic != kMagic || answer.process != id_) return FAILED_TRANSACTION;

  return Transport::self().reactor.watch(std::move(watch), shared_from_this());
}

sp<BpBinder> Remote::knownProxy(uint64_t number) {
  const auto entry = proxies_.find(number);
  return entry == proxies_.end() ? nullptr : entry->second.promote();
}

status_t Remote::proxy(uint64_t number, sp<IBinder>* object) {
  {
    const std::lock_guard lock(mutex_);
    if (sp<BpBinder> known = knownProxy(number); known != nullptr) {
      *object = std::move(known);
      return OK;
    }
    if (deadObjects_.contains(number)) return DEAD_OBJECT;
  }
  if (const status_t status = acquire(number); status != OK) return status;
  sp<BpBinder> result;
  {
    const std::lock_guard lock(mutex_);
    // It may have died between the answer and now.
    if (deadObjects_.contains(number)) return DEAD_OBJECT;
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

std::unique_ptr<Lane> Remote::takeLane(status_t* status) {
  if (Transport::self().forked) {
    *status = FAILED_TRANSACTION;
    return nullptr;
  }
  std::unique_ptr<Lane> lane = idle_.take();
  if (lane == nullptr) lane = openLane(status);
  if (lane == nullptr || !hasUnreleased_) return lane;
  std::vector<uint64_t> unreleased;
  {
    const std::lock_guard lock(mutex_);
    hasUnreleased_ = false;
    unreleased.swap(unreleased_);
  }
  for (const uint64_t number : unreleased) {
    *status = lane->send({.kind = FrameKind::kRelease, .object = number});
    if (*status != OK) return nullptr;
  }
  return lane;
}

std::unique_ptr<Lane> Remote::openLane(status_t* status) {
  UniqueFd connection;
  *status = openConnection(id_, ConnectionKind::kLane, &connection);
  if (*status != OK) return nullptr;
  auto lane = std::make_unique<Lane>(std::move(connection), Lane::Side::kCalls);
  lane->share();
  return lane;
}

void Remote::returnLane(std::unique_ptr<Lane> lane) {
  idle_.put(std::move(lane));
  // Asked only now: whoever sets it clears the idle lanes after that.
  if (isDead()) idle_.clear();
}

status_t Remote::transact(uint64_t number, uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  reply->freeData();
  if (isDead()) return DEAD_OBJECT;
  if (data.dataSize() > kMaxDataSize) return FAILED_TRANSACTION;
  Transport& transport = Transport::self();
  std::vector<ObjectEntry> entries;
  status_t status = transport.describe(data, &entries);
  if (status != OK) return status;
  const Lookouts::Call call;
  std::unique_ptr<Lane> lane = takeLane(&status);
  if (lane == nullptr) return status;

  FrameHeader header{.kind = FrameKind::kRequest, .object = number, .code = code, .flags = flags};
  status = lane->send(header, &data, entries);
  if (status == OK) status = lane->receive(&header, reply);
  if (status == OK && header.kind != FrameKind::kReply) status = FAILED_TRANSACTION;
  if (status == OK && !lane->objects().empty()) {
    status = transport.adopt(reply, lane->objects());
    if (status == OK) status = lane->send({.kind = FrameKind::kClaimed});
  }
  // After an error a lane is of no more use; closing it costs its other end no more than a thread.
  if (status == OK) {
    returnLane(std::move(lane));
    status = header.status;
  }
  if (status != OK) reply->freeData();
  return status;
}

status_t Remote::acquire(uint64_t number) {
  status_t status = OK;
  std::unique_ptr<Lane> lane = takeLane(&status);
  if (lane == nullptr) return status;
  FrameHeader header{.kind = FrameKind::kAcquire, .object = number};
  Parcel none;
  status = lane->send(header);
  if (status == OK && !lane->waitReadable(kAnswerTimeoutMs)) status = FAILED_TRANSACTION;
  if (status == OK) status = lane->receive(&header, &none);
  if (status == OK && header.kind != FrameKind::kReply) status = FAILED_TRANSACTION;
  if (status != OK) return status;
  returnLane(std::move(lane));
  return header.status;
}

void Remote::sendRelease(uint64_t number) {
  if (isDead() || Transport::self().forked) return;
  // Whoever lets an object go must not wait for its process. What can't be sent now goes with the next call.
  status_t status = OK;
  std::unique_ptr<Lane> lane = idle_.take();
  if (lane == nullptr) lane = openLane(&status);
  if (lane != nullptr) status = lane->trySend({.kind = FrameKind::kRelease, .object = number});
  const bool putOff = lane == nullptr || status == WOULD_BLOCK;
  if (putOff) {
    const std::lock_guard lock(mutex_);
    unreleased_.push_back(number);
    hasUnreleased_ = true;
  }
  if (lane != nullptr && (status == OK || putOff)) returnLane(std::move(lane));
}

void Remote::release(const BpBinder& proxy) {
  {
    const std::lock_guard lock(mutex_);
    const auto entry = proxies_.find(proxy.number());
    if (entry != proxies_.end() && entry->second.unsafe_get() == &proxy) proxies_.erase(entry);
  }
  sendRelease(proxy.number());
}

void Remote::objectDied(uint64_t number) {
  sp<BpBinder> proxy;
  {
    const std::lock_guard lock(mutex_);
    deadObjects_.insert(number);
    proxy = knownProxy(number);
    proxies_.erase(number);
  }
  if (proxy == nullptr) return;
  proxy->markDead();
  auto dead = std::make_shared<sp<BpBinder>>(std::move(proxy));
  Transport::self().reactor.runForeign("binder:death", [dead] {
    (*dead)->sendObituaries();
    dead->clear();
  });
}

void Remote::died() {
  Transport::self().remotes.remove(*this);
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
  Transport::self().reactor.runForeign("binder:death", [proxies] {
    for (const sp<BpBinder>& proxy : *proxies) proxy->sendObituaries();
    proxies->clear();
  });
}

status_t Remotes::connect(uint64_t process, std::shared_ptr<Remote>* remote) {
  if (Transport::self().forked) return FAILED_TRANSACTION;
  {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<Remote>& known = remotes_[process];
    if (known == nullptr) known = std::make_shared<Remote>(process);
    *remote = known;
  }
  return (*remote)->connect();
}

void Remotes::remove(const Remote& remote) {
  const std::lock_guard lock(mutex_);
  const auto entry = remotes_.find(remote.id());
  if (entry != remotes_.end() && entry->second.get() == &remote) remotes_.erase(entry);
}

}  // namespace android::transport
