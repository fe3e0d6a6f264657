#include "commands/Runner.h"

#include <algorithm>
#include <fstream>

#include "console/Output.h"

namespace sim {

void Runner::run(std::vector<Command> script) {
  script_ = std::move(script);
  runFrom(0);
}

void Runner::runFrom(size_t next) {
  for (; next < script_.size() && !quit_; ++next) {
    const Command& command = script_[next];
    Output::self().say(command.run(*this));
    if (command.wait == Time(0)) continue;
    const auto pause = std::chrono::duration<double, std::milli>(command.wait) / speed_;
    after(std::chrono::ceil<std::chrono::nanoseconds>(pause), [this, next] { runFrom(next + 1); });
    return;
  }
}

void Runner::runTimers() {
  while (!timers_.empty() && timers_.begin()->first <= Clock::now()) {
    const auto due = timers_.extract(timers_.begin());
    due.mapped()();
  }
}

int Runner::untilNext() const {
  if (timers_.empty()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(timers_.begin()->first - Clock::now());
  return static_cast<int>(std::clamp<int64_t>(left.count(), 0, 3'600'000));
}

std::optional<std::vector<Command>> parseScript(const std::string& path, std::string* error) {
  std::ifstream file(path);
  if (!file) {
    *error = path + ": can't be read";
    return std::nullopt;
  }
  std::vector<Command> script;
  std::string text;
  for (int at = 1; std::getline(file, text); ++at) {
    std::string why;
    if (std::optional<Command> command = parseCommand(text, &why)) {
      script.push_back(std::move(*command));
    } else if (!why.empty()) {
      if (!error->empty()) *error += '\n';
      error->append(path).append(":").append(std::to_string(at)).append(": ").append(why);
    }
  }
  if (file.bad() || !file.eof()) *error = path + ": can't be read";
  if (!error->empty()) return std::nullopt;
  return script;
}

}  // namespace sim
