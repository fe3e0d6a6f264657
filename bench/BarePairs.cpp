#include "BarePairs.h"

#include <sys/socket.h>

#include "Support.h"

namespace vesk::bench {

namespace {

constexpr size_t kBufferSize = 64 * 1024;

void sendAll(int socket, size_t size) {
  static const char bytes[kBufferSize] = {};
  for (size_t sent = 0; sent < size;) {
    const ssize_t result = ::send(socket, bytes, size - sent, MSG_NOSIGNAL);
    if (result <= 0) fatal("send");
    sent += static_cast<size_t>(result);
  }
}

void receiveAll(int socket, size_t size) {
  thread_local char bytes[kBufferSize];
  for (size_t received = 0; received < size;) {
    const ssize_t result = ::recv(socket, bytes, size - received, 0);
    if (result <= 0) fatal("recv");
    received += static_cast<size_t>(result);
  }
}

}  // namespace

BarePairs::BarePairs(size_t count, FrameSizes sizes) : sizes_(sizes), pairs_(count) {
  if (sizes.request > kBufferSize || sizes.reply > kBufferSize)
    fatal("the call is too large for a bare pair");
  for (Pair& pair : pairs_) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.ends) != 0) fatal("socketpair");
  }
}

void BarePairs::call(size_t pair) const {
  sendAll(pairs_[pair].ends[0], sizes_.request);
  receiveAll(pairs_[pair].ends[0], sizes_.reply);
}

void BarePairs::serve(size_t pair) const {
  for (;;) {
    receiveAll(pairs_[pair].ends[1], sizes_.request);
    sendAll(pairs_[pair].ends[1], sizes_.reply);
  }
}

}  // namespace vesk::bench
