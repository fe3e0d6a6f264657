#include "Options.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "clock/ParseTime.h"
#include "phone/Phone.h"

namespace sim {

namespace {

constexpr int kUsageError = 2;

constexpr const char* kAbout =
    "A simulated device: the six services of a desk telephone and door intercom, in one process. Prints "
    "\"ready\"\n"
    "once applications can connect; ends on SIGINT and SIGTERM.";

constexpr const char* kFooter =
    "Commands are read from the standard input while it is open; \"help\" lists them.\n\n"
    "Environment:\n"
    "  BINDER_RUNTIME_DIR  the directory of the services' sockets; devices with different directories are\n"
    "                      independent of each other\n"
    "  XDG_STATE_HOME      the directory of vesk-device/history, the history of the prompt "
    "(~/.local/state)\n\n"
    "Exit codes: 0 ended by a command or signal, 1 can't serve or use its state, 2 invalid command line or "
    "script.";

std::optional<double> parseSpeed(std::string_view text) {
  const std::optional<double> speed = parseNumber<double>(text);
  return speed && *speed >= 0.01 && *speed <= 1000 ? speed : std::nullopt;
}

}  // namespace

std::optional<IncomingCall> parseIncomingCall(const std::string& text) {
  const std::string_view all = text;
  const size_t first = all.find(':');
  if (first == std::string_view::npos) return std::nullopt;
  const size_t second = all.find(':', first + 1);
  const std::optional<Time> after = parseTime(all.substr(0, first));
  const std::string_view number = all.substr(first + 1, second - first - 1);
  const std::optional<int32_t> line =
      second == std::string_view::npos ? 0 : parseNumber<int32_t>(all.substr(second + 1));
  if (!after || number.empty() || number.size() > kMaxNumberLength || !line) return std::nullopt;
  if (*line != 0 && !Phone::isRegistered(*line)) return std::nullopt;
  return IncomingCall{*after, std::string(number), *line};
}

Options parseCommandLine(int argc, char** argv) {
  Options options;
  CLI::App app(kAbout, "vesk-device");
  app.footer(kFooter);
  app.get_formatter()->column_width(36);
  app.set_help_flag("-h,--help", "Print this and exit");
  app.set_version_flag("--version", "vesk-device " VESK_VERSION)->description("Print the version and exit");
  app.add_option("-i,--incoming")
      ->type_name("WHEN:NUMBER[:LINE]")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->description("NUMBER calls (LINE) after WHEN, as in 3s:200 or 500ms:201:2; may be given several times")
      ->each([&options](const std::string& text) {
        if (const auto call = parseIncomingCall(text)) options.incoming.push_back(*call);
      })
      ->check([](const std::string& text) {
        return parseIncomingCall(text) ? "" : "'" + text + "' is not WHEN:NUMBER[:LINE], as in 3s:200:1";
      });
  app.add_option("-s,--speed")
      ->type_name("FACTOR")
      ->description("Let time pass FACTOR times as fast, from 0.01 to 1000")
      ->expected(1)
      ->each([&options](const std::string& text) { options.speed = parseSpeed(text).value_or(1); })
      ->check([](const std::string& text) {
        return parseSpeed(text) ? "" : "'" + text + "' is not a number from 0.01 to 1000";
      });
  const auto notEmpty = [](const std::string& text) { return std::string(text.empty() ? "is empty" : ""); };
  app.add_option("--state", options.stateDirectory,
                 "Keep the state in DIRECTORY, which is created if missing; without it, in memory")
      ->type_name("DIRECTORY")
      ->check(notEmpty);
  app.add_option("--script", options.script, "Run the commands in FILE once applications can connect")
      ->type_name("FILE")
      ->check(notEmpty);
  app.add_flag("-v,--verbose", options.verbose, "Print each event");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) std::exit(app.exit(error));
    std::fprintf(stderr, "vesk-device: %s\nTry 'vesk-device --help'.\n", error.what());
    std::exit(kUsageError);
  }
  return options;
}

}  // namespace sim
