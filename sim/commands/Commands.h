#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Device.h"

namespace sim {

/** Carries out commands, one after the other, on the thread that calls it. */
class Runner {
 public:
  using Clock = std::chrono::steady_clock;

  Runner(Device& device, double speed) : device_(device), speed_(speed) {}

  Device& device() { return device_; }
  double speed() const { return speed_; }

  bool hasQuit() const { return quit_; }
  void quit() { quit_ = true; }

  void after(std::chrono::nanoseconds delay, std::function<void()> action) {
    timers_.emplace(Clock::now() + delay, std::move(action));
  }
  void runTimers();
  /** Milliseconds until runTimers() has something to do; -1 for never. */
  int untilNext() const;

 private:
  Device& device_;
  const double speed_;
  bool quit_ = false;
  std::multimap<Clock::time_point, std::function<void()>> timers_;
};

/** A line that has been understood. */
struct Command {
  /** What there is to tell, or why it was refused; lines, each with its end. */
  std::function<std::string(Runner&)> run;
  /** How long a script pauses afterwards. */
  Time wait{0};
};

/** Understands a line. Neither a command nor an error is given for one that is empty, or a comment. */
std::optional<Command> parseCommand(const std::string& line, std::string* error);

/** Understands all of a script; nothing, with the place and the reason in `error`, if it can't. */
std::optional<std::vector<Command>> parseScript(const std::string& path, std::string* error);

/** What the last of `words` can become. */
std::vector<std::string> completions(const std::vector<std::string>& words);

/** Does the commands of a script, with its pauses. */
void runScript(Runner& runner, std::vector<Command> script);

}  // namespace sim
