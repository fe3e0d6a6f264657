#include <android/log.h>
#include <malloc.h>
#include <vesk/call.h>
#include <vesk/config.h>
#include <vesk/misc.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "Storm.h"

/* An application in the storm: one thread for each service that connects, and many that call. */

using namespace std::chrono_literals;

namespace {

/** Longer than any call may take whose service is killed sooner or later. */
constexpr auto kHang = 30s;

/** The first failure, for the next report. */
class Failure {
 public:
  template <class... Arguments>
  void say(const Arguments&... arguments) {
    std::ostringstream text;
    (text << ... << arguments);
    const std::lock_guard lock(mutex_);
    if (first_.empty()) first_ = text.str();
  }
  std::string first() {
    const std::lock_guard lock(mutex_);
    return first_;
  }

 private:
  std::mutex mutex_;
  std::string first_;
};

/** Callbacks may say something while the process exits. */
Failure& failure = *new Failure;

/** The counts of one service's connections; a connection is one that knows of its death. */
struct Counts {
  std::atomic<int> connects = 0;
  std::atomic<int> deaths = 0;
  std::atomic<long> values = 0;
  std::atomic<long> failures = 0;
  std::atomic<long> events = 0;
};

constexpr size_t kServices = 3;
std::array<Counts, kServices> counts;

template <size_t kService>
void onDied() {
  ++counts[kService].deaths;
}

void onCallState(void* record) {
  const auto& info = *static_cast<const vesk_call_info*>(record);
  const std::string name(sizeof(info.name) - 1, storm::filling(info.line));
  if (info.chan != storm::answerTo(info.line) || name != info.name) failure.say("a mangled call event");
  ++counts[0].events;
}

void onRing(int value) {
  if ((value & 1) == 0) failure.say("a mangled ring event");
  ++counts[1].events;
}

bool connectMisc() {
  const auto ignore = [] {};
  vesk_misc_callbacks callbacks{};
  callbacks.on_online_ate_started = callbacks.on_online_ate_stopped = ignore;
  callbacks.on_update_context = [](const char*) {};
  callbacks.on_lcd_switch = callbacks.on_touch_screen_start = callbacks.on_touch_screen_stop = ignore;
  callbacks.on_system_reboot = callbacks.on_web_screenshot = callbacks.on_scan_cancel = ignore;
  callbacks.on_ring = onRing;
  return connect_misc_service(callbacks, onDied<1>);
}

bool connectCall() {
  return connect_call_service(nullptr, nullptr, nullptr, nullptr, onCallState, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, onDied<0>);
}

/** The answer, or -1 for a failed call. An answer to another call is a failure of the storm. */
int callConfig(int value) {
  if (value % 4 != 0) return binder_set_default_ext_line(value);
  char info[VESK_LINE_INFO_SIZE] = {};
  if (binder_get_line_info(value, info) != 0) {
    for (const char byte : info) {
      if (byte != 0) failure.say("a record that a failed call has touched");
    }
    return -1;
  }
  for (const char byte : info) {
    if (byte != storm::filling(value)) failure.say("a mangled record");
  }
  return storm::answerTo(value);
}

constexpr struct {
  bool (*connect)();
  int (*call)(int value);
} kApi[kServices] = {
    {connectCall, [](int value) { return binder_make_call(0, std::to_string(value).c_str()); }},
    {connectMisc, [](int value) { return binder_play_rec_file_start(std::to_string(value).c_str()); }},
    {[] { return connect_config_service(onDied<2>); }, callConfig},
};

class App {
 public:
  explicit App(unsigned seed) : random_(seed) {}

  /** `impatient` replaces connections while they live, too. */
  void start(int callers, bool impatient) {
    going_ = connecting_ = true;
    for (size_t service = 0; service < kServices; ++service) {
      run(&connectors_, [this, service, impatient](Beat& beat, unsigned seed) {
        connectAgainAndAgain(service, impatient, seed, beat);
      });
    }
    for (int i = 0; i < callers; ++i) {
      run(&callers_, [this](Beat& beat, unsigned seed) { callAgainAndAgain(seed, beat); });
    }
  }

  void stopConnecting() {
    connecting_ = false;
    join(&connectors_);
  }
  void stop() {
    stopConnecting();
    going_ = false;
    join(&callers_);
    beats_.clear();
  }

  /** Ends the process, so that the place shows, if a thread has come to no end. */
  void check() const {
    for (const auto& beat : beats_) {
      if (beat->load() != Time() && std::chrono::steady_clock::now() - beat->load() > kHang) {
        std::fprintf(stderr, "storm app: a thread hangs\n");
        std::abort();
      }
    }
  }

 private:
  using Time = std::chrono::steady_clock::time_point;
  /** When a thread was last seen; the beginning of time once it has ended. */
  using Beat = std::atomic<Time>;

  template <class Work>
  void run(std::vector<std::thread>* threads, Work work) {
    beats_.push_back(std::make_unique<Beat>(std::chrono::steady_clock::now()));
    Beat& beat = *beats_.back();
    threads->emplace_back([&beat, work, seed = static_cast<unsigned>(random_())] {
      work(beat, seed);
      beat = Time();
    });
  }

  void join(std::vector<std::thread>* threads) {
    for (std::thread& thread : *threads) thread.join();
    threads->clear();
  }

  void connectAgainAndAgain(size_t service, bool impatient, unsigned seed, Beat& beat) {
    std::minstd_rand random(seed);
    Counts& count = counts[service];
    bool connected = false;
    int deathsBefore = 0;
    while (connecting_) {
      beat = std::chrono::steady_clock::now();
      if (connected && count.deaths != deathsBefore) connected = false;
      const bool replaces = connected && impatient && random() % 100 == 0;
      if (!connected || replaces) {
        const int deaths = count.deaths;
        if (kApi[service].connect()) {
          ++count.connects;
          connected = true;
          deathsBefore = deaths;
        } else if (service == 0) {
          connected = false;  // A failed attempt gives the call service's connection up.
        }
      }
      std::this_thread::sleep_for(1ms);
    }
  }

  void callAgainAndAgain(unsigned seed, Beat& beat) {
    std::minstd_rand random(seed);
    while (going_) {
      beat = std::chrono::steady_clock::now();
      const size_t service = random() % kServices;
      const int value = static_cast<int>(random() % 1'000'000);
      const int result = kApi[service].call(value);
      if (result == storm::answerTo(value)) {
        ++counts[service].values;
      } else if (result == -1) {
        ++counts[service].failures;
        std::this_thread::sleep_for(1ms);
      } else {
        failure.say("service ", service, " answered ", result, " to ", value);
      }
    }
  }

  std::minstd_rand random_;
  std::atomic<bool> going_ = false;
  std::atomic<bool> connecting_ = false;
  std::vector<std::unique_ptr<Beat>> beats_;
  std::vector<std::thread> connectors_;
  std::vector<std::thread> callers_;
};

/** All services are dead: each connection has reported its death, and nothing is left. */
void checkAfterDeaths(bool impatient, const storm::Holdings& limit) {
  for (size_t service = 0; service < kServices; ++service) {
    Counts& count = counts[service];
    // Without replacements each connection was the current one when its service died. One that has
    // been replaced reports no death, but may have done so before.
    const int least = impatient ? 0 : count.connects.load();
    const auto end = std::chrono::steady_clock::now() + kHang;
    while (count.deaths < least && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(1ms);
    if (count.deaths < least || count.deaths > count.connects) {
      failure.say("service ", service, ": ", count.deaths, " deaths of ", count.connects, " connections");
    }
    if (kApi[service].call(1) != -1) failure.say("a call of a dead service has not failed");
  }
  if (const std::string left = storm::leftOver(limit); !left.empty()) failure.say(left);
}

/** A storm in which nothing answers proves nothing. */
void checkThatItWorked() {
  for (size_t service = 0; service < kServices; ++service) {
    const Counts& count = counts[service];
    // The config service has no events.
    if (count.connects == 0 || count.values == 0 || (service != 2 && count.events == 0)) {
      failure.say("service ", service, ": ", count.connects, " connections, ", count.values, " answers, ",
                  count.events, " events");
    }
  }
}

/** Bytes that the allocator has handed out. */
size_t memory() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return 0;
#else
  return ::mallinfo2().uordblks;
#endif
}

/** Takes orders as messages, which it answers: "run", "settle" once all services are dead,
 * "stop". */
CHILD_ROLE(app) {
  const storm::Holdings limit = storm::withTransport(storm::atStart());
  // The deaths of thousands are no news here.
  ::setenv("ANDROID_LOG_TAGS", "*:W", 1);
  const int callers = std::stoi(args.at(1));
  const bool impatient = args.at(2) == "impatient";
  App app(static_cast<unsigned>(std::stoul(args.at(0))));
  size_t memoryBefore = 0;
  parent.ready();
  for (;;) {
    const std::string order = parent.channel().receive(-1);
    if (order.empty()) return 0;
    if (order == "run") app.start(callers, impatient);
    if (order == "check") app.check();
    if (order == "stop" || order == "settle") app.stop();
    if (order == "settle") {
      checkAfterDeaths(impatient, limit);
      const size_t now = memory();
      if (memoryBefore != 0 && now > memoryBefore + 128 * 1024) {
        failure.say("memory has grown from ", memoryBefore, " to ", now, " bytes");
      }
      memoryBefore = now;
    }
    if (order == "stop") checkThatItWorked();
    std::ostringstream report;
    for (const Counts& count : counts) {
      report << ' ' << count.connects << ' ' << count.deaths << ' ' << count.values << ' ' << count.failures
             << ' ' << count.events;
    }
    const std::string failed = failure.first();
    parent.channel().send((failed.empty() ? "ok" : "failed: " + failed + ";") + report.str());
  }
}

}  // namespace
