#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "Device.h"
#include "clock/ParseTime.h"
#include "commands/Command.h"
#include "commands/Runner.h"
#include "common/ParseNumber.h"
#include "console/Output.h"

/* The commands that inject faults into services, and clear them. */
namespace sim {

namespace {

using android::binder::Status;
using vesk::interfaces::Interface;
using vesk::interfaces::Method;

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

const Interface* findService(const std::string& name, std::string* error) {
  const Interface* service = vesk::interfaces::findService(name);
  if (service == nullptr) *error = "no service: " + name;
  return service;
}

/** False, with the reason in `error`, if no fault of that kind can have the target. */
bool setTarget(const Method* target, const char* why, Fault* fault, std::string* error) {
  fault->target = target;
  if (why != nullptr) *error = std::string(target->name) + why;
  return why == nullptr;
}

template <Fault::Kind Kind>
std::optional<Command> addFault(const Words& words, std::string* error) {
  const Interface* service = findService(words[0], error);
  if (service == nullptr) return std::nullopt;
  const Interface* events = Kind == Fault::kShort ? eventsOf(*service) : nullptr;
  Fault fault{.kind = Kind};
  if (Kind == Fault::kFail) fault.exception = Status::EX_ILLEGAL_STATE;
  bool hasDelay = false;
  for (size_t i = 1; i < words.size(); ++i) {
    const std::string& word = words[i];
    const auto reason = std::ranges::find_if(kReasons, [&](const Reason& each) { return each.name == word; });
    if (const Method* method = service->find(word)) {
      const bool suits = Kind != Fault::kShort || method->returnsRecord();
      if (!setTarget(method, suits ? nullptr : " returns no record", &fault, error)) return std::nullopt;
    } else if (const Method* event = events != nullptr ? events->find(word) : nullptr) {
      const bool suits = event->takesRecord();
      if (!setTarget(event, suits ? nullptr : " has no record", &fault, error)) return std::nullopt;
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
      *error = "neither a method of " + words[0] + " nor another valid argument: " + word;
      return std::nullopt;
    }
  }
  if (Kind == Fault::kDelay && !hasDelay) return std::nullopt;
  return Command{[=](Runner& runner) {
    runner.device().service(*service).add(fault);
    return std::string();
  }};
}

std::optional<Command> die(const Words& words, std::string* error) {
  const Interface* service = findService(words[0], error);
  std::optional<Time> pause = Time(1000);
  if (words.size() > 1) pause = words.size() == 3 && words[1] == "for" ? parseTime(words[2]) : std::nullopt;
  if (service == nullptr || !pause) return std::nullopt;
  return Command{[=](Runner& runner) {
    const android::sp<FaultInjector> dying = &runner.device().service(*service);
    const uint64_t death = runner.device().kill(*dying);
    runner.after(*pause, [dying, death] {
      // After a later death, the service returns at the end of that one's pause.
      if (dying->deaths() != death) return;
      if (const android::status_t status = dying->registerService(); status != android::OK) {
        Output::self().say(dying->interface().serviceName() +
                           " can't be registered again: " + android::statusToString(status) + "\n");
      }
    });
    return std::string();
  }};
}

std::optional<Command> clearFaults(const Words& words, std::string* error) {
  const Interface* only = words.empty() ? nullptr : findService(words[0], error);
  if (!error->empty()) return std::nullopt;
  return Command{[=](Runner& runner) {
    for (const android::sp<FaultInjector>& service : runner.device().services()) {
      if (only == nullptr || only == &service->interface()) service->clearFaults();
    }
    return std::string();
  }};
}

constexpr CommandRow kRows[] = {
    {"die", "SERVICE [for TIME]", "a service dies, and is registered again after TIME (1s)", 1, 3, die},
    {"fail", "SERVICE [METHOD] [times N|always] [REASON]", "fail the next calls", 1, 5,
     addFault<Fault::kFail>},
    {"delay", "SERVICE [METHOD] [times N|always] TIME", "delay the next calls", 2, 5,
     addFault<Fault::kDelay>},
    {"short", "SERVICE [METHOD|EVENT] [times N|always] [BYTES]", "change the length of records by BYTES (-1)",
     1, 5, addFault<Fault::kShort>},
    {"heal", "[SERVICE]", "clear all faults", 0, 1, clearFaults},
};

}  // namespace

std::span<const CommandRow> faultCommands() { return kRows; }

}  // namespace sim
