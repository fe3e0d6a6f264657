#include <gtest/gtest.h>
#include <signal.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ChildProcess.h"

/*
 * A stress test: services are killed and restarted at random while applications connect, call and
 * receive events on many threads. Nothing may hang, crash or leak. Each connection reports the
 * death of its service exactly once. Each call returns its own result or a failure.
 *
 *     storm [--seconds N] [--seed N] [--services N] [--apps N] [--threads N]
 */

using namespace std::chrono_literals;
using vesk::test::ChildProcess;

namespace {

struct Options {
  unsigned seconds = 6;
  unsigned seed = 1;
  /** Call, misc and config service, in this order. */
  unsigned services = 3;
  unsigned apps = 3;
  /** Calling threads in each application. */
  unsigned threads = 6;
};

bool parse(int argc, char** argv, Options* options) {
  const struct {
    const char* name;
    unsigned* value;
    unsigned least;
    unsigned most;
  } known[] = {{"--seconds", &options->seconds, 1, 1'000'000},
               {"--seed", &options->seed, 0, ~0U},
               {"--services", &options->services, 1, 3},
               {"--apps", &options->apps, 1, 64},
               {"--threads", &options->threads, 1, 256}};
  for (int i = 1; i < argc; i += 2) {
    bool valid = false;
    for (const auto& option : known) {
      if (std::strcmp(argv[i], option.name) != 0 || i + 1 == argc) continue;
      const char* const end = argv[i + 1] + std::strlen(argv[i + 1]);
      const auto result = std::from_chars(argv[i + 1], end, *option.value);
      valid = result.ec == std::errc() && result.ptr == end && *option.value >= option.least &&
              *option.value <= option.most;
    }
    if (valid) continue;
    std::fprintf(stderr, "usage: %s [--seconds N] [--seed N] [--services 1..3] [--apps N] [--threads N]\n",
                 argv[0]);
    return false;
  }
  return true;
}

class Storm {
 public:
  explicit Storm(const Options& options)
      : options_(options), random_(options.seed), services_(options.services) {
    for (unsigned i = 0; i < options.apps; ++i) {
      apps_.push_back(std::make_unique<ChildProcess>(
          "app", std::vector{std::to_string(random_()), std::to_string(options.threads),
                             std::string(i % 3 == 2 ? "reconnects" : "keeps")}));
    }
  }

  void run() {
    // The memory after the first part is the limit for the second.
    if (killServices(options_.seconds * 1000ms / 3) && killServices(options_.seconds * 2000ms / 3) &&
        stopApplications()) {
      EXPECT_GT(kills_, 0);
      expectCleanDirectory();
    }
    std::printf("storm: %d services killed\n", kills_);
    // After a failure the remaining processes may be in any state, so they are killed.
    for (auto* const processes : {&apps_, &services_}) {
      for (const auto& process : *processes) {
        if (process != nullptr) process->kill();
      }
    }
  }

 private:
  void start(unsigned service) {
    services_[service] = std::make_unique<ChildProcess>("service", std::vector{std::to_string(service)});
  }
  void kill(unsigned service) {
    if (services_[service] == nullptr) return;
    services_[service]->kill();
    services_[service] = nullptr;
    ++kills_;
  }

  /** Sends a command to all applications. False if one has failed or hangs. */
  bool command(const char* what, bool shows = false) {
    for (const auto& app : apps_) app->channel().send(what);
    for (auto& app : apps_) {
      const std::string report = app->channel().receive(kReportTimeoutMs);
      if (shows) std::printf("storm: %d %s: %s\n", app->pid(), what, report.c_str());
      if (!report.starts_with("ok")) ADD_FAILURE() << app->pid() << " at " << what << ": " << report;
      if (report.empty()) {
        // SIGABRT makes a hanging process leave a core dump. For an ended process, kill() reports
        // its exit code.
        app->kill(SIGABRT);
        app = nullptr;
      }
      if (testing::Test::HasFailure()) return false;
    }
    return true;
  }

  /** Kills and restarts services at random, and finally kills all of them. */
  bool killServices(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    for (bool goes = command("run"); goes && std::chrono::steady_clock::now() < end;
         goes = command("check")) {
      const unsigned service = static_cast<unsigned>(random_() % options_.services);
      if (services_[service] == nullptr) {
        start(service);
      } else {
        kill(service);
      }
      // Some services end before any application connects, others serve thousands of calls.
      std::this_thread::sleep_for(
          std::chrono::milliseconds(random_() % 3 == 0 ? random_() % 400 : random_() % 20));
    }
    if (testing::Test::HasFailure()) return false;
    for (unsigned i = 0; i < options_.services; ++i) kill(i);
    return command("settle", true);
  }

  /** Stops the applications first. The services must then have released all their resources. */
  bool stopApplications() {
    for (unsigned i = 0; i < options_.services; ++i) start(i);
    if (!command("run")) return false;
    std::this_thread::sleep_for(1s);
    if (!command("stop", true)) return false;
    for (const auto& app : apps_) app->stop();
    apps_.clear();
    for (auto& service : services_) {
      service->channel().send("left");
      const std::string report = service->channel().receive(kReportTimeoutMs);
      EXPECT_EQ(report.substr(report.find(' ') + 1), "") << report;
      service->stop();
      service = nullptr;
    }
    return !testing::Test::HasFailure();
  }

  /** One more process removes the files of the killed ones, and then its own. */
  void expectCleanDirectory() {
    start(0);
    services_[0]->stop();
    services_[0] = nullptr;
    for (const auto& entry : std::filesystem::directory_iterator(std::getenv("BINDER_RUNTIME_DIR"))) {
      EXPECT_EQ(entry.path().filename(), ".lock") << "left over";
    }
  }

  static constexpr int kReportTimeoutMs = 90'000;

  const Options options_;
  std::minstd_rand random_;
  std::vector<std::unique_ptr<ChildProcess>> services_;
  std::vector<std::unique_ptr<ChildProcess>> apps_;
  int kills_ = 0;
};

Options options;

TEST(StormTest, SurvivesRandomServiceDeaths) { Storm(options).run(); }

}  // namespace

int main(int argc, char** argv) {
  int exitCode = 0;
  if (vesk::test::runRole(argc, argv, &exitCode)) return exitCode;
  testing::InitGoogleTest(&argc, argv);
  if (!parse(argc, argv, &options)) return 2;
  ::setenv("BINDER_LOOKUP_MS", "300", 1);
  const vesk::test::PrivateRuntimeDir runtimeDir;
  return RUN_ALL_TESTS();
}
