#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace veskctl {

/* The exit codes; veskctl.1 lists them. */
enum ExitCode : int {
  kOk = 0,
  kOtherFailure = 1,
  kUsageError = 2,
  kNotRunning = 3,
  kException = 4,
  kTransactionFailed = 5,
  kTimedOut = 6,
};

/** The options that every command has. */
struct Settings {
  bool json = false;
  bool colour = false;
  /** How long to wait for an answer of a service; 0 means no limit. */
  double timeoutSeconds = 5;
};

enum class Style { kHeading, kGood, kBad, kDim };

/** The text, in colour if the settings enable it. */
std::string styled(const Settings& settings, Style style, std::string_view text);

/**
 * Writes to the standard output. If its reader has closed it, the process exits at once with kOk;
 * after any other failure, with kOtherFailure.
 */
void print(std::string_view text);
void flush();

/** Prints "veskctl: message" on the standard error. Returns the exit code. */
int fail(ExitCode code, std::string_view message);

}  // namespace veskctl
