#include <binder/IServiceManager.h>
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
#include "Options.h"
#include "call/CallService.h"
#include "config/ConfigService.h"
#include "database/CallLog.h"
#include "database/DatabaseService.h"
#include "store/Store.h"

namespace {

constexpr const char* kCallServiceName = "com.qv.CallService";
constexpr const char* kConfigServiceName = "com.qv.ConfigService";
constexpr const char* kDatabaseServiceName = "com.qv.DatabaseService";

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

void printEvent(sim::Time time, const sim::Event& event) {
  std::printf("%9.3f  %s\n", static_cast<double>(time.count()) / 1000, toString(event).c_str());
  std::fflush(stdout);
}

bool addService(const char* name, const android::sp<android::IBinder>& service) {
  const android::status_t added =
      android::defaultServiceManager()->addService(android::String16(name), service);
  if (added == android::OK) return true;
  std::fprintf(stderr, "vesk-device: can't register %s: %s\n", name, android::statusToString(added).c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const sim::Options options = sim::parseCommandLine(argc, argv);
  const int signalFd = holdSignals();

  std::string error;
  const std::shared_ptr<sim::Store> store = sim::Store::open(options.stateDirectory, &error);
  const auto settings = std::make_shared<sim::Settings>(store);
  const android::sp<sim::DatabaseService> databaseService = new sim::DatabaseService(store);
  if (store == nullptr || !settings->load(sim::ConfigService::factoryValues(), &error) ||
      !databaseService->prepare(&error)) {
    std::fprintf(stderr, "vesk-device: %s\n", error.c_str());
    return EXIT_FAILURE;
  }

  const auto callLog = std::make_shared<sim::CallLog>(
      [databaseService](const sim::CallLogRecord& call) { databaseService->logCall(call); });
  const auto onEvent = [callLog, verbose = options.verbose](sim::Time time, const sim::Event& event) {
    if (verbose) printEvent(time, event);
    callLog->notice(time, event);
  };
  const android::sp<sim::CallService> service = new sim::CallService(options.speed, onEvent);
  const android::sp<sim::ConfigService> configService = new sim::ConfigService(settings);
  if (!addService(kCallServiceName, service) || !addService(kConfigServiceName, configService) ||
      !addService(kDatabaseServiceName, databaseService)) {
    return EXIT_FAILURE;
  }
  android::ProcessState::self()->startThreadPool();
  std::puts("ready");
  std::fflush(stdout);

  service->phone().use([&](sim::Phone& phone) {
    for (const sim::IncomingCall& call : options.incoming) {
      phone.scheduleIncomingCall(call.after, call.line, call.number);
    }
  });
  sim::Console console(service->phone());
  runUntilEnd(console, signalFd);
  service->stopEvents(kPatienceAtEnd);
  return EXIT_SUCCESS;
}
