#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "Connect.h"
#include "Frame.h"
#include "SharedSlots.h"
#include "UniqueFd.h"

namespace vesk::test {

/** The process that a raw peer claims to be. */
constexpr uint64_t kStranger = 0x5712a9e5;

/** The socket of the process that serves a name. */
inline std::string socketOf(const std::string& name) {
  const std::filesystem::path directory = std::getenv("BINDER_RUNTIME_DIR");
  const std::string link = std::filesystem::read_symlink(directory / name);
  return directory / (".process-" + link.substr(0, link.find(':')));
}

/** The number of the object that is registered under a name. */
inline uint64_t numberOf(const std::string& name) {
  const std::filesystem::path directory = std::getenv("BINDER_RUNTIME_DIR");
  const std::string link = std::filesystem::read_symlink(directory / name);
  return std::stoull(link.substr(link.find(':') + 1), nullptr, 16);
}

/** One end of a channel whose frames need not be valid. */
class RawSlots {
 public:
  using SharedSlot = android::transport::SharedSlot;

  RawSlots() = default;
  explicit RawSlots(android::transport::SharedSlots slots) : slots_(std::move(slots)) {}

  /** Puts the bytes into a slot, and sends the rest over the socket. */
  bool send(int socket, const std::string& bytes) {
    if (!await(socket, [this] { return slots_.out().isEmpty(); })) return false;
    size_t sent = std::min(bytes.size(), SharedSlot::kCapacity);
    std::memcpy(slots_.out().bytes(), bytes.data(), sent);
    slots_.out().fill(sent);
    while (sent < bytes.size()) {
      const ssize_t size = ::send(socket, &bytes[sent], std::min(bytes.size() - sent, kPacket), MSG_NOSIGNAL);
      if (size <= 0) return false;
      sent += static_cast<size_t>(size);
    }
    return true;
  }
  /** The bytes of a frame in a slot; empty at the end of the connection. */
  std::string receive(int socket) {
    if (!await(socket, [this] { return slots_.in().isFull(); })) return "";
    const std::string bytes(reinterpret_cast<char*>(slots_.in().bytes()), slots_.in().size());
    slots_.in().empty();
    return bytes;
  }

 private:
  static constexpr size_t kPacket = android::transport::kPacketSize;

  template <class Condition>
  static bool await(int socket, Condition condition) {
    for (int left = kTimeoutMs; left > 0; --left) {
      pollfd end{socket, POLLRDHUP, 0};
      const bool isEnd = ::poll(&end, 1, 0) > 0;
      if (condition()) return true;
      if (isEnd) return false;
      ::poll(nullptr, 0, 1);
    }
    return false;
  }

  android::transport::SharedSlots slots_;
};

/** A connection that sends arbitrary bytes. */
class RawPeer {
 public:
  explicit RawPeer(const std::string& socketPath) : fd_(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socketPath.c_str());
    EXPECT_EQ(::connect(fd_.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    const timeval timeout = {kTimeoutMs / 1000, 0};
    ::setsockopt(fd_.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
  }

  void send(const void* bytes, size_t size) {
    EXPECT_EQ(::send(fd_.get(), bytes, size, MSG_NOSIGNAL), static_cast<ssize_t>(size));
  }
  void greet(android::transport::ConnectionKind kind) {
    android::transport::UniqueFd memory;
    if (kind == android::transport::ConnectionKind::kChannel)
      slots_ = RawSlots(android::transport::SharedSlots::make(&memory));
    greetWith(kind, memory.get());
  }
  void greetWith(android::transport::ConnectionKind kind, int memory) {
    // The result is ignored: a process that refuses the connection may have closed it before.
    android::transport::sendHello(fd_.get(), {.kind = kind, .process = kStranger}, memory);
  }
  void sendFrame(android::transport::FrameHeader header, std::span<const uint8_t> body = {}) {
    std::string frame(reinterpret_cast<const char*>(&header), sizeof(header));
    frame.append(body.begin(), body.end());
    sendBytes(frame);
  }
  void sendBytes(const std::string& bytes) { EXPECT_TRUE(slots_.send(fd_.get(), bytes)); }

  bool receive(void* bytes, size_t size) {
    return ::recv(fd_.get(), bytes, size, 0) == static_cast<ssize_t>(size);
  }
  std::string receiveFrame() { return slots_.receive(fd_.get()); }
  int32_t statusOfReply() {
    const std::string frame = receiveFrame();
    android::transport::FrameHeader header{};
    EXPECT_GE(frame.size(), sizeof(header));
    std::memcpy(&header, frame.data(), std::min(frame.size(), sizeof(header)));
    EXPECT_EQ(header.kind, android::transport::FrameKind::kReply);
    return header.status;
  }
  void expectClosed(const char* because) {
    char byte;
    const ssize_t size = ::recv(fd_.get(), &byte, sizeof(byte), 0);
    EXPECT_TRUE(size == 0 || (size < 0 && errno == ECONNRESET)) << because;
  }

 private:
  android::transport::UniqueFd fd_;
  RawSlots slots_;
};

}  // namespace vesk::test
