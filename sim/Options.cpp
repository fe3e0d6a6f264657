#include "Options.h"

#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "ParseNumber.h"
#include "phone/Phone.h"

namespace sim {

namespace {

constexpr int kUsageError = 2;
constexpr const char* kTryHelp = "Try 'vesk-device --help'.\n";

constexpr const char* kHelp =
    R"(Usage: vesk-device [OPTION]...

A simulated device: the six services of a desk telephone and door intercom, in one process. Prints "ready"
once applications can connect; ends on SIGINT and SIGTERM.

  -i, --incoming=WHEN:NUMBER[:LINE]  NUMBER calls (LINE) after WHEN, for example 3s:200 or 500ms:201:2;
                                     may be given several times
  -s, --speed=FACTOR                 let time pass FACTOR times as fast, from 0.01 to 1000
      --state=DIRECTORY              keep what is saved in DIRECTORY, which is made if need be; without it,
                                     nothing outlives the device
  -v, --verbose                      print each event
  -h, --help                         print this and exit
      --version                      print the version and exit

Commands are read from the standard input while it is open; "help" lists them.

Environment:
  BINDER_RUNTIME_DIR  where services and applications meet; devices with different directories don't
                      know of each other
)";

std::optional<Time> parseTime(std::string_view text) {
  constexpr double kLimitMs = 1e9;
  double unit = 0;
  if (text.ends_with("ms")) {
    unit = 1;
    text.remove_suffix(2);
  } else if (text.ends_with("s")) {
    unit = 1000;
    text.remove_suffix(1);
  }
  const std::optional<double> number = parseNumber<double>(text);
  if (unit == 0 || !number || !(*number >= 0 && *number * unit <= kLimitMs)) return std::nullopt;
  return Time(static_cast<Time::rep>(*number * unit));
}

[[noreturn]] void usageError(const std::string& message) {
  std::fprintf(stderr, "vesk-device: %s\n%s", message.c_str(), kTryHelp);
  std::exit(kUsageError);
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
  constexpr int kVersion = 256;
  constexpr int kState = 257;
  constexpr option kOptions[] = {
      {"incoming", required_argument, nullptr, 'i'},
      {"speed", required_argument, nullptr, 's'},
      {"verbose", no_argument, nullptr, 'v'},
      {"help", no_argument, nullptr, 'h'},
      {"version", no_argument, nullptr, kVersion},
      {"state", required_argument, nullptr, kState},
      {nullptr, 0, nullptr, 0},
  };
  Options options;
  int letter;
  while ((letter = getopt_long(argc, argv, "i:s:vh", kOptions, nullptr)) != -1) {
    switch (letter) {
      case 'i': {
        const std::optional<IncomingCall> call = parseIncomingCall(optarg);
        if (!call)
          usageError("--incoming: '" + std::string(optarg) + "' is not WHEN:NUMBER[:LINE], as in 3s:200:1");
        options.incoming.push_back(*call);
        break;
      }
      case 's': {
        const std::optional<double> speed = parseNumber<double>(optarg);
        if (!speed || !(*speed >= 0.01 && *speed <= 1000)) {
          usageError("--speed: '" + std::string(optarg) + "' is not a number from 0.01 to 1000");
        }
        options.speed = *speed;
        break;
      }
      case kState:
        if (*optarg == '\0') usageError("--state: needs a directory");
        options.stateDirectory = optarg;
        break;
      case 'v':
        options.verbose = true;
        break;
      case 'h':
        std::fputs(kHelp, stdout);
        std::exit(EXIT_SUCCESS);
      case kVersion:
        std::puts("vesk-device " VESK_VERSION);
        std::exit(EXIT_SUCCESS);
      default:
        // getopt_long has said what is wrong.
        std::fputs(kTryHelp, stderr);
        std::exit(kUsageError);
    }
  }
  if (optind < argc) usageError("unexpected argument '" + std::string(argv[optind]) + "'");
  return options;
}

}  // namespace sim
