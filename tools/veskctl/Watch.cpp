#include "Watch.h"

#include <binder/IBinder.h>
#include <binder/ProcessState.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <ctime>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "Binder.h"
#include "Render.h"

namespace veskctl {

namespace {

using std::chrono::milliseconds;

/** Between two looks for a service that is absent. */
constexpr milliseconds kPause(100);

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

class Obituary : public android::IBinder::DeathRecipient {
 public:
  void binderDied(const android::wp<android::IBinder>&) override {
    const std::lock_guard lock(mutex_);
    died_ = true;
    changed_.notify_all();
  }

  void wait() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return died_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool died_ = false;
};

/** One service, and the listeners that are registered with it. Runs as long as the process. */
class Connection {
 public:
  struct Listener {
    interfaces::Registration registration;
    android::sp<EventListener> object;
  };

  Connection(std::string service, double timeoutSeconds, std::shared_ptr<EventQueue> queue)
      : service_(std::move(service)), timeoutSeconds_(timeoutSeconds), queue_(std::move(queue)) {}

  void add(const Interface& listener, const interfaces::Registration& registration) {
    listeners_.push_back({registration, new EventListener(listener, queue_)});
  }

  [[noreturn]] void run() {
    for (bool isWaiting = false;; std::this_thread::sleep_for(kPause)) {
      const android::sp<android::IBinder> binder = findService(service_);
      const android::sp<Obituary> obituary = new Obituary;
      if (binder == nullptr || binder->linkToDeath(obituary) != android::OK) {
        if (!std::exchange(isWaiting, true)) tell("waiting");
        continue;
      }
      isWaiting = true;
      if (registerAll(binder)) tell("watching");
      obituary->wait();
      tell("died");
    }
  }

 private:
  void tell(const char* state, const std::string& reason = {}) {
    Event event;
    event.service = service_;
    event.state = state;
    event.reason = reason;
    queue_->push(std::move(event));
  }

  /** Whether any of them is registered now. */
  bool registerAll(const android::sp<android::IBinder>& binder) {
    bool any = false;
    for (const Listener& listener : listeners_) {
      const interfaces::Registration registration = listener.registration;
      const android::sp<android::IBinder> object = listener.object;
      Background<Answer> call([binder, registration, object] {
        return transact(*binder, *registration.service, *registration.method, {object});
      });
      const std::optional<Answer> answer = call.waitUntil(deadlineAfter(timeoutSeconds_));
      if (answer && answer->status.isOk()) {
        any = true;
      } else if (!answer || answer->status.transactionError() != android::DEAD_OBJECT) {
        tell("refused", std::string(registration.method->name) + ": " +
                            (answer ? toText(answer->status) : "no answer in time"));
      }
    }
    return any;
  }

  const std::string service_;
  const double timeoutSeconds_;
  const std::shared_ptr<EventQueue> queue_;
  std::vector<Listener> listeners_;
};

/** 17:04:05.123, here; in UTC with the date for programs. */
std::string timeText(const Event& event, bool isForPrograms) {
  using std::chrono::system_clock;
  const std::time_t seconds = system_clock::to_time_t(event.time);
  const auto ms = std::chrono::duration_cast<milliseconds>(event.time.time_since_epoch()).count() % 1000;
  std::tm parts{};
  isForPrograms ? gmtime_r(&seconds, &parts) : localtime_r(&seconds, &parts);
  char text[64];
  const size_t length =
      std::strftime(text, sizeof(text), isForPrograms ? "%Y-%m-%dT%H:%M:%S" : "%H:%M:%S", &parts);
  return std::string(text, length) + format(".%03d%s", static_cast<int>(ms), isForPrograms ? "Z" : "");
}

std::string asJson(const Event& event) {
  Json json = {{"time", timeText(event, true)}};
  if (event.method == nullptr) {
    json["service"] = event.service;
    json["state"] = event.state;
    if (!event.reason.empty()) json["reason"] = event.reason;
    return dump(json, -1);
  }
  json["topic"] = event.listener->topic();
  json["event"] = event.method->name;
  Json& arguments = json["arguments"] = Json::object();
  for (size_t i = 0; i < event.arguments.size(); ++i) {
    const Parameter& parameter = event.method->parameters[i];
    arguments[parameter.name] = toJson(parameter, event.arguments[i]);
  }
  return dump(json, -1);
}

std::string describe(const Event& event) {
  if (event.state == "waiting") return event.service + " is not running; waiting for it";
  if (event.state == "died") return event.service + " has died; waiting for it to come back";
  if (event.state == "refused") return event.service + " does not take the listener: " + event.reason;
  return "watching " + event.service;
}

std::string asLine(const Event& event, const Settings& settings) {
  std::string line = styled(settings, Style::kDim, timeText(event, false)) + "  ";
  if (event.method == nullptr) return line + styled(settings, Style::kDim, "-- " + describe(event)) + "\n";
  line += event.listener->topic() + "  " + styled(settings, Style::kHead, event.method->name);
  for (size_t i = 0; i < event.arguments.size(); ++i) {
    const Parameter& parameter = event.method->parameters[i];
    line += std::string("  ") + parameter.name + "=" + brief(parameter, event.arguments[i]);
  }
  return line + "\n";
}

}  // namespace

void holdSignals() {
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void watch(const std::vector<const Interface*>& listeners, const Settings& settings,
           const std::shared_ptr<EventQueue>& queue) {
  android::ProcessState::self()->startThreadPool();
  std::map<std::string, std::shared_ptr<Connection>> connections;
  for (const Interface* listener : listeners) {
    const std::optional<interfaces::Registration> registration = interfaces::registrationOf(*listener);
    if (!registration) continue;
    const std::string service = registration->service->serviceName();
    std::shared_ptr<Connection>& connection = connections[service];
    if (connection == nullptr) {
      connection = std::make_shared<Connection>(service, settings.timeoutSeconds, queue);
    }
    connection->add(*listener, *registration);
  }
  for (const auto& [service, connection] : connections) {
    std::thread([connection = connection] { connection->run(); }).detach();
  }
}

int showEvents(EventQueue& queue, const Settings& settings) {
  const sigset_t signals = endingSignals();
  const int signalFd = signalfd(-1, &signals, SFD_CLOEXEC);
  // Of the output nothing is asked but whether its reader has gone, which poll() tells in any case.
  pollfd fds[] = {{signalFd, POLLIN, 0}, {queue.fd(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
  while (fds[0].revents == 0 && fds[2].revents == 0) {
    if (poll(fds, std::size(fds), -1) < 0) continue;
    for (const Event& event : queue.take()) {
      print(settings.json ? asJson(event) : asLine(event, settings));
    }
    flush();
  }
  close(signalFd);
  return kOk;
}

}  // namespace veskctl
