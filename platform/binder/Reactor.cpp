#include "Reactor.h"

#include <android/log.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

#include "Exports.h"
#include "Remotes.h"
#include "RuntimeDir.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** Until what failed for want of descriptors or threads is tried again. */
constexpr int kRetryMs = 50;

status_t failed(const char* what) {
  const int error = errno;
  __android_log_print(ANDROID_LOG_ERROR, "binder", "%s: %s", what, std::strerror(error));
  return -error;
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
  if (!epoll.valid()) return failed("can't wait for connections");
  pthread_sigmask(SIG_SETMASK, nullptr, &applicationMask_);
  hasForeignThread_ = hasForeignThread_ || foreign_.start(applicationMask_);
  epoll_ = std::move(epoll);
  if (hasForeignThread_ && startThread("binder:reactor", maskOfReactor(), [this] { run(); })) return OK;
  epoll_ = UniqueFd();
  errno = EAGAIN;
  return failed("can't start the threads of the transport");
}

status_t Reactor::add(Entry entry) {
  const int fd = entry.connection.get();
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.fd = fd;
  entries_.emplace(fd, std::move(entry));
  if (::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event) == 0) return OK;
  entries_.erase(fd);
  return failed("can't wait for a connection");
}

Reactor::Entry Reactor::take(int fd) {
  const std::lock_guard lock(mutex_);
  const auto entry = entries_.find(fd);
  if (entry == entries_.end()) return {};
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, fd, nullptr);
  return std::move(entries_.extract(entry).mapped());
}

status_t Reactor::listen() {
  const std::lock_guard lock(mutex_);
  // Who cleans up the directory under a running process takes its socket away.
  if (listening_.valid() && runtime_dir::hasSocket(Transport::self().id)) return OK;
  if (const status_t status = start(); status != OK) return status;
  if (const status_t status = runtime_dir::prepare(); status != OK) return status;
  runtime_dir::removeDeadSockets();

  // Others take a socket on which nobody listens for a dead one, so it gets its name only when it is ready.
  sockaddr_un address;
  sockaddr_un unready;
  if (!runtime_dir::socketAddress(Transport::self().id, &address) ||
      !runtime_dir::unreadySocketAddress(Transport::self().id, &unready)) {
    return BAD_VALUE;
  }
  UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.fd = socket.get();
  if (!socket.valid() ||
      ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&unready), sizeof(unready)) < 0) {
    return failed("can't make a socket in the runtime directory");
  }
  if (::listen(socket.get(), SOMAXCONN) < 0 || ::rename(unready.sun_path, address.sun_path) < 0 ||
      ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, socket.get(), &event) < 0) {
    const status_t status = failed("can't listen in the runtime directory");
    ::unlink(unready.sun_path);
    ::unlink(address.sun_path);
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

status_t Reactor::watch(UniqueFd connection, const std::shared_ptr<Remote>& remote) {
  const std::lock_guard lock(mutex_);
  if (const status_t status = start(); status != OK) return status;
  Entry entry;
  entry.connection = std::move(connection);
  entry.remote = remote;
  return add(std::move(entry));
}

void Reactor::run() {
  for (;;) {
    epoll_event event;
    const int timeout = waiting_.empty() ? -1 : kRetryMs;
    const int ready = ::epoll_wait(epoll_.get(), &event, 1, timeout);
    std::erase_if(waiting_, [this](const WaitingLane& lane) { return serveOnThread(lane); });
    if (ready != 1) continue;
    const int fd = event.data.fd;
    bool isListening;
    {
      const std::lock_guard lock(mutex_);
      isListening = fd == listening_.get();
    }
    if (isListening) {
      accept();
    } else {
      readable(fd);
    }
  }
}

void Reactor::accept() {
  Entry entry;
  entry.connection = UniqueFd(::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (!entry.connection.valid()) {
    if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
      if (!acceptFails_) failed("can't accept connections");
      acceptFails_ = true;
      // It stays in the queue; without a pause this would be a busy loop.
      std::this_thread::sleep_for(std::chrono::milliseconds(kRetryMs));
    }
    return;
  }
  acceptFails_ = false;
  socklen_t size = sizeof(entry.credentials);
  if (::getsockopt(entry.connection.get(), SOL_SOCKET, SO_PEERCRED, &entry.credentials, &size) < 0 ||
      entry.credentials.uid != ::geteuid()) {
    __android_log_print(ANDROID_LOG_WARN, "binder", "refused a connection from user %u",
                        entry.credentials.uid);
    return;
  }
  const std::lock_guard lock(mutex_);
  add(std::move(entry));
}

void Reactor::readable(int fd) {
  Entry entry = take(fd);
  if (!entry.connection.valid()) {
    // The last word of a listening socket that has just been replaced.
  } else if (entry.peer != nullptr) {
    // Nothing is ever sent here, so this is the end of the process, or of its good behaviour.
    Transport::self().exports.removePeer(*entry.peer);
    auto dropped = std::make_shared<std::vector<sp<BBinder>>>(entry.peer->dropAll());
    if (!dropped->empty()) runForeign("binder:drop", [dropped] { dropped->clear(); });
  } else if (entry.remote != nullptr) {
    hear(std::move(entry));
  } else {
    Hello hello;
    const ssize_t size = ::recv(fd, &hello, sizeof(hello), MSG_DONTWAIT | MSG_TRUNC);
    if (size == sizeof(hello) && hello.magic == kMagic) greet(std::move(entry), hello);
  }
}

void Reactor::tellOfDeath(const Peer& holder, uint64_t number) {
  const std::lock_guard lock(mutex_);
  for (const auto& [fd, entry] : entries_) {
    if (entry.peer.get() != &holder) continue;
    // Who has left so many unread is stuck, and takes this process for dead rather than its object for alive.
    if (::send(fd, &number, sizeof(number), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) ::shutdown(fd, SHUT_RDWR);
  }
}

/** The owner of objects says that one is no more, or says nothing any more. */
void Reactor::hear(Entry entry) {
  uint64_t number;
  const ssize_t size = ::recv(entry.connection.get(), &number, sizeof(number), MSG_DONTWAIT | MSG_TRUNC);
  const std::shared_ptr<Remote> remote = entry.remote;
  if (size != sizeof(number)) return remote->died();
  remote->objectDied(number);
  status_t status;
  {
    const std::lock_guard lock(mutex_);
    status = add(std::move(entry));
  }
  if (status != OK) remote->died();
}

void Reactor::greet(Entry entry, const Hello& hello) {
  Exports& exports = Transport::self().exports;
  if (hello.kind == ConnectionKind::kWatch) {
    entry.peer = exports.addPeer(hello.process, entry.credentials.pid);
    if (entry.peer == nullptr) return;
    const Hello answer{.kind = ConnectionKind::kWatch, .process = Transport::self().id};
    if (::send(entry.connection.get(), &answer, sizeof(answer), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
      exports.removePeer(*entry.peer);
      return;
    }
    const std::lock_guard lock(mutex_);
    add(std::move(entry));
  } else if (hello.kind == ConnectionKind::kLane) {
    std::shared_ptr<Peer> peer = exports.peer(hello.process);
    if (peer == nullptr || peer->pid() != entry.credentials.pid) return;
    const WaitingLane lane{std::make_shared<UniqueFd>(std::move(entry.connection)), std::move(peer),
                           entry.credentials.uid};
    if (serveOnThread(lane)) return;
    __android_log_print(ANDROID_LOG_ERROR, "binder",
                        "no thread for a caller, who waits until there can be one");
    waiting_.push_back(lane);
  }
}

bool Reactor::serveOnThread(const WaitingLane& lane) {
  return startThread("binder:lane", applicationMask_,
                     [lane] { serve(std::move(*lane.connection), lane.peer, lane.uid); });
}

}  // namespace android::transport
