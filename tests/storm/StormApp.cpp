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

/* An application: one connecting thread for each service, and many calling threads. */

using namespace std::chrono_literals;

namespace {

/** The longest time for a call whose service may be killed. */
constexpr auto kHangTimeout = 30s;

/** Keeps the first failure for the next report. */
class Failure {
 public:
  template <class... Arguments>
  void set(const Arguments&... arguments) {
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

/** Never destroyed: callbacks may run while the process exits. */
Failure& failure = *new Failure;

/** Counters of one service. `connects` are the connections with death notification. */
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
  if (info.chan != storm::answerTo(info.line) || name != info.name) failure.set("corrupt call event");
  ++counts[0].events;
}

void onRing(int value) {
  if ((value & 1) == 0) failure.set("corrupt ring event");
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

/** Returns the result, or -1 for a failed call. */
int callConfig(int value) {
  if (value % 4 != 0) return binder_set_default_ext_line(value);
  char info[VESK_LINE_INFO_SIZE] = {};
  if (binder_get_line_info(value, info) != 0) {
    for (const char byte : info) {
      if (byte != 0) failure.set("a failed call has changed its record");
    }
    return -1;
  }
  for (const char byte : info) {
    if (byte != storm::filling(value)) failure.set("corrupt record");
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

  /** `reconnects` also replaces live connections. */
  void start(int callers, bool reconnects) {
    going_ = connecting_ = true;
    for (size_t service = 0; service < kServices; ++service) {
      run(&connectors_, [this, service, reconnects](Heartbeat& beat, unsigned seed) {
        connectRepeatedly(service, reconnects, seed, beat);
      });
    }
    for (int i = 0; i < callers; ++i) {
      run(&callers_, [this](Heartbeat& beat, unsigned seed) { callRepeatedly(seed, beat); });
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
    heartbeats_.clear();
  }

  /** Aborts the process if a thread hangs, so that a core dump shows its location. */
  void check() const {
    for (const auto& beat : heartbeats_) {
      if (beat->load() != Time() && std::chrono::steady_clock::now() - beat->load() > kHangTimeout) {
        std::fprintf(stderr, "storm app: a thread hangs\n");
        std::abort();
      }
    }
  }

 private:
  using Time = std::chrono::steady_clock::time_point;
  /** The last sign of life of a thread; Time() after its end. */
  using Heartbeat = std::atomic<Time>;

  template <class Work>
  void run(std::vector<std::thread>* threads, Work work) {
    heartbeats_.push_back(std::make_unique<Heartbeat>(std::chrono::steady_clock::now()));
    Heartbeat& beat = *heartbeats_.back();
    threads->emplace_back([&beat, work, seed = static_cast<unsigned>(random_())] {
      work(beat, seed);
      beat = Time();
    });
  }

  void join(std::vector<std::thread>* threads) {
    for (std::thread& thread : *threads) thread.join();
    threads->clear();
  }

  void connectRepeatedly(size_t service, bool reconnects, unsigned seed, Heartbeat& beat) {
    std::minstd_rand random(seed);
    Counts& count = counts[service];
    bool connected = false;
    int deathsBefore = 0;
    while (connecting_) {
      beat = std::chrono::steady_clock::now();
      if (connected && count.deaths != deathsBefore) connected = false;
      const bool replaces = connected && reconnects && random() % 100 == 0;
      if (!connected || replaces) {
        const int deaths = count.deaths;
        if (kApi[service].connect()) {
          ++count.connects;
          connected = true;
          deathsBefore = deaths;
        } else if (service == 0) {
          connected = false;  // A failed attempt closes the connection to the call service.
        }
      }
      std::this_thread::sleep_for(1ms);
    }
  }

  void callRepeatedly(unsigned seed, Heartbeat& beat) {
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
        failure.set("service ", service, " answered ", result, " to ", value);
      }
    }
  }

  std::minstd_rand random_;
  std::atomic<bool> going_ = false;
  std::atomic<bool> connecting_ = false;
  std::vector<std::unique_ptr<Heartbeat>> heartbeats_;
  std::vector<std::thread> connectors_;
  std::vector<std::thread> callers_;
};

/** After the deaths of all services: each connection has reported its death, and nothing is
 * leaked. */
void checkAfterDeaths(bool reconnects, const storm::Resources& limit) {
  for (size_t service = 0; service < kServices; ++service) {
    Counts& count = counts[service];
    // A replaced connection reports no death, unless its service died before. Without replacements
    // every connection must report one.
    const int least = reconnects ? 0 : count.connects.load();
    const auto end = std::chrono::steady_clock::now() + kHangTimeout;
    while (count.deaths < least && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(1ms);
    if (count.deaths < least || count.deaths > count.connects) {
      failure.set("service ", service, ": ", count.deaths, " deaths of ", count.connects, " connections");
    }
    if (kApi[service].call(1) != -1) failure.set("a call of a dead service has succeeded");
  }
  if (const std::string left = storm::findLeaks(limit); !left.empty()) failure.set(left);
}

/** Checks that every service was connected, has replied and has sent events. */
void checkActivity() {
  for (size_t service = 0; service < kServices; ++service) {
    const Counts& count = counts[service];
    // The config service has no events.
    if (count.connects == 0 || count.values == 0 || (service != 2 && count.events == 0)) {
      failure.set("service ", service, ": ", count.connects, " connections, ", count.values, " answers, ",
                  count.events, " events");
    }
  }
}

/** The allocated bytes. */
size_t memory() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return 0;
#else
  return ::mallinfo2().uordblks;
#endif
}

/** Runs the commands "run", "check", "settle" (after the deaths of all services) and "stop", and
 * replies to each with a report. */
CHILD_ROLE(app) {
  const storm::Resources limit = storm::withTransport(storm::atStart());
  // Hides the log lines of thousands of deaths.
  ::setenv("ANDROID_LOG_TAGS", "*:W", 1);
  const int callers = std::stoi(args.at(1));
  const bool reconnects = args.at(2) == "reconnects";
  App app(static_cast<unsigned>(std::stoul(args.at(0))));
  size_t memoryBefore = 0;
  parent.ready();
  for (;;) {
    const std::string command = parent.channel().receive(-1);
    if (command.empty()) return 0;
    if (command == "run") app.start(callers, reconnects);
    if (command == "check") app.check();
    if (command == "stop" || command == "settle") app.stop();
    if (command == "settle") {
      checkAfterDeaths(reconnects, limit);
      const size_t now = memory();
      if (memoryBefore != 0 && now > memoryBefore + 128 * 1024) {
        failure.set("memory has grown from ", memoryBefore, " to ", now, " bytes");
      }
      memoryBefore = now;
    }
    if (command == "stop") checkActivity();
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
