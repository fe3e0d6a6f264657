#pragma once

#include <optional>
#include <string>
#include <vector>

#include "clock/TimerQueue.h"

namespace sim {

/** A scheduled incoming call. */
struct IncomingCall {
  Time after;
  std::string number;
  /** 0 for the first registered line. */
  int32_t line = 0;

  bool operator==(const IncomingCall&) const = default;
};

struct Options {
  double speed = 1;
  bool verbose = false;
  /** Empty to keep the state in memory. */
  std::string stateDirectory;
  std::vector<IncomingCall> incoming;
  /** A file of commands; empty for none. */
  std::string script;
};

/** Parses WHEN:NUMBER[:LINE], where WHEN is a time with the unit s or ms. Empty if a part is
 * invalid. */
std::optional<IncomingCall> parseIncomingCall(const std::string& text);

/** Parses the command line. Exits after the help, the version or an error message. */
Options parseCommandLine(int argc, char** argv);

}  // namespace sim
