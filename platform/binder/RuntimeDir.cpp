#include "RuntimeDir.h"

#include <android/log.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>

#include "LogThrottle.h"
#include "RandomNumber.h"
#include "RetryOnInterrupt.h"

namespace android::transport::runtime_dir {

namespace {

constexpr char kTag[] = "binder";
/** Service names never begin with a dot, so these can't collide with them. */
constexpr char kSocketPrefix[] = ".process-";
constexpr char kUnreadySocketPrefix[] = ".unready-";
constexpr char kLockName[] = ".lock";
constexpr char kNewLinkPrefix[] = ".new-";
constexpr int kPublishTries = 3;

std::string choosePath() {
  const auto fromEnvironment = [](const char* variable) {
    const char* value = std::getenv(variable);
    return std::string(value == nullptr ? "" : value);
  };
  if (std::string chosen = fromEnvironment("BINDER_RUNTIME_DIR"); !chosen.empty()) return chosen;
  if (const std::string users = fromEnvironment("XDG_RUNTIME_DIR"); !users.empty()) {
    return users + "/binder";
  }
  return "/tmp/binder-" + std::to_string(::geteuid());
}

const std::string& path() {
  static const std::string& chosen = *new std::string(choosePath());
  return chosen;
}

std::string pathOf(std::string_view name) { return std::string(path()).append("/").append(name); }

std::string hex(uint64_t number) {
  char text[17];
  std::snprintf(text, sizeof(text), "%016" PRIx64, number);
  return text;
}

status_t statusOf(int error) {
  return error == EACCES || error == EPERM || error == EROFS ? PERMISSION_DENIED : -error;
}

bool parseHex(std::string_view text, uint64_t* number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number, 16);
  return error == std::errc() && end == text.data() + text.size();
}

/** The text of a service's link, "process:number" in hexadecimal. */
std::string textOf(const Address& address) { return hex(address.process) + ":" + hex(address.number); }

std::optional<Address> parse(std::string_view text) {
  const size_t colon = text.find(':');
  Address address;
  if (colon == std::string_view::npos || !parseHex(text.substr(0, colon), &address.process) ||
      !parseHex(text.substr(colon + 1), &address.number)) {
    return std::nullopt;
  }
  return address;
}

/** Connects to a socket and disconnects, without waiting. Returns the error number; EAGAIN if the
 * queue is full. */
int probe(const sockaddr_un& address) {
  const UniqueFd socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.valid()) return errno;
  const auto connecting = [&] {
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address));
  };
  return retryOnInterrupt(connecting) < 0 ? errno : 0;
}

template <class F>
void forEachEntry(F f) {
  std::error_code error;
  for (auto entry = std::filesystem::directory_iterator(path(), error);
       !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    f(entry->path().filename().string());
  }
}

bool fillSocketAddress(const std::string& name, sockaddr_un* address) {
  const std::string socket = pathOf(name);
  *address = {};
  address->sun_family = AF_UNIX;
  if (socket.size() >= sizeof(address->sun_path)) return false;
  std::memcpy(address->sun_path, socket.c_str(), socket.size() + 1);
  return true;
}

bool makeSocketAddress(const std::string& name, sockaddr_un* address) {
  if (fillSocketAddress(name, address)) return true;
  __android_log_print(ANDROID_LOG_ERROR, kTag, "the path of a socket is too long: %s", pathOf(name).c_str());
  return false;
}

/**
 * Locks the names between a check and a change: without it, an exiting process could remove its
 * successor's name. The wait is limited, since a stopped process may hold the lock.
 */
class NamesLock {
 public:
  NamesLock() : file_(::open(pathOf(kLockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
    for (int tries = 100; tries > 0 && file_.valid() && !held_; --tries) {
      held_ = ::flock(file_.get(), LOCK_EX | LOCK_NB) == 0;
      if (!held_) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
  bool held() const { return held_; }

 private:
  UniqueFd file_;
  bool held_ = false;
};

/** Checks the directory. Returns an error number and describes the fault; 0 if there is none. */
int faultOfDirectory(std::string* fault) {
  struct stat info;
  int error = 0;
  const char* what = nullptr;
  if (::lstat(path().c_str(), &info) < 0) {
    error = errno;
    *fault = "can't use the runtime directory " + path() + ": " + std::strerror(error);
    return error;
  }
  if (!S_ISDIR(info.st_mode)) {
    error = ENOTDIR;
    what = "is not a directory";
  } else if (info.st_uid != ::geteuid()) {
    error = EPERM;
    what = "belongs to another user";
  } else if ((info.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    error = EACCES;
    what = "can be written by others";
  }
  if (error != 0) *fault = "the runtime directory " + path() + " " + what;
  return error;
}

status_t statusOfFault(int error) { return error == ENOENT ? -error : PERMISSION_DENIED; }

/**
 * Removes the sockets and temporary files of killed processes. A socket without a listener belongs
 * to a dead process. A temporary file is stale while this process has the lock, since its creator
 * would have it.
 */
void sweep(const NamesLock& lock) {
  forEachEntry([&](const std::string& name) {
    sockaddr_un address;
    const bool isDead = name.starts_with(kSocketPrefix) && fillSocketAddress(name, &address) &&
                        probe(address) == ECONNREFUSED;
    const bool isUnfinished =
        lock.held() && (name.starts_with(kUnreadySocketPrefix) || name.starts_with(kNewLinkPrefix));
    if (isDead || isUnfinished) ::unlink(pathOf(name).c_str());
  });
}

}  // namespace

status_t prepare() {
  std::string fault;
  int error = ::mkdir(path().c_str(), 0700) < 0 && errno != EEXIST ? errno : 0;
  status_t status = statusOf(error);
  if (error != 0) {
    fault = "can't make the runtime directory " + path() + ": " + std::strerror(error);
  } else if (error = faultOfDirectory(&fault); error != 0) {
    status = statusOfFault(error);
  }
  if (error != 0) __android_log_print(ANDROID_LOG_ERROR, kTag, "%s", fault.c_str());
  return status;
}

bool socketAddress(uint64_t process, sockaddr_un* address) {
  return makeSocketAddress(kSocketPrefix + hex(process), address);
}

status_t openSocket(uint64_t process, UniqueFd* socket, std::string* failure) {
  const NamesLock lock;
  sweep(lock);
  // Other processes remove a socket without a listener, so it gets its name only when it is ready.
  const std::string unready = kUnreadySocketPrefix + hex(process);
  sockaddr_un address;
  UniqueFd opened(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const bool fits = fillSocketAddress(unready, &address);
  if (!fits) errno = ENAMETOOLONG;
  if (opened.valid() && fits &&
      ::bind(opened.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
    if (::listen(opened.get(), SOMAXCONN) == 0 &&
        ::rename(address.sun_path, pathOf(kSocketPrefix + hex(process)).c_str()) == 0) {
      *socket = std::move(opened);
      return OK;
    }
    const int error = errno;
    ::unlink(address.sun_path);
    errno = error;
  }
  const int error = errno;
  *failure = "can't make the socket " + pathOf(unready) + ": " + std::strerror(error);
  return fits ? statusOf(error) : BAD_VALUE;
}

void removeSocket(uint64_t process) { ::unlink(pathOf(kSocketPrefix + hex(process)).c_str()); }

bool hasSocket(uint64_t process) { return ::access(pathOf(kSocketPrefix + hex(process)).c_str(), F_OK) == 0; }

bool isListening(uint64_t process) {
  sockaddr_un address;
  if (!socketAddress(process, &address)) return false;
  static LogThrottle throttle;
  const int error = probe(address);
  const bool isLiving = error == 0 || error == EAGAIN;
  const bool isDead = error == ECONNREFUSED || error == ENOENT;
  if (throttle.shouldLog(isLiving || isDead ? 0 : error)) {
    __android_log_print(ANDROID_LOG_ERROR, kTag, "can't look for a process at %s: %s", address.sun_path,
                        std::strerror(error));
  }
  return isLiving;
}

void removeAllOf(uint64_t process) {
  const NamesLock lock;
  for (const std::string& name : names()) {
    if (const auto address = lookUp(name); address && address->process == process) {
      ::unlink(pathOf(name).c_str());
    }
  }
  removeSocket(process);
}

status_t publish(const std::string& name, const Address& address, const std::function<void()>& onPublished,
                 std::string* failure) {
  if (const int error = faultOfDirectory(failure); error != 0) return statusOfFault(error);
  const NamesLock lock;
  // Random, since the lock may not be held.
  const std::string link = pathOf(kNewLinkPrefix + hex(randomNumber()));
  // Taken after the lock of names, whose timeout must not delay the other threads of this process.
  static std::mutex& mutex = *new std::mutex;
  const std::lock_guard publishing(mutex);
  for (int tries = kPublishTries; tries > 0; --tries) {
    if (::symlink(textOf(address).c_str(), link.c_str()) < 0) break;
    if (::rename(link.c_str(), pathOf(name).c_str()) == 0) {
      onPublished();
      return OK;
    }
    // Without the lock, another process may have removed the link as that of a killed process.
    if (errno != ENOENT) break;
  }
  const int error = errno;
  *failure = "can't register " + pathOf(name) + ": " + std::strerror(error);
  ::unlink(link.c_str());
  return statusOf(error);
}

std::optional<Address> lookUp(const std::string& name) {
  // Names are forged easily if another user can write to the directory.
  static LogThrottle throttle;
  std::string fault;
  const int error = faultOfDirectory(&fault);
  if (throttle.shouldLog(error)) __android_log_print(ANDROID_LOG_ERROR, kTag, "%s", fault.c_str());
  if (error != 0) return std::nullopt;

  char text[64];
  const ssize_t size = ::readlink(pathOf(name).c_str(), text, sizeof(text));
  if (size <= 0) return std::nullopt;
  return parse({text, static_cast<size_t>(size)});
}

std::vector<std::string> names() {
  std::vector<std::string> result;
  forEachEntry([&](const std::string& name) {
    if (!name.starts_with('.')) result.push_back(name);
  });
  std::sort(result.begin(), result.end());
  return result;
}

}  // namespace android::transport::runtime_dir
