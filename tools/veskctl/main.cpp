#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"

namespace {

using veskctl::Settings;

constexpr const char* kExitCodes =
    "Exit codes:\n"
    "  0  done\n"
    "  1  another failure, such as an output that can't be written\n"
    "  2  the command line makes no sense\n"
    "  3  no such service is running\n"
    "  4  the service answered with an exception\n"
    "  5  the transaction failed\n"
    "  6  no answer in time\n"
    "\n"
    "veskctl(1) tells more.";

/** Help with the command's arguments in its first line, as they are not all known to the parser. */
class Formatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string name) const override {
    std::string usage = "Usage: " + name + " [OPTION]...";
    const std::string& command = app->get_name();
    if (command.empty() || app->get_parent() == nullptr) usage += " COMMAND";
    if (command == "methods") usage += " [INTERFACE]";
    if (command == "ping") usage += " [SERVICE]...";
    if (command == "watch") usage += " [TOPIC]...";
    if (command == "call") usage += " SERVICE METHOD [ARGUMENT]...";
    return usage + "\n";
  }
};

/** The options of every command, which may stand before its name, too. */
void addSettings(CLI::App& app, Settings& settings, std::string& colour) {
  app.add_flag("--json", settings.json, "Print JSON, for programs");
  app.add_option("--timeout", settings.timeoutSeconds,
                 "Seconds to wait for an answer, 5 at first; 0 for ever")
      ->type_name("SECONDS")
      ->check([](const std::string& text) {
        double seconds = 0;
        const bool isGood = CLI::detail::lexical_cast(text, seconds) && std::isfinite(seconds) &&
                            seconds >= 0 && seconds <= 1e6;
        return isGood ? std::string() : "'" + text + "' is not a number of seconds";
      });
  app.add_option("--color,--colour", colour, "Colours: auto (on a terminal), always or never")
      ->type_name("WHEN")
      ->check([](const std::string& when) {
        const bool isGood = when == "auto" || when == "always" || when == "never";
        return isGood ? std::string() : "'" + when + "' is none of auto, always and never";
      });
}

bool wantsColour(const std::string& when) {
  if (when != "auto") return when == "always";
  const char* const noColour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return (noColour == nullptr || *noColour == '\0') && isatty(STDOUT_FILENO) == 1 && terminal != nullptr &&
         std::string(terminal) != "dumb";
}

int failWithHint(const std::string& message) {
  return veskctl::fail(veskctl::kUsageError, message + "\nTry 'veskctl --help'.");
}

int run(int argc, char** argv) {
  Settings settings;
  std::string colour = "auto";
  std::string interface;
  std::string at;
  std::vector<std::string> names;

  CLI::App app("Looks at the device's services and calls them.", "veskctl");
  app.formatter(std::make_shared<Formatter>());
  app.footer(kExitCodes);
  app.get_option("--help")->description("Print this and exit");
  app.set_version_flag("--version", "veskctl " VESK_VERSION, "Print the version and exit");
  app.require_subcommand(0, 1);
  // To be told of below, more clearly than the parser would.
  app.allow_extras();

  CLI::App* list = app.add_subcommand("list", "List the services: whether they are alive, their processes");
  CLI::App* methods =
      app.add_subcommand("methods", "List what can be called, with types and names of the arguments");
  methods->add_option("INTERFACE", interface,
                      "A service, or the listener of its events; all if none is named");
  CLI::App* call = app.add_subcommand("call", "Call a method and print what comes back");
  call->add_option("--at", at, "Look for the service under this name instead of its own")->type_name("NAME");
  call->prefix_command();
  CLI::App* watch = app.add_subcommand("watch", "Print events as they come, until SIGINT or SIGTERM");
  watch->add_option("TOPIC", names, "call, misc or test; all if none is named");
  CLI::App* ping = app.add_subcommand("ping", "See whether services answer, and how fast");
  ping->add_option("SERVICE", names, "All if none is named");
  for (CLI::App* each : {list, methods, call, watch, ping}) each->allow_extras(false);
  for (CLI::App* each : {&app, list, methods, call, watch, ping}) addSettings(*each, settings, colour);

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    app.exit(success);
    veskctl::flush();
    return veskctl::kOk;
  } catch (const CLI::ParseError& error) {
    return failWithHint(error.what());
  }

  if (const std::vector<std::string> strangers = app.remaining(); !strangers.empty()) {
    return failWithHint((strangers[0].starts_with('-') ? "there is no option '" : "there is no command '") +
                        strangers[0] + "'");
  }
  if (app.get_subcommands().empty()) return failWithHint("which command?");

  settings.colour = wantsColour(colour);
  int exitCode = veskctl::kOk;
  if (list->parsed()) exitCode = veskctl::listServices(settings);
  if (methods->parsed()) exitCode = veskctl::listMethods(interface, settings);
  if (call->parsed()) exitCode = veskctl::callMethod(call->remaining(), at, settings);
  if (watch->parsed()) exitCode = veskctl::watchEvents(names, settings);
  if (ping->parsed()) exitCode = veskctl::pingServices(names, settings);
  veskctl::flush();
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader of the output that goes away is no reason to die; print() sees to it.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    // No memory, or no thread.
    return veskctl::fail(veskctl::kOtherFailure, failure.what());
  }
}
