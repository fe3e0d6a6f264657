#include "Listener.h"

#include <android/log.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "Connect.h"
#include "Exports.h"
#include "RetryOnInterrupt.h"
#include "RuntimeDir.h"
#include "Thread.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** The pause after a shortage of descriptors or threads. */
constexpr std::chrono::milliseconds kRetryTime(50);
constexpr std::chrono::seconds kHelloTimeout(5);
/** More than connect at a time, and few enough to leave descriptors for other connections. */
constexpr size_t kMaxPendingConnections = 512;

}  // namespace

bool Listener::isReachable() {
  const std::lock_guard lock(mutex_);
  // The directory may be cleaned up under a running process, and its socket with it.
  return listening_ != nullptr && runtime_dir::hasSocket(transport_.id);
}

status_t Listener::listen() {
  if (isReachable()) return OK;
  if (const status_t status = runtime_dir::prepare(); status != OK) return status;
  std::string failure;
  const status_t status = openSocket(&failure);
  // Not under a lock: the application's logger may use the binder.
  if (status != OK) __android_log_print(ANDROID_LOG_ERROR, "binder", "%s", failure.c_str());
  return status;
}

status_t Listener::openSocket(std::string* failure) {
  const std::lock_guard opening(opening_);
  if (isReachable()) return OK;
  const auto socket = std::make_shared<Socket>();
  status_t status = runtime_dir::openSocket(transport_.id, &socket->fd, failure);
  if (status != OK) return status;
  status = transport_.reactor.add(
      socket->fd.get(), EPOLLIN, [this, socket] { accept(*socket); }, &socket->key);
  if (status != OK) {
    *failure = std::string("can't wait for connections: ") + std::strerror(-status);
    runtime_dir::removeSocket(transport_.id);
    return status;
  }
  std::shared_ptr<Socket> before = socket;
  {
    const std::lock_guard lock(mutex_);
    listening_.swap(before);
  }
  if (before != nullptr) {
    transport_.reactor.remove(before->key);
  } else {
    std::atexit([] {
      if (!Transport::self().forked) runtime_dir::removeAllOf(Transport::self().id);
    });
  }
  return OK;
}

void Listener::logFailure(const char* what, int error) {
  transport_.reactor.callbacks().log(ANDROID_LOG_ERROR, std::string(what) + ": " + std::strerror(error));
}

void Listener::pause(Reactor::Key key) {
  transport_.reactor.setEvents(key, 0);
  transport_.reactor.runAfter(kRetryTime, [this, key] { transport_.reactor.setEvents(key, EPOLLIN); });
}

void Listener::accept(const Socket& socket) {
  UniqueFd connection(::accept4(socket.fd.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (connection.valid()) {
    acceptFailure_.shouldLog(0);
    onAccepted(std::move(connection));
    return;
  }
  const int error = errno;
  if (error != EMFILE && error != ENFILE && error != ENOBUFS && error != ENOMEM) return;
  if (acceptFailure_.shouldLog(error)) logFailure("can't accept connections", error);
  transport_.served.makeRoom();
  pause(socket.key);
}

void Listener::onAccepted(UniqueFd socket) {
  const auto connection = std::make_shared<PendingConnection>();
  connection->socket = std::move(socket);
  connection->deadline = std::chrono::steady_clock::now() + kHelloTimeout;
  socklen_t size = sizeof(connection->credentials);
  const bool isOwn =
      ::getsockopt(connection->socket.get(), SOL_SOCKET, SO_PEERCRED, &connection->credentials, &size) == 0 &&
      connection->credentials.uid == ::geteuid();
  if (!isOwn && !refusesOthers_) {
    transport_.reactor.callbacks().log(
        ANDROID_LOG_WARN, "refuses connections from user " + std::to_string(connection->credentials.uid));
  }
  refusesOthers_ = !isOwn;
  if (!isOwn) return;
  if (pendingConnections_.size() >= kMaxPendingConnections) {
    if (!tooManyPendingConnections_) {
      transport_.reactor.callbacks().log(ANDROID_LOG_WARN,
                                         "too many connections without a Hello, drops the oldest");
    }
    tooManyPendingConnections_ = true;
    // Its Hello may have arrived just now.
    onReadable(pendingConnections_.front());
  } else if (pendingConnections_.size() < kMaxPendingConnections / 2) {
    tooManyPendingConnections_ = false;
  }
  const status_t status = transport_.reactor.add(
      connection->socket.get(), EPOLLIN, [this, connection] { onReadable(connection); }, &connection->key);
  if (status != OK) return logFailure("can't wait for a connection", -status);
  pendingConnections_.push_back(connection);
  if (!std::exchange(dropsLate_, true)) {
    transport_.reactor.runAfter(kHelloTimeout, [this] { dropLate(); });
  }
}

void Listener::dropLate() {
  const auto now = std::chrono::steady_clock::now();
  while (!pendingConnections_.empty() && pendingConnections_.front()->deadline <= now)
    drop(pendingConnections_.front());
  dropsLate_ = !pendingConnections_.empty();
  if (!dropsLate_) return;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(pendingConnections_.front()->deadline - now);
  transport_.reactor.runAfter(left, [this] { dropLate(); });
}

void Listener::drop(const PendingPointer& connection) {
  transport_.reactor.remove(connection->key);
  // By address: `connection` may be an element itself.
  std::erase_if(pendingConnections_, [address = connection.get()](const PendingPointer& pending) {
    return pending.get() == address;
  });
}

void Listener::onReadable(PendingPointer connection) {
  drop(connection);
  Hello hello;
  // Left in the socket: the thread that serves a channel receives it with its descriptor.
  const ssize_t size = retryOnInterrupt([&] {
    return ::recv(connection->socket.get(), &hello, sizeof(hello), MSG_DONTWAIT | MSG_TRUNC | MSG_PEEK);
  });
  if (size != sizeof(hello) || hello.magic != kMagic) return;
  if (hello.kind == ConnectionKind::kWatch) {
    onWatch(connection.get(), hello);
  } else if (hello.kind == ConnectionKind::kChannel) {
    const std::shared_ptr<HolderProcess> holder = transport_.exports.holder(hello.process);
    if (holder != nullptr && holder->pid() == connection->credentials.pid) startServer(connection, holder);
  }
}

void Listener::onWatch(PendingConnection* connection, Hello hello) {
  UniqueFd unused;
  receiveHello(connection->socket.get(), &hello, &unused);
  const std::shared_ptr<HolderProcess> holder =
      transport_.exports.addHolder(hello.process, connection->credentials.pid, std::move(connection->socket));
  if (holder == nullptr) return;
  const Hello answer{.kind = ConnectionKind::kWatch, .process = transport_.id};
  const auto answering = [&] {
    return ::send(holder->watch(), &answer, sizeof(answer), MSG_NOSIGNAL | MSG_DONTWAIT);
  };
  if (retryOnInterrupt(answering) < 0) {
    if (errno != EPIPE && errno != ECONNRESET) logFailure("can't answer a process", errno);
    return endHolder(holder);
  }
  const status_t status = transport_.reactor.add(
      holder->watch(), EPOLLIN, [this, holder] { onReleases(holder); }, &holder->watchKey);
  if (status == OK) return;
  logFailure("can't wait for the end of a process", -status);
  endHolder(holder);
}

void Listener::onReleases(const std::shared_ptr<HolderProcess>& holder) {
  std::array<Release, kMaxReleases> releases;
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recv(holder->watch(), releases.data(), sizeof(releases), MSG_DONTWAIT | MSG_TRUNC); });
  if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
  const auto bytes = static_cast<size_t>(std::max<ssize_t>(size, 0));
  if (bytes == 0 || bytes > sizeof(releases) || bytes % sizeof(Release) != 0) return endHolder(holder);
  std::vector<sp<BBinder>> dropped;
  for (size_t i = 0; i < bytes / sizeof(Release); ++i) {
    if (sp<BBinder> object = holder->drop(releases[i]); object != nullptr)
      dropped.push_back(std::move(object));
  }
  destroy(std::move(dropped));
}

/** Drops objects on a thread on which their destructors may block. */
void Listener::destroy(std::vector<sp<BBinder>> objects) {
  if (objects.empty()) return;
  auto shared = std::make_shared<std::vector<sp<BBinder>>>(std::move(objects));
  transport_.reactor.callbacks().run([shared] { shared->clear(); });
}

void Listener::endHolder(const std::shared_ptr<HolderProcess>& holder) {
  transport_.reactor.remove(holder->watchKey);
  transport_.exports.removeHolder(*holder);
  destroy(holder->end());
}

void Listener::startServer(const PendingPointer& connection, const std::shared_ptr<HolderProcess>& holder) {
  const auto serving = [this, connection, holder] {
    transport_.served.serve(std::move(connection->socket), holder, connection->credentials.uid);
  };
  const bool isStarted = startThread("binder:channel", transport_.reactor.applicationMask(), serving);
  if (threadFailure_.shouldLog(isStarted ? 0 : EAGAIN)) {
    transport_.reactor.callbacks().log(ANDROID_LOG_ERROR,
                                       "no thread for a caller, which waits until there can be one");
  }
  transport_.served.limitUnused();
  if (!isStarted) {
    transport_.served.makeRoom();
    transport_.reactor.runAfter(kRetryTime, [this, connection, holder] { startServer(connection, holder); });
  }
}

}  // namespace android::transport
