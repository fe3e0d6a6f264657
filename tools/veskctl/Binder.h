#pragma once

#include <binder/IBinder.h>
#include <binder/Status.h>
#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Names.h"
#include "Value.h"

/* Services and transactions, by the tables. */
namespace veskctl {

using Clock = std::chrono::steady_clock;

/** When to stop waiting, from now on; in the distant future for 0 seconds. */
Clock::time_point deadlineAfter(double seconds);

/**
 * Something that may hang, since it waits for another process: runs on a thread of its own, which is left
 * behind if it isn't done in time. It must own all that it uses.
 */
template <class T>
class Background {
 public:
  explicit Background(std::function<T()> work) : state_(std::make_shared<State>()) {
    std::thread([state = state_, work = std::move(work)] {
      T result = work();
      const std::lock_guard lock(state->mutex);
      state->result = std::move(result);
      state->done.notify_all();
    }).detach();
  }

  /** Once: nothing if it isn't done by then. */
  std::optional<T> waitUntil(Clock::time_point deadline) {
    std::unique_lock lock(state_->mutex);
    state_->done.wait_until(lock, deadline, [this] { return state_->result.has_value(); });
    return std::exchange(state_->result, std::nullopt);
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable done;
    std::optional<T> result;
  };
  const std::shared_ptr<State> state_;
};

/** The service of that name, or null at once. */
android::sp<android::IBinder> findService(const std::string& name);

/** What there is to know of a service without calling its methods. */
struct Condition {
  bool isAlive = false;
  std::chrono::duration<double, std::milli> roundTrip{};
  /** Of its process; older platforms don't tell. */
  std::optional<pid_t> pid;
  std::string descriptor;
};
Condition examine(const std::string& serviceName);

struct Answer {
  android::binder::Status status;
  /** In the order of Method::outs(); empty unless the status is ok. */
  std::vector<Value> outs;
};

/** One call as the library's proxies make it. The values are of the types of Method::ins(). */
Answer transact(android::IBinder& binder, const Interface& interface, const Method& method,
                const std::vector<Value>& ins);

/** Reads the in-arguments as the library's stubs do; the parcel stands behind the token. */
android::status_t readArguments(const android::Parcel& data, const Method& method,
                                std::vector<Value>* values);

}  // namespace veskctl
