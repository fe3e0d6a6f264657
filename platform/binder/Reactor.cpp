#include "Reactor.h"

#include <android/log.h>
#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

#include "Channel.h"
#include "Exports.h"
#include "OwnerProcesses.h"
#include "RetryOnInterrupt.h"
#include "RuntimeDir.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** Marks the events of channels. Any thread may close a channel, and its descriptor may be that of another
 * connection before the event is looked at. */
constexpr uint64_t kOfChannel = uint64_t{1} << 32;

/** Until what failed for want of descriptors or threads is tried again. */
constexpr int kRetryMs = 50;

/** Who connects says at once who it is. */
constexpr std::chrono::seconds kHelloTimeout(5);
/** More than ever connect at a time, and few enough to leave descriptors for those who do say something. */
constexpr size_t kMaxStrangers = 512;

/** Logs a failure. Never under a lock: the application's logger may use the binder. */
status_t logged(status_t status, const char* what) {
  if (status != OK) __android_log_print(ANDROID_LOG_ERROR, "binder", "%s: %s", what, std::strerror(-status));
  return status;
}

/** The application's signal handlers run on the application's threads; faults must be seen where they happen.
 */
sigset_t maskOfReactor() {
  sigset_t mask;
  sigfillset(&mask);
  for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT}) sigdelset(&mask, fault);
  return mask;
}

}  // namespace

status_t Reactor::start() {
  if (epoll_.valid()) return OK;
  UniqueFd epoll(::epoll_create1(EPOLL_CLOEXEC));
  if (!epoll.valid()) return -errno;
  pthread_sigmask(SIG_SETMASK, nullptr, &applicationMask_);
  hasForeignThread_ = hasForeignThread_ || callbacks_.start(applicationMask_);
  epoll_ = std::move(epoll);
  if (hasForeignThread_ && startThread("binder:reactor", maskOfReactor(), [this] { run(); })) return OK;
  epoll_ = UniqueFd();
  return -EAGAIN;
}

status_t Reactor::add(Entry entry) {
  const int fd = entry.connection.get();
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.u64 = static_cast<uint32_t>(fd);
  entries_.emplace(fd, std::move(entry));
  if (::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event) == 0) return OK;
  const int error = errno;
  entries_.erase(fd);
  return -error;
}

Reactor::Entry Reactor::take(int fd) {
  const std::lock_guard lock(mutex_);
  const auto entry = entries_.find(fd);
  if (entry == entries_.end()) return {};
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, fd, nullptr);
  return std::move(entries_.extract(entry).mapped());
}

bool Reactor::isReachable() {
  const std::lock_guard lock(mutex_);
  // Who cleans up the directory under a running process takes its socket away.
  return listening_.valid() && runtime_dir::hasSocket(Transport::self().id);
}

status_t Reactor::listen() {
  if (isReachable()) return OK;
  if (const status_t status = runtime_dir::prepare(); status != OK) return status;
  std::string failure;
  const status_t status = openSocket(&failure);
  if (status != OK) __android_log_print(ANDROID_LOG_ERROR, "binder", "%s", failure.c_str());
  return status;
}

status_t Reactor::openSocket(std::string* failure) {
  const std::lock_guard opening(opening_);
  if (isReachable()) return OK;
  UniqueFd socket;
  status_t status = runtime_dir::openSocket(Transport::self().id, &socket, failure);
  if (status != OK) return status;

  const std::lock_guard lock(mutex_);
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.u64 = static_cast<uint32_t>(socket.get());
  status = start();
  if (status == OK && ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, socket.get(), &event) < 0) status = -errno;
  if (status != OK) {
    *failure = std::string("can't wait for connections: ") + std::strerror(-status);
    runtime_dir::removeSocket(Transport::self().id);
    return status;
  }
  const bool isFirst = !listening_.valid();
  listening_ = std::move(socket);
  if (isFirst) {
    std::atexit([] {
      if (!Transport::self().forked) runtime_dir::removeAllOf(Transport::self().id);
    });
  }
  return OK;
}

status_t Reactor::watch(UniqueFd connection, const std::shared_ptr<OwnerProcess>& remote) {
  Entry entry;
  entry.connection = std::move(connection);
  entry.remote = remote;
  const std::lock_guard lock(mutex_);
  const status_t status = start();
  return status == OK ? add(std::move(entry)) : status;
}

bool Reactor::watch(Channel* channel) {
  const std::lock_guard lock(mutex_);
  if (start() != OK) return false;
  epoll_event event = {};
  // Whatever else comes over the socket is read by the channel itself.
  event.events = EPOLLRDHUP | EPOLLONESHOT;
  event.data.u64 = kOfChannel | static_cast<uint32_t>(channel->socket());
  if (::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, channel->socket(), &event) < 0) return false;
  channels_.emplace(channel->socket(), channel);
  return true;
}

void Reactor::forget(Channel* channel) {
  // The parent still waits at the descriptor that the child has, too.
  if (Transport::self().forked) return;
  const std::lock_guard lock(mutex_);
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, channel->socket(), nullptr);
  channels_.erase(channel->socket());
  ended_.erase(channel);
}

void Reactor::endChannel(int fd) {
  const std::lock_guard lock(mutex_);
  const auto entry = channels_.find(fd);
  if (entry == channels_.end()) return;
  // It may be another channel than that of the event.
  pollfd poller{fd, POLLRDHUP, 0};
  if (::poll(&poller, 1, 0) == 1 && entry->second->end()) ended_.insert(entry->second);
}

void Reactor::endChannelsAgain() {
  const std::lock_guard lock(mutex_);
  std::erase_if(ended_, [](Channel* channel) { return !channel->end(); });
}

void Reactor::run() {
  for (;;) {
    epoll_event event;
    const int ready = ::epoll_wait(epoll_.get(), &event, 1, timeoutMs());
    endChannelsAgain();
    std::erase_if(waiting_, [this](const WaitingChannel& channel) { return serveOnThread(channel); });
    while (!pendingConnections_.empty() && pendingConnections_.front().deadline <= Clock::now())
      dropOldestPendingConnection();
    if (ready != 1) continue;
    const int fd = static_cast<int>(static_cast<uint32_t>(event.data.u64));
    if ((event.data.u64 & kOfChannel) != 0) {
      endChannel(fd);
      continue;
    }
    if (!accept(fd)) readable(fd);
  }
}

int Reactor::timeoutMs() {
  if (!waiting_.empty()) return kRetryMs;
  {
    const std::lock_guard lock(mutex_);
    if (!ended_.empty()) return kRetryMs;
  }
  if (pendingConnections_.empty()) return -1;
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(pendingConnections_.front().deadline - Clock::now());
  return std::max(0, static_cast<int>(left.count()));
}

/** If it has said nothing, it is dropped. What it has said may not have been looked at yet. */
void Reactor::dropOldestPendingConnection() { readable(pendingConnections_.front().fd); }

bool Reactor::accept(int fd) {
  Entry entry;
  int error;
  {
    // Another thread may replace the socket, after which its descriptor may be that of another file.
    const std::lock_guard lock(mutex_);
    if (fd != listening_.get()) return false;
    entry.connection = UniqueFd(::accept4(fd, nullptr, nullptr, SOCK_CLOEXEC));
    error = errno;
  }
  if (entry.connection.valid()) {
    acceptFailure_.shouldLog(0);
    accepted(std::move(entry));
  } else {
    if (error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM) {
      if (acceptFailure_.shouldLog(error)) logged(-error, "can't accept connections");
      // It stays in the queue; without a pause this would be a busy loop.
      std::this_thread::sleep_for(std::chrono::milliseconds(kRetryMs));
    }
  }
  return true;
}

void Reactor::accepted(Entry entry) {
  socklen_t size = sizeof(entry.credentials);
  if (::getsockopt(entry.connection.get(), SOL_SOCKET, SO_PEERCRED, &entry.credentials, &size) < 0 ||
      entry.credentials.uid != ::geteuid()) {
    if (!refusesOthers_) {
      __android_log_print(ANDROID_LOG_WARN, "binder", "refuses connections from user %u",
                          entry.credentials.uid);
    }
    refusesOthers_ = true;
    return;
  }
  refusesOthers_ = false;
  if (pendingConnections_.size() >= kMaxStrangers) {
    if (!tooManyPendingConnections_) {
      __android_log_print(ANDROID_LOG_WARN, "binder",
                          "too many connections that say nothing, drops the oldest");
    }
    tooManyPendingConnections_ = true;
    dropOldestPendingConnection();
  } else if (pendingConnections_.size() < kMaxStrangers / 2) {
    tooManyPendingConnections_ = false;
  }
  const int fd = entry.connection.get();
  status_t status;
  {
    const std::lock_guard lock(mutex_);
    status = add(std::move(entry));
  }
  if (logged(status, "can't wait for a connection") == OK)
    pendingConnections_.push_back({fd, Clock::now() + kHelloTimeout});
}

void Reactor::readable(int fd) {
  Entry entry = take(fd);
  if (!entry.connection.valid()) {
    // The last word of a listening socket that has just been replaced.
  } else if (entry.peer != nullptr) {
    // Nothing is ever sent here, so this is the end of the process, or of its good behaviour.
    Transport::self().exports.removeHolder(*entry.peer);
    auto dropped = std::make_shared<std::vector<sp<BBinder>>>(entry.peer->dropAll());
    if (!dropped->empty()) runCallback("binder:drop", [dropped] { dropped->clear(); });
  } else if (entry.remote != nullptr) {
    onWatchMessage(std::move(entry));
  } else {
    std::erase_if(pendingConnections_, [fd](const PendingConnection& stranger) { return stranger.fd == fd; });
    Hello hello;
    const ssize_t size =
        retryOnInterrupt([&] { return ::recv(fd, &hello, sizeof(hello), MSG_DONTWAIT | MSG_TRUNC); });
    if (size == sizeof(hello) && hello.magic == kMagic) onHello(std::move(entry), hello);
  }
}

void Reactor::tellOfDeath(const HolderProcess& holder, ObjectDeath number) {
  const std::lock_guard lock(mutex_);
  for (const auto& [fd, entry] : entries_) {
    if (entry.peer.get() != &holder) continue;
    // Who has left so many unread is stuck, and takes this process for dead rather than its object for alive.
    const auto tell = [&, socket = fd] {
      return ::send(socket, &number, sizeof(number), MSG_NOSIGNAL | MSG_DONTWAIT);
    };
    if (retryOnInterrupt(tell) < 0) ::shutdown(fd, SHUT_RDWR);
  }
}

/** The owner of objects says that one is no more, or says nothing any more. */
void Reactor::onWatchMessage(Entry entry) {
  ObjectDeath number;
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(entry.connection.get(), &number, sizeof(number), MSG_DONTWAIT | MSG_TRUNC); });
  const std::shared_ptr<OwnerProcess> remote = entry.remote;
  if (size != sizeof(number)) return remote->died();
  remote->objectDied(number);
  status_t status;
  {
    const std::lock_guard lock(mutex_);
    status = add(std::move(entry));
  }
  if (status != OK) remote->died();
}

void Reactor::onHello(Entry entry, const Hello& hello) {
  Exports& exports = Transport::self().exports;
  if (hello.kind == ConnectionKind::kWatch) {
    entry.peer = exports.addHolder(hello.process, entry.credentials.pid);
    if (entry.peer == nullptr) return;
    const Hello answer{.kind = ConnectionKind::kWatch, .process = Transport::self().id};
    const auto answering = [&] {
      return ::send(entry.connection.get(), &answer, sizeof(answer), MSG_NOSIGNAL | MSG_DONTWAIT);
    };
    if (retryOnInterrupt(answering) < 0) {
      if (errno != EPIPE && errno != ECONNRESET) logged(-errno, "can't answer a process");
      exports.removeHolder(*entry.peer);
      return;
    }
    const std::shared_ptr<HolderProcess> peer = entry.peer;
    status_t status;
    {
      const std::lock_guard lock(mutex_);
      status = add(std::move(entry));
    }
    if (logged(status, "can't wait for the end of a process") != OK) exports.removeHolder(*peer);
  } else if (hello.kind == ConnectionKind::kChannel) {
    std::shared_ptr<HolderProcess> peer = exports.peer(hello.process);
    if (peer == nullptr || peer->pid() != entry.credentials.pid) return;
    const WaitingChannel channel{std::make_shared<UniqueFd>(std::move(entry.connection)), std::move(peer),
                                 entry.credentials.uid};
    if (serveOnThread(channel)) return;
    if (waiting_.empty()) {
      __android_log_print(ANDROID_LOG_ERROR, "binder",
                          "no thread for a caller, who waits until there can be one");
    }
    waiting_.push_back(channel);
  }
}

bool Reactor::serveOnThread(const WaitingChannel& channel) {
  return startThread("binder:channel", applicationMask_,
                     [channel] { serve(std::move(*channel.connection), channel.peer, channel.uid); });
}

}  // namespace android::transport
