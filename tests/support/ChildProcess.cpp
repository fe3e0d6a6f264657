#include "ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>

namespace vesk::test {

namespace {

constexpr const char* kRoleOption = "--role";
/** The descriptor of the child's end of the channel. */
constexpr int kChannelFd = 3;
constexpr size_t kMessageLimit = 4096;
constexpr const char* kReady = "ready";

[[noreturn]] void fatal(const char* what) {
  std::fprintf(stderr, "%s: %s\n", what, std::strerror(errno));
  std::abort();
}

/** False at the timeout. A pidfd becomes readable when its process ends. */
bool waitReadable(int fd, int timeoutMs) {
  pollfd poller{fd, POLLIN, 0};
  int ready;
  do {
    ready = poll(&poller, 1, timeoutMs);
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

std::map<std::string, Role>& roles() {
  static std::map<std::string, Role> all;
  return all;
}

/** The path from which the kernel can start this program; with an emulator, a script of the same
 * name. VESK_TEST_CHILDREN selects the directory of another build. */
std::string ownProgram() {
  const char* chosen = std::getenv("VESK_TEST_CHILDREN");
  const std::filesystem::path directory = chosen != nullptr ? chosen : VESK_RUN_DIRECTORY;
  return directory / std::filesystem::read_symlink("/proc/self/exe").filename();
}

pid_t spawn(const std::string& role, const std::vector<std::string>& args, int channelFd) {
  std::vector<char*> argv;
  std::string program = ownProgram();
  std::string option = kRoleOption;
  std::string name = role;
  std::vector<std::string> rest = args;
  argv.push_back(program.data());
  argv.push_back(option.data());
  argv.push_back(name.data());
  for (std::string& arg : rest) argv.push_back(arg.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, channelFd, kChannelFd);
  pid_t pid = -1;
  errno = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  if (errno != 0) fatal(program.c_str());
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

}  // namespace

bool Channel::send(std::string_view message) const {
  return ::send(fd_, message.data(), message.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(message.size());
}

std::string Channel::receive(int timeoutMs) const {
  if (!waitReadable(fd_, timeoutMs)) {
    ADD_FAILURE() << "no message within " << timeoutMs << " ms";
    return "";
  }
  std::string message(kMessageLimit, '\0');
  const ssize_t length = recv(fd_, message.data(), message.size(), 0);
  message.resize(length > 0 ? static_cast<size_t>(length) : 0);
  return message;
}

void Channel::close() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
}

struct ChildProcess::SocketPair {
  SocketPair() {
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) fatal("socketpair");
  }
  int ends[2];
};

ChildProcess::ChildProcess(const std::string& role, const std::vector<std::string>& args)
    : ChildProcess(role, args, SocketPair()) {}

ChildProcess::ChildProcess(const std::string& role, const std::vector<std::string>& args,
                           const SocketPair& pair)
    : channel_(pair.ends[0]), pid_(spawn(role, args, pair.ends[1])) {
  ::close(pair.ends[1]);
  EXPECT_EQ(channel_.receive(), kReady) << "from the role " << role;
}

ChildProcess::~ChildProcess() {
  if (!ended_) stop();
}

int ChildProcess::wait() {
  const int fd = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
  if (fd < 0) fatal("pidfd_open");
  if (!waitReadable(fd, kTimeoutMs)) {
    ADD_FAILURE() << "child " << pid_ << " did not end within " << kTimeoutMs << " ms";
    ::kill(pid_, SIGKILL);
  }
  ::close(fd);

  int status = 0;
  if (waitpid(pid_, &status, 0) != pid_) fatal("waitpid");
  ended_ = true;
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

void ChildProcess::kill(int signal) {
  ::kill(pid_, signal);
  EXPECT_EQ(wait(), -signal) << "exit code of child " << pid_;
}

void ChildProcess::stop() {
  channel_.close();
  EXPECT_EQ(wait(), 0) << "exit code of child " << pid_;
}

void ChildProcess::suspend() {
  int status = 0;
  ::kill(pid_, SIGSTOP);
  if (waitpid(pid_, &status, WUNTRACED) != pid_ || !WIFSTOPPED(status)) fatal("waitpid");
}

void ChildProcess::resume() { ::kill(pid_, SIGCONT); }

void Parent::waitForEnd() {
  while (!channel_.receive(-1).empty()) {
  }
}

RoleRegistration::RoleRegistration(const char* name, Role role) { roles().emplace(name, role); }

bool runRole(int argc, char** argv, int* exitCode) {
  if (argc < 3 || std::strcmp(argv[1], kRoleOption) != 0) return false;
  // The child must not outlive a test that crashes or times out.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  fcntl(kChannelFd, F_SETFD, FD_CLOEXEC);
  // Never closed: threads of the role may still use it while the process exits.
  static Parent& parent = *new Parent(kChannelFd);
  *exitCode = roles().at(argv[2])(parent, std::vector<std::string>(argv + 3, argv + argc));
  return true;
}

PrivateRuntimeDir::PrivateRuntimeDir() : path_(std::filesystem::temp_directory_path() / "vesk-test-XXXXXX") {
  if (mkdtemp(path_.data()) == nullptr) fatal("mkdtemp");
  setenv("BINDER_RUNTIME_DIR", path_.c_str(), 1);
}

PrivateRuntimeDir::~PrivateRuntimeDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace vesk::test
