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

status_t failed(const char* what) {
  const int error = errno;
  __android_log_print(ANDROID_LOG_ERROR, "binder", "%s: %s", what, std::strerror(error));
  return -error;
}

}  // namespace

status_t Reactor::start() {
  if (epoll_.valid()) return OK;
  UniqueFd epoll(::epoll_create1(EPOLL_CLOEXEC));
  if (!epoll.valid()) return failed("can't wait for connections");
  epoll_ = std::move(epoll);
  if (startThread("binder:reactor", [this] { run(); })) return OK;
  epoll_ = UniqueFd();
  errno = EAGAIN;
  return failed("can't start the thread that waits for connections");
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
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, fd, nullptr);
  return std::move(entries_.extract(fd).mapped());
}

status_t Reactor::listen() {
  const std::lock_guard lock(mutex_);
  if (listening_.valid()) return OK;
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
  listening_ = std::move(socket);
  static const pid_t listener = ::getpid();
  std::atexit([] {
    // A forked child exits, too.
    if (::getpid() == listener) runtime_dir::removeAllOf(Transport::self().id);
  });
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
    if (::epoll_wait(epoll_.get(), &event, 1, -1) != 1) continue;
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
      failed("can't accept a connection");
      // It stays in the queue; without a pause this would be a busy loop.
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return;
  }
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
  if (entry.peer != nullptr) {
    // Nothing is ever sent here, so this is the end of the process, or of its good behaviour.
    Transport::self().exports.removePeer(*entry.peer);
    auto dropped = std::make_shared<std::vector<sp<BBinder>>>(entry.peer->dropAll());
    if (!dropped->empty()) startThread("binder:drop", [dropped] { dropped->clear(); });
  } else if (entry.remote != nullptr) {
    entry.remote->died();
  } else {
    Hello hello;
    const ssize_t size = ::recv(fd, &hello, sizeof(hello), MSG_DONTWAIT | MSG_TRUNC);
    if (size == sizeof(hello) && hello.magic == kMagic) greet(std::move(entry), hello);
  }
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
    auto connection = std::make_shared<UniqueFd>(std::move(entry.connection));
    const uid_t uid = entry.credentials.uid;
    startThread("binder:lane", [connection, peer, uid] { serve(std::move(*connection), peer, uid); });
  }
}

}  // namespace android::transport
