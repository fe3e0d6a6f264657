#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Device.h"
#include "commands/Command.h"

namespace sim {

/** Runs commands and timers on the thread that calls it. */
class Runner {
 public:
  using Clock = std::chrono::steady_clock;

  Runner(Device& device, double speed) : device_(device), speed_(speed) {}

  Device& device() { return device_; }

  bool hasQuit() const { return quit_; }
  void quit() { quit_ = true; }

  /**
   * Runs a script with its pauses: the commands up to the first pause now, the others as timers.
   */
  void run(std::vector<Command> script);

  /** Sets a timer. */
  void after(std::chrono::nanoseconds delay, std::function<void()> action) {
    timers_.emplace(Clock::now() + delay, std::move(action));
  }
  void runTimers();
  /** Milliseconds until the next timer; -1 without timers. */
  int untilNext() const;

 private:
  void runFrom(size_t next);

  Device& device_;
  const double speed_;
  bool quit_ = false;
  std::vector<Command> script_;
  std::multimap<Clock::time_point, std::function<void()>> timers_;
};

/**
 * Parses a whole script. On failure returns nothing and sets `error` to the invalid lines and their
 * reasons.
 */
std::optional<std::vector<Command>> parseScript(const std::string& path, std::string* error);

}  // namespace sim
