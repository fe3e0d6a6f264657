#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <utility>

#include "ChildProcess.h"
#include "TemporaryDirectory.h"
#include "WaitUntil.h"

/* vesk-device at a terminal. */

namespace {

using Clock = std::chrono::steady_clock;

/** The device, and the terminal with its prompt. */
class Terminal : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(openpty(&user_, &device_, nullptr, nullptr, nullptr), 0);
    fcntl(user_, F_SETFD, FD_CLOEXEC);
    ASSERT_EQ(tcgetattr(device_, &before_), 0);
    start();
  }

  void start() {
    pid_ = fork();
    if (pid_ == 0) {
      login_tty(device_);
      setenv("TERM", "xterm", 1);
      setenv("LC_ALL", "C.UTF-8", 1);
      setenv("XDG_STATE_HOME", state_.path().c_str(), 1);
      execl(VESK_DEVICE, VESK_DEVICE, "--verbose", "--speed", "30", nullptr);
      _exit(127);
    }
    readTo("vesk> ");
  }

  void TearDown() override {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    close(user_);
    close(device_);
  }

  void type(const std::string& keys) {
    ASSERT_EQ(write(user_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  /** Types a line; waits for its last event and the next prompt, before which the terminal handles
   * Ctrl-D itself. */
  void enter(const std::string& keys, const std::string& event) {
    type(keys + "\r");
    readTo(event);
    readTo("vesk> ");
  }

  /** Waits for a text. Returns the output up to it. */
  std::string readTo(const std::string& last) {
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(vesk::test::kTimeoutMs);
    size_t found;
    while ((found = shown_.find(last)) == std::string::npos) {
      pollfd fd{user_, POLLIN, 0};
      char bytes[512];
      const ssize_t count = poll(&fd, 1, 100) > 0 ? read(user_, bytes, sizeof(bytes)) : 0;
      if (count > 0) shown_.append(bytes, static_cast<size_t>(count));
      if (count < 0 || Clock::now() > end) {
        ADD_FAILURE() << "'" << last << "' did not come, but\n" << shown_;
        return std::exchange(shown_, {});
      }
    }
    const std::string text = shown_.substr(0, found + last.size());
    shown_.erase(0, text.size());
    return text;
  }

  void endBySignal(int signal) { kill(pid_, signal); }

  /** The device ends, and restores the terminal. */
  void expectCleanEnd() {
    int status = -1;
    const pid_t pid = std::exchange(pid_, -1);
    vesk::test::waitUntil("vesk-device ends", [&] { return waitpid(pid, &status, WNOHANG) == pid; });
    EXPECT_EQ(status, 0);
    termios after{};
    ASSERT_EQ(tcgetattr(device_, &after), 0);
    EXPECT_EQ(std::memcmp(&after, &before_, sizeof(after)), 0);
  }

 private:
  const vesk::test::TemporaryDirectory state_;
  termios before_{};
  int user_ = -1;
  int device_ = -1;
  pid_t pid_ = -1;
  std::string shown_;
};

TEST_F(Terminal, LinesAreRecalledAndCompleted) {
  enter("key 7", "keycodeEvent 7 released");
  enter("key 8", "keycodeEvent 8 released");
  enter("\033[A\033[A", "keycodeEvent 7 released");
  enter("ke\t9", "keycodeEvent 9 released");
  // The device must not block after a multi-byte character or a lone Escape.
  type("sms 200 Grüße");
  readTo("ße");
  type("\033");
  // Lets the device read the Escape before the signal.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  endBySignal(SIGTERM);
  expectCleanEnd();

  // The next device reads the history.
  start();
  enter("\033[A\033[A", "keycodeEvent 7 released");
  type("\x04");
  expectCleanEnd();
}

TEST_F(Terminal, InputIsRedrawnAfterOutput) {
  enter("ring 1", "wkRingHdl");
  // The call ends while the next line is being typed.
  enter("incoming 200", "newOngoingCallEvent");
  type("key 5");
  std::string shown = readTo("deleteOngoingCallEvent");
  shown += readTo("vesk> key 5");
  EXPECT_EQ(shown.find("vesk> incoming"), std::string::npos) << shown;
  enter("5", "keycodeEvent 55 released");
  type("\x04");
  expectCleanEnd();
}

TEST_F(Terminal, InterruptEndsTheDevice) {
  enter("key 1", "keycodeEvent 1 released");
  type("hang\x03");
  expectCleanEnd();
}

}  // namespace
