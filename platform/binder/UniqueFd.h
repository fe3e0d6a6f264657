#pragma once

#include <unistd.h>

#include <utility>

namespace android::transport {

/** Owns a file descriptor; -1 is none. */
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    UniqueFd(std::move(other)).swap(*this);
    return *this;
  }
  ~UniqueFd() {
    if (fd_ >= 0) ::close(fd_);
  }

  void swap(UniqueFd& other) noexcept { std::swap(fd_, other.fd_); }

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

}  // namespace android::transport
