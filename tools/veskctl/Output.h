#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace veskctl {

/* What the program exits with; veskctl.1 lists them. */
enum ExitCode : int {
  kOk = 0,
  kOtherFailure = 1,
  kUsageError = 2,
  kNotRunning = 3,
  kException = 4,
  kTransactionFailed = 5,
  kTimedOut = 6,
};

/** What the command line says for every command. */
struct Settings {
  bool json = false;
  bool colour = false;
  /** For an answer of a service; 0 waits for ever. */
  double timeoutSeconds = 5;
};

enum class Style { kHead, kGood, kBad, kDim };

/** The text in colour if the settings say so. */
std::string styled(const Settings& settings, Style style, std::string_view text);

/**
 * Writes to the standard output. Whoever reads it may stop reading: the program then ends at once, and well.
 * Another failure ends it with kOtherFailure.
 */
void print(std::string_view text);
void flush();

/** "veskctl: message" on the standard error; gives the exit code back. */
int fail(ExitCode code, std::string_view message);

}  // namespace veskctl
