#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace veskctl {

using Clock = std::chrono::steady_clock;

/** The time `seconds` from now. 0 means no limit, which is ten years in practice. */
inline Clock::time_point deadlineAfter(double seconds) {
  // wait_until() converts the time, so time_point::max() would overflow.
  constexpr std::chrono::hours kNoLimit(24 * 3650);
  if (seconds <= 0) return Clock::now() + kNoLimit;
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

/**
 * Runs work that may hang, because it waits for another process, on a thread of its own. The thread
 * is detached and may outlive this object, so the work must own everything that it uses.
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

  /** The result, or nothing if the work isn't done at the deadline. To be called once. */
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

}  // namespace veskctl
