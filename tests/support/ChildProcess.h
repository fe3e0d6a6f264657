#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::test {

/** The timeout of every wait, after which the test fails. Long enough for sanitizers on a busy
 * machine. */
constexpr int kTimeoutMs = 30'000;

/** Messages between a test and its child, over a socket pair. */
class Channel {
 public:
  explicit Channel(int fd) : fd_(fd) {}
  ~Channel() { close(); }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  /** False if the other side has gone. */
  bool send(std::string_view message) const;
  /** The next message; empty if the other side has gone. Fails the test at the timeout; -1 means
   * no timeout. */
  std::string receive(int timeoutMs = kTimeoutMs) const;
  void close();

 private:
  int fd_;
};

/**
 * Runs this test program as a child process with the given role, such as a service or a client. The
 * child never outlives the test. Start it from a thread that outlives it: the kernel kills the
 * child when that thread ends.
 */
class ChildProcess {
 public:
  /** Returns when the child has called ready(). */
  explicit ChildProcess(const std::string& role, const std::vector<std::string>& args = {});
  /** Calls stop() unless the child has ended. */
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  Channel& channel() { return channel_; }

  /** Waits for the child to end. Returns its exit code, or the negated signal number. */
  int wait();
  /** Kills the child with a signal and waits for its end. Fails the test if the child ended for
   * another reason. */
  void kill(int signal = SIGKILL);
  /** Closes the channel, which ends a role that waits in Parent::waitForEnd(). Fails the test
   * unless the child exits with 0. */
  void stop();
  /** Stops the child. Returns when all its threads have stopped; kill(SIGSTOP) alone returns
   * earlier. */
  void suspend();
  void resume();

 private:
  struct SocketPair;
  ChildProcess(const std::string& role, const std::vector<std::string>& args, const SocketPair& pair);

  Channel channel_;
  pid_t pid_;
  bool ended_ = false;
};

/** The child's end of the channel to its test. */
class Parent {
 public:
  explicit Parent(int fd) : channel_(fd) {}
  Channel& channel() { return channel_; }
  void ready() { channel_.send("ready"); }
  /** Waits until the test calls stop(). */
  void waitForEnd();

 private:
  Channel channel_;
};

/** The main() of a child; returns its exit code. */
using Role = int (*)(Parent& parent, const std::vector<std::string>& args);

struct RoleRegistration {
  RoleRegistration(const char* name, Role role);
};

/** CHILD_ROLE(name) { ... } defines a role. Its parameters are `parent` and `args`. */
#define CHILD_ROLE(name)                                                             \
  static int name(vesk::test::Parent& parent, const std::vector<std::string>& args); \
  static const vesk::test::RoleRegistration name##Registration(#name, name);         \
  static int name([[maybe_unused]] vesk::test::Parent& parent,                       \
                  [[maybe_unused]] const std::vector<std::string>& args)

/** Runs the role in the command line; false if there is none. */
bool runRole(int argc, char** argv, int* exitCode);

/** Sets BINDER_RUNTIME_DIR to a new directory for this process and its children. The destructor
 * removes the directory. */
class PrivateRuntimeDir {
 public:
  PrivateRuntimeDir();
  ~PrivateRuntimeDir();
  PrivateRuntimeDir(const PrivateRuntimeDir&) = delete;
  PrivateRuntimeDir& operator=(const PrivateRuntimeDir&) = delete;

 private:
  std::string path_;
};

}  // namespace vesk::test
