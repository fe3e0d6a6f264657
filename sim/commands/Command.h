#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "clock/TimerQueue.h"

namespace sim {

class Runner;

/** A parsed command line. */
struct Command {
  /** Returns the output, or the reason of a refusal. Each line ends with a newline. */
  std::function<std::string(Runner&)> run;
  /** How long a script pauses afterwards. */
  Time wait{0};
};

/** The words of a command line after the command. */
using Words = std::vector<std::string>;

/** Parses the arguments of a command. On failure returns nothing and sets `error` to the reason; if
 * `error` is empty, the usage is wrong. */
using ParseArguments = std::optional<Command> (*)(const Words& words, std::string* error);

struct CommandRow {
  const char* name;
  const char* arguments;
  const char* help;
  size_t minWords;
  size_t maxWords;
  ParseArguments parse;
};

/** The commands by subject. */
std::span<const CommandRow> deskCommands();
std::span<const CommandRow> faultCommands();

/** Parses a line. For an empty line or a comment, returns nothing and leaves `error` empty. */
std::optional<Command> parseCommand(const std::string& line, std::string* error);

/** The possible completions of the last of `words`. */
std::vector<std::string> completions(const Words& words);

}  // namespace sim
