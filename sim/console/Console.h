#pragma once

#include <string>
#include <string_view>

#include "commands/Commands.h"

namespace sim {

/** The commands that a person or a program gives the device, line by line. */
class Console {
 public:
  explicit Console(Runner& runner) : runner_(runner) {}

  /** Takes bytes as they come in, and carries out each line that is complete. */
  void feed(std::string_view bytes);
  /** Carries out a line. */
  void run(const std::string& line);

 private:
  Runner& runner_;
  std::string pending_;
};

}  // namespace sim
