#include "Connect.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "Deadline.h"
#include "RetryOnInterrupt.h"
#include "RuntimeDir.h"

namespace android::transport {

namespace {

using Clock = std::chrono::steady_clock;

/** Waits while the queue of a stopped or stuck process is full. Returns the error number; EAGAIN at
 * the deadline. */
int connectBy(Clock::time_point deadline, int socket, const sockaddr_un& address) {
  for (;;) {
    // A time limit of 0 would mean none. It is set for each attempt, so that signals don't extend
    // the wait.
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

}  // namespace

ssize_t sendHello(int socket, const Hello& hello, int memory) {
  iovec packet{const_cast<Hello*>(&hello), sizeof(hello)};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  msghdr message = {};
  message.msg_iov = &packet;
  message.msg_iovlen = 1;
  if (memory >= 0) {
    message.msg_control = control;
    message.msg_controllen = sizeof(control);
    cmsghdr* const rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(rights), &memory, sizeof(memory));
  }
  return retryOnInterrupt([&] { return ::sendmsg(socket, &message, MSG_NOSIGNAL); });
}

status_t openConnection(uint64_t process, const Hello& hello, int memory, Clock::time_point deadline,
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
  if (sendHello(socket.get(), hello, memory) < 0)
    return errno == EPIPE || errno == ECONNRESET ? DEAD_OBJECT : failed(errno);
  *connection = std::move(socket);
  return OK;
}

bool receiveHello(int socket, Hello* hello, UniqueFd* memory) {
  iovec packet{hello, sizeof(*hello)};
  // Room for the most that a message can have, since all but a single one have to be closed.
  constexpr size_t kMostDescriptors = 253;
  alignas(cmsghdr) char control[CMSG_SPACE(kMostDescriptors * sizeof(int))];
  msghdr message = {};
  message.msg_iov = &packet;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof(control);
  const ssize_t size = retryOnInterrupt(
      [&] { return ::recvmsg(socket, &message, MSG_TRUNC | MSG_CMSG_CLOEXEC | MSG_DONTWAIT); });
  const cmsghdr* const rights = size >= 0 ? CMSG_FIRSTHDR(&message) : nullptr;
  if (rights != nullptr && rights->cmsg_level == SOL_SOCKET && rights->cmsg_type == SCM_RIGHTS) {
    const size_t count = (rights->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (size_t i = 0; i < count; ++i) {
      int fd;
      std::memcpy(&fd, CMSG_DATA(rights) + i * sizeof(fd), sizeof(fd));
      UniqueFd received(fd);
      if (count == 1) *memory = std::move(received);
    }
  }
  return size == sizeof(*hello) && hello->magic == kMagic;
}

}  // namespace android::transport
