#pragma once

#include <optional>
#include <string>
#include <vector>

#include "clock/TimerQueue.h"

namespace sim {

/** A call that comes in by itself. */
struct IncomingCall {
  Time after;
  std::string number;
  /** 0 for the first registered one. */
  int32_t line = 0;

  bool operator==(const IncomingCall&) const = default;
};

struct Options {
  double speed = 1;
  bool verbose = false;
  /** Where the device keeps its state; none if it keeps nothing. */
  std::string stateDirectory;
  std::vector<IncomingCall> incoming;
  /** A file of commands; none if it is empty. */
  std::string script;
};

/** Reads WHEN:NUMBER[:LINE], WHEN being a number with the unit s or ms; nothing if the phone can't be called
 * so. */
std::optional<IncomingCall> parseIncomingCall(const std::string& text);

/** Reads the command line. Prints the help, the version or an error and ends the program where they ask for
 * that. */
Options parseCommandLine(int argc, char** argv);

}  // namespace sim
