#include <binder/ProcessState.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "Console.h"
#include "Device.h"
#include "Options.h"

namespace {

/** How long the end waits for listeners that are being called. */
constexpr std::chrono::milliseconds kPatienceAtEnd{500};

/** A descriptor that can be read once one of the signals has come, which ends no thread any more. */
int holdSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  // Before any thread is started, so that all of them inherit it.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

/** Reads commands until one of them, or a signal, ends the device. */
void runUntilEnd(sim::Console& console, int signalFd) {
  pollfd fds[] = {{signalFd, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
  while (!console.hasQuit()) {
    if (poll(fds, std::size(fds), -1) < 0) continue;
    if (fds[0].revents != 0) return;
    if (fds[1].revents != 0) {
      char bytes[512];
      const ssize_t count = read(STDIN_FILENO, bytes, sizeof(bytes));
      // Without an input the device goes on.
      if (count <= 0) fds[1].fd = -1;
      if (count > 0) console.feed({bytes, static_cast<size_t>(count)});
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const sim::Options options = sim::parseCommandLine(argc, argv);
  const int signalFd = holdSignals();

  std::string error;
  const std::unique_ptr<sim::Device> device = sim::Device::start(options, &error);
  if (device == nullptr) {
    std::fprintf(stderr, "vesk-device: %s\n", error.c_str());
    return EXIT_FAILURE;
  }
  android::ProcessState::self()->startThreadPool();
  std::puts("ready");
  std::fflush(stdout);

  device->phone().use([&](sim::Phone& phone) {
    for (const sim::IncomingCall& call : options.incoming) {
      phone.scheduleIncomingCall(call.after, call.line, call.number);
    }
  });
  sim::Console console(*device);
  runUntilEnd(console, signalFd);
  device->stopEvents(kPatienceAtEnd);
  return EXIT_SUCCESS;
}
