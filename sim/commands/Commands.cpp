#include "commands/Commands.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <utility>

#include "clock/ParseTime.h"
#include "commands/FaultCommands.h"
#include "console/Output.h"

namespace sim {

namespace {

using Words = std::vector<std::string>;

/** Takes the words after the command; nothing if they are not understood. Says why in `error`, if the usage
 * doesn't tell. */
using Parse = std::optional<Command> (*)(const Words& words, std::string* error);

struct CommandRow {
  const char* name;
  const char* arguments;
  const char* help;
  size_t least;
  size_t most;
  Parse parse;
};

constexpr size_t kAny = 1000;

std::string line(const Phone::Refusal& refusal) { return refusal ? *refusal + "\n" : ""; }

Command onPhone(std::function<Phone::Refusal(Phone&)> action) {
  return {[action](Runner& runner) {
    return line(runner.device().phone().use([&](Phone& phone) { return action(phone); }));
  }};
}

Command onMisc(std::function<bool(MiscDevice&)> action) {
  return {[action](Runner& runner) {
    const bool done = runner.device().misc().use([&](MiscDevice& misc) { return action(misc); });
    return std::string(done ? "" : "The device refuses that now\n");
  }};
}

/** The word at `index`, or `otherwise` if there are fewer. */
std::optional<int32_t> number(const Words& words, size_t index, int32_t otherwise = 0) {
  return index < words.size() ? parseNumber<int32_t>(words[index]) : otherwise;
}

std::optional<Command> incoming(const Words& words, std::string* error) {
  const std::optional<int32_t> onLine = number(words, 1);
  if (!onLine) *error = "not a line: " + words[1];
  if (!onLine) return std::nullopt;
  return onPhone([=, caller = words[0]](Phone& phone) { return phone.incomingCall(*onLine, caller); });
}

template <auto Method>
std::optional<Command> farEnd(const Words& words, std::string*) {
  const std::optional<int32_t> chan = number(words, 0);
  if (!chan) return std::nullopt;
  return onPhone([=](Phone& phone) { return (phone.*Method)(*chan); });
}

std::optional<Command> key(const Words& words, std::string*) {
  const std::optional<int32_t> code = number(words, 0);
  const std::string how = words.size() > 1 ? words[1] : "";
  if (!code || (!how.empty() && how != "down" && how != "up")) return std::nullopt;
  return onPhone([=](Phone& phone) -> Phone::Refusal {
    if (how != "up") phone.key(*code, true);
    if (how != "down") phone.key(*code, false);
    return {};
  });
}

std::optional<Command> ring(const Words& words, std::string*) {
  const std::optional<int32_t> value = number(words, 0);
  if (!value) return std::nullopt;
  return onMisc([=](MiscDevice& misc) { return misc.ring(*value), true; });
}

std::optional<Command> screenshot(const Words&, std::string*) {
  return onMisc([](MiscDevice& misc) { return misc.askForScreenshot(), true; });
}

std::optional<Command> scanCancel(const Words&, std::string*) {
  return onMisc([](MiscDevice& misc) { return misc.cancelScan(), true; });
}

std::optional<Command> udisk(const Words& words, std::string*) {
  if (words[0] != "in" && words[0] != "out") return std::nullopt;
  return onMisc([in = words[0] == "in"](MiscDevice& misc) { return misc.putUdisk(in), true; });
}

std::optional<Command> multicast(const Words& words, std::string*) {
  const auto action = words.empty() ? std::nullopt : std::optional(words[0]);
  return onMisc([=](MiscDevice& misc) { return misc.setMulticast(action), true; });
}

std::optional<Command> test(const Words& words, std::string*) {
  const std::optional<int32_t> which = words[0] == "start" ? number(words, 1) : std::nullopt;
  if (which) return onMisc([=](MiscDevice& misc) { return misc.startTest(*which); });
  if (words.size() > 1) return std::nullopt;
  if (words[0] == "stop") return onMisc([](MiscDevice& misc) { return misc.stopTest(); });
  if (words[0] != "passed" && words[0] != "failed") return std::nullopt;
  return onMisc([passed = words[0] == "passed"](MiscDevice& misc) { return misc.touchScreenResult(passed); });
}

std::optional<Command> sms(const Words& words, std::string*) {
  std::string text = words[1];
  for (size_t i = 2; i < words.size(); ++i) text += " " + words[i];
  return Command{[=, from = words[0]](Runner& runner) {
    const bool kept = runner.device().database().receiveSms(1, from, text);
    return std::string(kept ? "" : "The message can't be kept\n");
  }};
}

std::optional<Command> voicemail(const Words& words, std::string*) {
  const std::optional<int32_t> onLine = number(words, 0);
  const std::optional<int32_t> unheard = number(words, 1);
  const std::optional<int32_t> heard = number(words, 2);
  if (!onLine || !unheard || !heard) return std::nullopt;
  return Command{[=](Runner& runner) {
    const bool kept = runner.device().database().setVoiceMail(*onLine, *unheard, *heard);
    return std::string(kept ? "" : "There is no such line, or number of messages\n");
  }};
}

std::optional<Command> relay(const Words& words, std::string*) {
  static constexpr std::string_view kActs[] = {"off", "on", "toggle", "pulse"};
  const std::optional<int32_t> output = number(words, 0);
  const auto act = std::ranges::find(kActs, words[1]);
  if (!output || act == std::end(kActs)) return std::nullopt;
  const RelayActRecord record{
      .device = Relays::kDevice, .output = *output, .act = static_cast<RelayAct>(act - std::begin(kActs))};
  return Command{[=](Runner& runner) {
    const bool done = runner.device().relays().use([&](Relays& relays) { return relays.act(record); });
    return std::string(done ? "" : "There is no such output, or it is disabled\n");
  }};
}

/* The device, and scripts */

std::optional<Command> status(const Words&, std::string*) {
  return Command{[](Runner& runner) {
    std::string text = runner.device().phone().use([](Phone& phone) {
      std::string lines;
      for (const CallInfo& call : phone.calls()) {
        lines += (call.chan == phone.currentChannel() ? "* " : "  ") + toString(call) + "\n";
      }
      return lines + "tone " + std::to_string(phone.tone()) + ", DTMF type " +
             std::to_string(phone.dtmfType()) + ", key multiplexing " +
             (phone.keysMultiplexed() ? "on" : "off") + ", door LED " + (phone.doorLedOn() ? "on" : "off") +
             "\n";
    });
    text += runner.device().misc().use([](MiscDevice& misc) { return misc.describe(); }) + "\n";
    for (const android::sp<FaultInjector>& service : runner.device().services()) text += service->describe();
    return text;
  }};
}

std::optional<Command> directory(const Words&, std::string*) {
  return Command{[](Runner&) {
    std::string text;
    for (const Contact& contact : kDirectory) {
      text += std::string(contact.number) + "  " + std::string(contact.name) + "\n";
    }
    return text;
  }};
}

std::optional<Command> waitFor(const Words& words, std::string*) {
  const std::optional<Time> pause = parseTime(words[0]);
  if (!pause) return std::nullopt;
  return Command{[](Runner&) { return std::string(); }, *pause};
}

std::optional<Command> quit(const Words&, std::string*) {
  return Command{[](Runner& runner) {
    runner.quit();
    return std::string();
  }};
}

std::optional<Command> help(const Words&, std::string*);

constexpr CommandRow kRows[] = {
    {"incoming", "NUMBER [LINE]", "NUMBER calls this phone", 1, 2, incoming},
    {"answer", "[CHANNEL]", "the far end of a call made here answers", 0, 1, farEnd<&Phone::farEndAnswer>},
    {"hangup", "[CHANNEL]", "the far end hangs up", 0, 1, farEnd<&Phone::farEndHangUp>},
    {"engaged", "[CHANNEL]", "the far end is engaged", 0, 1, farEnd<&Phone::farEndEngage>},
    {"key", "CODE [down|up]", "a key is pressed and let go, or one of these", 1, 2, key},
    {"ring", "VALUE", "the wireless key rings", 1, 1, ring},
    {"test", "start [TEST]|stop|passed|failed", "test mode, and how the touch screen did", 1, 2, test},
    {"screenshot", "", "the web asks for a screenshot", 0, 0, screenshot},
    {"sms", "NUMBER TEXT...", "a short message arrives", 2, kAny, sms},
    {"voicemail", "LINE UNHEARD [HEARD]", "so many messages are in the voice mail", 2, 3, voicemail},
    {"relay", "OUTPUT on|off|toggle|pulse", "a relay is switched", 2, 2, relay},
    {"scan-cancel", "", "a scan is cancelled", 0, 0, scanCancel},
    {"udisk", "in|out", "a USB disk is plugged in or pulled out", 1, 1, udisk},
    {"multicast", "[ACTION]", "a multicast comes; without ACTION there is none any more", 0, 1, multicast},
    {"die", "SERVICE [for TIME]", "a service dies, and comes back after TIME (1s)", 1, 3, die},
    {"fail", "SERVICE [METHOD] [times N|always] [REASON]", "the next calls fail", 1, 5, failCalls},
    {"delay", "SERVICE [METHOD] [times N|always] TIME", "the next calls are served later", 2, 5, delayCalls},
    {"short", "SERVICE [METHOD|EVENT] [times N|always] [BYTES]", "the next records have BYTES (-1) more", 1,
     5, distortRecords},
    {"heal", "[SERVICE]", "no more faults", 0, 1, heal},
    {"wait", "TIME", "a script goes on after TIME, which --speed divides", 1, 1, waitFor},
    {"status", "", "show the calls, the faults and what else there is to see", 0, 0, status},
    {"directory", "", "show the numbers that can be called", 0, 0, directory},
    {"help", "", "show this", 0, 0, help},
    {"quit", "", "end the device", 0, 0, quit},
};

std::string usage(const CommandRow& row) {
  return std::string(row.name) + (*row.arguments != '\0' ? " " : "") + row.arguments;
}

std::optional<Command> help(const Words&, std::string*) {
  return Command{[](Runner&) {
    constexpr size_t kColumn = 54;
    std::string text;
    for (const CommandRow& row : kRows) {
      std::string left = usage(row);
      left.resize(std::max(kColumn, left.size() + 2), ' ');
      text += left + row.help + "\n";
    }
    return text;
  }};
}

}  // namespace

void Runner::runTimers() {
  while (!timers_.empty() && timers_.begin()->first <= Clock::now()) {
    const auto due = timers_.extract(timers_.begin());
    due.mapped()();
  }
}

int Runner::untilNext() const {
  if (timers_.empty()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(timers_.begin()->first - Clock::now());
  return static_cast<int>(std::clamp<int64_t>(left.count(), 0, 3'600'000));
}

std::optional<Command> parseCommand(const std::string& text, std::string* error) {
  error->clear();
  std::istringstream stream(text);
  Words words{std::istream_iterator<std::string>(stream), {}};
  if (words.empty() || words[0].starts_with('#')) return std::nullopt;
  const auto row = std::ranges::find(kRows, words[0], &CommandRow::name);
  if (row == std::end(kRows)) {
    *error = "no command: " + words[0] + " ('help' lists them)";
    return std::nullopt;
  }
  words.erase(words.begin());
  std::optional<Command> command;
  if (words.size() >= row->least && words.size() <= row->most) command = row->parse(words, error);
  if (!command && error->empty()) *error = "usage: " + usage(*row);
  return command;
}

std::optional<std::vector<Command>> parseScript(const std::string& path, std::string* error) {
  std::ifstream file(path);
  if (!file) {
    *error = path + ": can't be read";
    return std::nullopt;
  }
  std::vector<Command> script;
  std::string text;
  for (int at = 1; std::getline(file, text); ++at) {
    std::string why;
    if (std::optional<Command> command = parseCommand(text, &why)) {
      script.push_back(std::move(*command));
    } else if (!why.empty()) {
      if (!error->empty()) *error += '\n';
      error->append(path).append(":").append(std::to_string(at)).append(": ").append(why);
    }
  }
  if (file.bad() || !file.eof()) *error = path + ": can't be read";
  if (!error->empty()) return std::nullopt;
  return script;
}

std::vector<std::string> completions(const std::vector<std::string>& words) {
  std::vector<std::string> candidates;
  const auto row = std::ranges::find(kRows, words[0], &CommandRow::name);
  if (words.size() == 1) {
    for (const CommandRow& each : kRows) candidates.emplace_back(each.name);
  } else if (row != std::end(kRows) &&
             std::string_view(row->arguments).find("SERVICE") != std::string::npos) {
    const std::optional<size_t> service = words.size() > 2 ? findService(words[1]) : std::nullopt;
    if (words.size() == 2) {
      for (const ServiceRow& each : kServices) candidates.emplace_back(each.shortName);
    } else if (service && std::string_view(row->arguments).find("METHOD") != std::string::npos) {
      for (const MethodRow& method : kServices[*service].methods) candidates.emplace_back(method.name);
      for (const MethodRow& event : kServices[*service].events) {
        if (row->parse == distortRecords && bringsRecord(event)) candidates.emplace_back(event.name);
      }
    }
  }
  std::erase_if(candidates,
                [&](const std::string& candidate) { return !candidate.starts_with(words.back()); });
  return candidates;
}

void runScript(Runner& runner, std::vector<Command> script) {
  const auto rest = std::make_shared<std::vector<Command>>(std::move(script));
  const auto go = [](auto& self, Runner& on, const std::shared_ptr<std::vector<Command>>& commands,
                     size_t next) -> void {
    for (; next < commands->size() && !on.hasQuit(); ++next) {
      const Command& command = (*commands)[next];
      Output::self().say(command.run(on));
      if (command.wait == Time(0)) continue;
      const auto pause = std::chrono::duration<double, std::milli>(command.wait) / on.speed();
      on.after(std::chrono::ceil<std::chrono::nanoseconds>(pause),
               [&self, &on, commands, next] { self(self, on, commands, next + 1); });
      return;
    }
  };
  static const auto step = go;
  step(step, runner, rest, 0);
}

}  // namespace sim
