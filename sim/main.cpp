#include <binder/ProcessState.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Device.h"
#include "Options.h"
#include "commands/Runner.h"
#include "console/Console.h"
#include "console/Output.h"
#include "console/Prompt.h"

namespace {

constexpr int kUsageError = 2;

/** The timeout for listeners and output at the end. */
constexpr std::chrono::milliseconds kTimeoutAtEnd{500};

/** Blocks the signals that end the device. Returns a descriptor that is readable when one has
 * arrived. */
int blockSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  // Before the first thread starts: threads inherit the mask.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

/** Runs commands until one of them, or a signal, ends the device. */
void runUntilEnd(sim::Runner& runner, int signalFd) {
  sim::Console console(runner);
  std::optional<sim::Prompt> prompt;
  if (isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) prompt.emplace(console);
  pollfd fds[] = {
      {signalFd, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}, {prompt ? prompt->printedFd() : -1, POLLIN, 0}};
  for (;;) {
    runner.runTimers();
    if (runner.hasQuit()) return;
    if (poll(fds, std::size(fds), runner.untilNext()) < 0) continue;
    if (fds[0].revents != 0) return;
    if (fds[2].revents != 0) prompt->redraw();
    if (fds[1].revents == 0) continue;
    // At the end of the input the device continues.
    if ((fds[1].revents & POLLIN) == 0) {
      fds[1].fd = -1;
    } else if (prompt) {
      if (!prompt->read()) return;
    } else {
      char bytes[512];
      const ssize_t count = read(STDIN_FILENO, bytes, sizeof(bytes));
      if (count <= 0) fds[1].fd = -1;
      // The last line may lack a newline.
      if (count == 0) console.feed("\n");
      if (count > 0) console.feed({bytes, static_cast<size_t>(count)});
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const sim::Options options = sim::parseCommandLine(argc, argv);
  std::string error;
  std::optional<std::vector<sim::Command>> script(std::in_place);
  if (!options.script.empty()) script = sim::parseScript(options.script, &error);
  if (!script) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return kUsageError;
  }
  const int signalFd = blockSignals();

  const std::unique_ptr<sim::Device> device = sim::Device::start(options, &error);
  if (device == nullptr) {
    std::fprintf(stderr, "vesk-device: %s\n", error.c_str());
    return EXIT_FAILURE;
  }
  android::ProcessState::self()->startThreadPool();
  sim::Output::self().say("ready\n");

  device->phone().use([&](sim::Phone& phone) {
    for (const sim::IncomingCall& call : options.incoming) {
      phone.scheduleIncomingCall(call.after, call.line, call.number);
    }
  });
  sim::Runner runner(*device, options.speed);
  runner.run(std::move(*script));
  runUntilEnd(runner, signalFd);
  device->stopEvents(kTimeoutAtEnd);
  sim::Output::self().flush(kTimeoutAtEnd);
  return EXIT_SUCCESS;
}
