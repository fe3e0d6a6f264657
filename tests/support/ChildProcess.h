#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::test {

/** Waiting for anything longer than this is a failure of the test. Sanitizers on a busy machine
 * take their time. */
constexpr int kPatienceMs = 30'000;

/** Messages between a test and its child, over a socket pair. */
class Channel {
 public:
  explicit Channel(int fd) : fd_(fd) {}
  ~Channel() { close(); }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  /** False if the other side has gone. */
  bool send(std::string_view message) const;
  /** The next message; empty if the other side has gone. A failure of the test if none comes in
   * time; -1 waits for ever. */
  std::string receive(int timeoutMs = kPatienceMs) const;
  void close();

 private:
  int fd_;
};

/**
 * This test program, run once more as another process: as a service or a client, by its role. It
 * ends with the test, however that ends. Start it from a thread that outlives it.
 */
class ChildProcess {
 public:
  /** Returns when the child has called ready(). */
  explicit ChildProcess(const std::string& role, const std::vector<std::string>& args = {});
  /** As stop(), if nothing else has ended the child before. */
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  Channel& channel() { return channel_; }

  /** Waits for the child to end by itself: its exit code, or the signal's number negated. */
  int wait();
  /** Ends the child with a signal that it doesn't survive, and waits for that. A failure of the
   * test if something else ended it. */
  void kill(int signal = SIGKILL);
  /** Closes the channel, which ends a role that waits in Parent::waitForEnd(). A failure unless it
   * exits with 0. */
  void stop();
  /** Returns when no thread of the child runs any more, which a bare SIGSTOP says nothing about. */
  void suspend();
  void resume();

 private:
  struct SocketPair;
  ChildProcess(const std::string& role, const std::vector<std::string>& args, const SocketPair& pair);

  Channel channel_;
  pid_t pid_;
  bool ended_ = false;
};

/** The test, as the child sees it. */
class Parent {
 public:
  explicit Parent(int fd) : channel_(fd) {}
  Channel& channel() { return channel_; }
  void ready() { channel_.send("ready"); }
  /** Waits until the test has no more use for this process. */
  void waitForEnd();

 private:
  Channel channel_;
};

/** The main() of a child; the result is its exit code. */
using Role = int (*)(Parent& parent, const std::vector<std::string>& args);

struct RoleRegistration {
  RoleRegistration(const char* name, Role role);
};

/** CHILD_ROLE(name) { ... } defines a role; `parent` and `args` are at hand. */
#define CHILD_ROLE(name)                                                             \
  static int name(vesk::test::Parent& parent, const std::vector<std::string>& args); \
  static const vesk::test::RoleRegistration name##Registration(#name, name);         \
  static int name([[maybe_unused]] vesk::test::Parent& parent,                       \
                  [[maybe_unused]] const std::vector<std::string>& args)

/** Runs the role that the command line asks for; false if it asks for none. */
bool runRole(int argc, char** argv, int* exitCode);

/** A meeting place of this process and its children alone: BINDER_RUNTIME_DIR is set, and removed
 * at the end. */
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
