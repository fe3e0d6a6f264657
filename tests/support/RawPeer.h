#pragma once

#include <gtest/gtest.h>
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
#include "Frame.h"
#include "UniqueFd.h"

namespace vesk::test {

/** The process that a raw peer says it is. */
constexpr uint64_t kStranger = 0x5712a9e5;

/** The socket of the process that serves a name. */
inline std::string socketOf(const std::string& name) {
  const std::filesystem::path directory = std::getenv("BINDER_RUNTIME_DIR");
  const std::string link = std::filesystem::read_symlink(directory / name);
  return directory / (".process-" + link.substr(0, link.find(':')));
}

/** The number that the object under a name has in its process. */
inline uint64_t numberOf(const std::string& name) {
  const std::filesystem::path directory = std::getenv("BINDER_RUNTIME_DIR");
  const std::string link = std::filesystem::read_symlink(directory / name);
  return std::stoull(link.substr(link.find(':') + 1), nullptr, 16);
}

/** A connection that sends arbitrary bytes. */
class RawPeer {
 public:
  explicit RawPeer(const std::string& socketPath) : fd_(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socketPath.c_str());
    EXPECT_EQ(::connect(fd_.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    const timeval patience = {kPatienceMs / 1000, 0};
    ::setsockopt(fd_.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
  }

  void send(const void* bytes, size_t size) {
    EXPECT_EQ(::send(fd_.get(), bytes, size, MSG_NOSIGNAL), static_cast<ssize_t>(size));
  }
  void greet(android::transport::ConnectionKind kind) {
    const android::transport::Hello hello{.kind = kind, .process = kStranger};
    send(&hello, sizeof(hello));
  }
  void sendFrame(android::transport::FrameHeader header, std::span<const uint8_t> body = {}) {
    std::vector<uint8_t> frame(sizeof(header) + body.size());
    std::memcpy(frame.data(), &header, sizeof(header));
    std::copy(body.begin(), body.end(), frame.begin() + sizeof(header));
    send(frame.data(), frame.size());
  }

  bool receive(void* bytes, size_t size) {
    return ::recv(fd_.get(), bytes, size, 0) == static_cast<ssize_t>(size);
  }
  /** The next packet, up to a size; all small frames fit this one. */
  std::string receive(size_t most = 4096) {
    std::string packet(most, '\0');
    const ssize_t size = ::recv(fd_.get(), packet.data(), packet.size(), 0);
    EXPECT_GT(size, 0);
    packet.resize(static_cast<size_t>(std::max<ssize_t>(size, 0)));
    return packet;
  }
  int32_t statusOfReply() {
    android::transport::FrameHeader header{};
    EXPECT_TRUE(receive(&header, sizeof(header)));
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
};

}  // namespace vesk::test
