#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>

#include "clock/ParseTime.h"
#include "commands/Command.h"
#include "commands/Runner.h"
#include "faults/FaultInjector.h"

namespace sim {

namespace {

using vesk::interfaces::Interface;
using vesk::interfaces::Method;

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

constexpr CommandRow kSessionRows[] = {
    {"wait", "TIME", "pause a script for TIME, divided by --speed", 1, 1, waitFor},
    {"help", "", "show this", 0, 0, help},
    {"quit", "", "end the device", 0, 0, quit},
};

const std::vector<CommandRow>& rows() {
  static const std::vector<CommandRow> all = [] {
    std::vector<CommandRow> joined;
    for (const auto& part : {deskCommands(), faultCommands(), std::span<const CommandRow>(kSessionRows)}) {
      joined.insert(joined.end(), part.begin(), part.end());
    }
    return joined;
  }();
  return all;
}

const CommandRow* findRow(std::string_view name) {
  const auto found = std::ranges::find(rows(), name, &CommandRow::name);
  return found == rows().end() ? nullptr : &*found;
}

std::string usage(const CommandRow& row) {
  return std::string(row.name) + (*row.arguments != '\0' ? " " : "") + row.arguments;
}

std::optional<Command> help(const Words&, std::string*) {
  return Command{[](Runner&) {
    constexpr size_t kColumn = 54;
    std::string text;
    for (const CommandRow& row : rows()) {
      std::string left = usage(row);
      left.resize(std::max(kColumn, left.size() + 2), ' ');
      text += left + row.help + "\n";
    }
    return text;
  }};
}

}  // namespace

std::optional<Command> parseCommand(const std::string& line, std::string* error) {
  error->clear();
  std::istringstream stream(line);
  Words words{std::istream_iterator<std::string>(stream), {}};
  if (words.empty() || words[0].starts_with('#')) return std::nullopt;
  const CommandRow* const row = findRow(words[0]);
  if (row == nullptr) {
    *error = "no command: " + words[0] + " ('help' lists them)";
    return std::nullopt;
  }
  words.erase(words.begin());
  std::optional<Command> command;
  if (words.size() >= row->minWords && words.size() <= row->maxWords) command = row->parse(words, error);
  if (!command && error->empty()) *error = "usage: " + usage(*row);
  return command;
}

std::vector<std::string> completions(const Words& words) {
  std::vector<std::string> candidates;
  const CommandRow* const row = findRow(words[0]);
  const std::string_view arguments = row != nullptr ? row->arguments : "";
  if (words.size() == 1) {
    for (const CommandRow& each : rows()) candidates.emplace_back(each.name);
  } else if (words.size() == 2 && arguments.find("SERVICE") != std::string::npos) {
    for (const Interface& each : vesk::interfaces::services()) candidates.emplace_back(each.name);
  } else if (const Interface* service = vesk::interfaces::findService(words[1]);
             service != nullptr && arguments.find("METHOD") != std::string::npos) {
    for (const Method& method : service->methods) candidates.emplace_back(method.name);
    const bool takesEvent = arguments.find("EVENT") != std::string::npos;
    if (const Interface* events = takesEvent ? eventsOf(*service) : nullptr) {
      for (const Method& event : events->methods) {
        if (event.takesRecord()) candidates.emplace_back(event.name);
      }
    }
  }
  std::erase_if(candidates, [&](const std::string& each) { return !each.starts_with(words.back()); });
  return candidates;
}

}  // namespace sim
