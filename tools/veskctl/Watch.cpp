#include <binder/IBinder.h>
#include <binder/ProcessState.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "Background.h"
#include "Binder.h"
#include "Commands.h"
#include "Events.h"
#include "ShowEvents.h"
#include "StatusText.h"

/* The command watch: keeps listeners registered with services that may come and go. */
namespace veskctl {

namespace {

/** The interval between two look-ups of an absent service. */
constexpr std::chrono::milliseconds kRetryInterval(100);

class DeathWaiter : public android::IBinder::DeathRecipient {
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

/** One service and the listeners to register with it. Runs until the process ends. */
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
    for (bool isWaiting = false;; std::this_thread::sleep_for(kRetryInterval)) {
      const android::sp<android::IBinder> binder = findService(service_);
      const android::sp<DeathWaiter> death = new DeathWaiter;
      if (binder == nullptr || binder->linkToDeath(death) != android::OK) {
        if (!std::exchange(isWaiting, true)) report("waiting");
        continue;
      }
      isWaiting = true;
      if (registerAll(binder)) report("watching");
      death->wait();
      report("died");
    }
  }

 private:
  void report(const char* state, const std::string& reason = {}) {
    Event event;
    event.service = service_;
    event.state = state;
    event.reason = reason;
    queue_->push(std::move(event));
  }

  /** True if at least one listener is registered. */
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
        report("refused", std::string(registration.method->name) + ": " +
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

/** Connects to the listeners' services, on a thread for each service. */
void connect(const std::vector<const Interface*>& listeners, const Settings& settings,
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

}  // namespace

int watchEvents(const std::vector<std::string>& topics, const Settings& settings) {
  std::vector<const Interface*> wanted;
  for (const Interface& listener : interfaces::listeners()) {
    if (topics.empty()) wanted.push_back(&listener);
  }
  for (const std::string& topic : topics) {
    const auto isNamed = [&](const Interface& listener) {
      return topic == listener.topic() || topic == listener.name;
    };
    const auto found = std::ranges::find_if(interfaces::listeners(), isNamed);
    if (found == interfaces::listeners().end()) {
      return fail(kUsageError, "there is no topic '" + topic + "'; there are call, misc and test");
    }
    if (std::ranges::find(wanted, &*found) == wanted.end()) wanted.push_back(&*found);
  }
  blockSignals();
  const auto queue = std::make_shared<EventQueue>();
  connect(wanted, settings, queue);
  return showEvents(*queue, settings);
}

}  // namespace veskctl
