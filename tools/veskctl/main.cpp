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
    "  0  success\n"
    "  1  another failure, such as a full disk\n"
    "  2  invalid command line\n"
    "  3  no such service is running\n"
    "  4  the service answered with an exception\n"
    "  5  the transaction failed\n"
    "  6  no answer in time\n"
    "\n"
    "See veskctl(1) for details.";

/** Adds the command's arguments to the usage line: the parser does not know all of them. */
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

/** The options of every command. They may also precede its name. */
void addSettings(CLI::App& app, Settings& settings, std::string& colour) {
  app.add_flag("--json", settings.json, "Print JSON");
  app.add_option("--timeout", settings.timeoutSeconds,
                 "Seconds to wait for an answer (default 5); 0 for no limit")
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

  CLI::App app("Inspects the services of a device, calls their methods and prints their events.", "veskctl");
  app.formatter(std::make_shared<Formatter>());
  app.footer(kExitCodes);
  app.get_option("--help")->description("Print this and exit");
  app.set_version_flag("--version", "veskctl " VESK_VERSION, "Print the version and exit");
  app.require_subcommand(0, 1);
  // Unknown words are reported below, with clearer messages than the parser has.
  app.allow_extras();

  CLI::App* list = app.add_subcommand("list", "List the services with their states and processes");
  CLI::App* methods = app.add_subcommand("methods", "List the methods with their parameters");
  methods->add_option("INTERFACE", interface, "A service or a listener; default: all");
  CLI::App* call = app.add_subcommand("call", "Call a method and print its results");
  call->add_option("--at", at, "Look the service up by this name instead of its own")->type_name("NAME");
  call->prefix_command();
  CLI::App* watch = app.add_subcommand("watch", "Print events until SIGINT or SIGTERM");
  watch->add_option("TOPIC", names, "call, misc or test; default: all");
  CLI::App* ping = app.add_subcommand("ping", "Check whether services answer, and how fast");
  ping->add_option("SERVICE", names, "Default: all");
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

  if (const std::vector<std::string> unknown = app.remaining(); !unknown.empty()) {
    return failWithHint((unknown[0].starts_with('-') ? "there is no option '" : "there is no command '") +
                        unknown[0] + "'");
  }
  if (app.get_subcommands().empty()) return failWithHint("no command is given");

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
  // print() handles a closed output.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    // Out of memory, or of threads.
    return veskctl::fail(veskctl::kOtherFailure, failure.what());
  }
}
