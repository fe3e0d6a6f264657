#include "console/Console.h"

#include "console/Output.h"

namespace sim {

void Console::feed(std::string_view bytes) {
  pending_ += bytes;
  size_t start = 0;
  for (size_t end; !runner_.hasQuit() && (end = pending_.find('\n', start)) != std::string::npos;
       start = end + 1) {
    run(pending_.substr(start, end - start));
  }
  pending_.erase(0, start);
}

void Console::run(const std::string& line) {
  std::string error;
  if (const std::optional<Command> command = parseCommand(line, &error)) {
    Output::self().say(command->run(runner_));
  } else if (!error.empty()) {
    Output::self().say(error + "\n");
  }
}

}  // namespace sim
