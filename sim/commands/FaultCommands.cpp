#include "commands/FaultCommands.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "clock/ParseTime.h"
#include "common/ParseNumber.h"
#include "console/Output.h"

namespace sim {

namespace {

using android::binder::Status;
using Words = std::vector<std::string>;

struct Reason {
  const char* name;
  int32_t exception;
  android::status_t status;
};

constexpr Reason kReasons[] = {
    {"EX_SECURITY", Status::EX_SECURITY, 0},
    {"EX_BAD_PARCELABLE", Status::EX_BAD_PARCELABLE, 0},
    {"EX_ILLEGAL_ARGUMENT", Status::EX_ILLEGAL_ARGUMENT, 0},
    {"EX_NULL_POINTER", Status::EX_NULL_POINTER, 0},
    {"EX_ILLEGAL_STATE", Status::EX_ILLEGAL_STATE, 0},
    {"EX_UNSUPPORTED_OPERATION", Status::EX_UNSUPPORTED_OPERATION, 0},
    {"DEAD_OBJECT", 0, android::DEAD_OBJECT},
    {"FAILED_TRANSACTION", 0, android::FAILED_TRANSACTION},
    {"UNKNOWN_TRANSACTION", 0, android::UNKNOWN_TRANSACTION},
    {"NO_MEMORY", 0, android::NO_MEMORY},
    {"PERMISSION_DENIED", 0, android::PERMISSION_DENIED},
};

std::optional<size_t> findService(const Words& words, std::string* error) {
  const std::optional<size_t> service = sim::findService(words[0]);
  if (!service) *error = "no service: " + words[0];
  return service;
}

template <Fault::Kind Kind>
std::optional<Command> addFault(const Words& words, std::string* error) {
  const std::optional<size_t> service = findService(words, error);
  if (!service) return std::nullopt;
  Fault fault{.kind = Kind};
  if (Kind == Fault::kFail) fault.exception = Status::EX_ILLEGAL_STATE;
  bool hasDelay = false;
  for (size_t i = 1; i < words.size(); ++i) {
    const std::string& word = words[i];
    const auto& methods = kServices[*service].methods;
    const auto method = std::ranges::find_if(methods, [&](const MethodRow& row) { return row.name == word; });
    const auto reason = std::ranges::find_if(kReasons, [&](const Reason& each) { return each.name == word; });
    const auto& events = kServices[*service].events;
    const auto event = std::ranges::find_if(events, [&](const MethodRow& row) { return row.name == word; });
    if (method != methods.end()) {
      fault.code = method->code;
      if (Kind == Fault::kShort && !answersWithRecord(*method)) {
        *error = word + " answers with no record";
        return std::nullopt;
      }
    } else if (Kind == Fault::kShort && event != events.end()) {
      fault.code = event->code + Fault::kEvent;
      if (!bringsRecord(*event)) {
        *error = word + " brings no record";
        return std::nullopt;
      }
    } else if (word == "always") {
      fault.times = Fault::kAlways;
    } else if (word == "times") {
      const auto times = ++i < words.size() ? parseNumber<int32_t>(words[i]) : std::nullopt;
      if (!times || *times < 1) return std::nullopt;
      fault.times = *times;
    } else if (Kind == Fault::kFail && reason != std::end(kReasons)) {
      fault.exception = reason->exception;
      fault.status = reason->status;
    } else if (const std::optional<Time> delay = parseTime(word); Kind == Fault::kDelay && delay) {
      fault.delay = *delay;
      hasDelay = true;
    } else if (const auto bytes = parseNumber<int32_t>(word);
               Kind == Fault::kShort && bytes && *bytes != 0 && std::abs(*bytes) <= 4096) {
      fault.bytes = *bytes;
    } else {
      *error = "neither a method of " + words[0] + " nor anything else that goes here: " + word;
      return std::nullopt;
    }
  }
  if (Kind == Fault::kDelay && !hasDelay) return std::nullopt;
  return Command{[=](Runner& runner) {
    runner.device().services()[*service]->add(fault);
    return std::string();
  }};
}

}  // namespace

std::optional<size_t> findService(const std::string& name) {
  const auto found = std::ranges::find_if(
      kServices, [&](const ServiceRow& row) { return name == row.shortName || name == row.name; });
  if (found == kServices.end()) return std::nullopt;
  return static_cast<size_t>(found - kServices.begin());
}

std::optional<Command> failCalls(const Words& words, std::string* error) {
  return addFault<Fault::kFail>(words, error);
}
std::optional<Command> delayCalls(const Words& words, std::string* error) {
  return addFault<Fault::kDelay>(words, error);
}
std::optional<Command> distortRecords(const Words& words, std::string* error) {
  return addFault<Fault::kShort>(words, error);
}

std::optional<Command> die(const Words& words, std::string* error) {
  const std::optional<size_t> service = findService(words, error);
  std::optional<Time> pause = Time(1000);
  if (words.size() > 1) pause = words.size() == 3 && words[1] == "for" ? parseTime(words[2]) : std::nullopt;
  if (!service || !pause) return std::nullopt;
  return Command{[=](Runner& runner) {
    const android::sp<FaultInjector> dying = runner.device().services()[*service];
    const uint64_t death = runner.device().kill(*dying);
    runner.after(*pause, [dying, death] {
      // A later death has a pause of its own.
      if (dying->deaths() != death) return;
      if (const android::status_t status = dying->revive(); status != android::OK) {
        Output::self().say(std::string(dying->name()) +
                           " can't come back: " + android::statusToString(status));
      }
    });
    return std::string();
  }};
}

std::optional<Command> heal(const Words& words, std::string* error) {
  std::optional<size_t> only;
  if (!words.empty() && !(only = findService(words, error))) return std::nullopt;
  return Command{[=](Runner& runner) {
    const auto& services = runner.device().services();
    for (size_t i = 0; i < services.size(); ++i) {
      if (!only || *only == i) services[i]->clearFaults();
    }
    return std::string();
  }};
}

}  // namespace sim
