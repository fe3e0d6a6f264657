#include "Output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace veskctl {

namespace {

[[noreturn]] void exitOnWriteError() {
  const int error = errno;
  // Not exit(): its destructors could race with calls on other threads.
  if (error == EPIPE) std::_Exit(kOk);
  fail(kOtherFailure, std::string("can't write: ") + std::strerror(error));
  std::_Exit(kOtherFailure);
}

}  // namespace

std::string styled(const Settings& settings, Style style, std::string_view text) {
  constexpr const char* kCodes[] = {"\033[1m", "\033[32m", "\033[31m", "\033[2m"};
  if (!settings.colour) return std::string(text);
  return kCodes[static_cast<size_t>(style)] + std::string(text) + "\033[0m";
}

void print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) exitOnWriteError();
}

void flush() {
  if (std::fflush(stdout) != 0) exitOnWriteError();
}

int fail(ExitCode code, std::string_view message) {
  std::fprintf(stderr, "veskctl: %.*s\n", static_cast<int>(message.size()), message.data());
  return code;
}

}  // namespace veskctl
