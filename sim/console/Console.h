#pragma once

#include <string>
#include <string_view>

#include "commands/Runner.h"

namespace sim {

/** Runs the commands of an input, line by line. */
class Console {
 public:
  explicit Console(Runner& runner) : runner_(runner) {}

  /** Appends bytes of the input, and runs each complete line. */
  void feed(std::string_view bytes);
  /** Runs a line. */
  void run(const std::string& line);

 private:
  Runner& runner_;
  std::string pending_;
};

}  // namespace sim
