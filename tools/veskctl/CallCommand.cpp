#include <binder/ProcessState.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <span>

#include "Background.h"
#include "Binder.h"
#include "Commands.h"
#include "Events.h"
#include "Render.h"
#include "ShowEvents.h"
#include "StatusText.h"

/* The command call. */
namespace veskctl {

namespace {

/** The arguments for a listener: null, or one that prints its events. */
constexpr const char* kNoListener = "-";
constexpr const char* kWatch = "@watch";

/** A parsed command line. */
struct Call {
  const Interface* interface;
  const Method* method;
  std::vector<Value> ins;
  /** Set if an argument is @watch: receives its events. */
  std::shared_ptr<EventQueue> events;
};

const Interface* listenerOf(const Parameter& parameter) {
  const auto isWanted = [&](const Interface& listener) {
    return parameter.listener == "I" + std::string(listener.className);
  };
  return &*std::ranges::find_if(interfaces::listeners(), isWanted);
}

std::optional<Value> parseListener(const Parameter& parameter, const std::string& text, Call* call,
                                   std::string* error) {
  if (text == kNoListener) return android::sp<android::IBinder>();
  if (text != kWatch) {
    *error =
        "'" + text + "' is not a listener: " + kNoListener + " for none, " + kWatch + " to print its events";
    return std::nullopt;
  }
  if (call->events == nullptr) call->events = std::make_shared<EventQueue>();
  return android::sp<android::IBinder>(new EventListener(*listenerOf(parameter), call->events));
}

bool parseArguments(std::span<const std::string> words, Call* call, std::string* error) {
  const std::span<const Parameter> ins = call->method->ins();
  if (words.size() != ins.size()) {
    const auto count = [](size_t n) { return std::to_string(n) + (n == 1 ? " argument" : " arguments"); };
    *error = count(ins.size()) + " expected, " + std::to_string(words.size()) + " given";
    if (words.size() > ins.size() && words.back().starts_with("--")) {
      *error += "; options must precede the service";
    }
    return false;
  }
  for (size_t i = 0; i < ins.size(); ++i) {
    const bool isListener = ins[i].type == Type::kListener;
    std::optional<Value> value =
        isListener ? parseListener(ins[i], words[i], call, error) : parse(ins[i].type, words[i], error);
    if (!value) {
      *error = std::string(ins[i].name) + ": " + *error;
      return false;
    }
    call->ins.push_back(std::move(*value));
  }
  return true;
}

void printAnswer(const Call& call, const std::string& serviceName, const Answer& answer,
                 const Settings& settings) {
  const std::span<const Parameter> outs = call.method->outs();
  if (settings.json) {
    Json json = {{"service", serviceName}, {"method", call.method->name}, {"code", call.method->code}};
    json["status"] = toJson(answer.status);
    json["out"] = Json::array();
    for (size_t i = 0; i < answer.outs.size(); ++i) {
      json["out"].push_back({{"name", outs[i].name},
                             {"type", nameOf(outs[i].type)},
                             {"value", toJson(outs[i], answer.outs[i])}});
    }
    // One line before those of the events that follow with @watch.
    print(dump(json, call.events == nullptr ? 2 : -1));
    return;
  }
  const Style style = answer.status.isOk() ? Style::kGood : Style::kBad;
  print(styled(settings, style, toText(answer.status)) + "\n");
  size_t width = 0;
  for (const Parameter& out : outs) width = std::max(width, std::strlen(out.name));
  for (size_t i = 0; i < answer.outs.size(); ++i) print(inFull(outs[i], answer.outs[i], width));
}

int exitCodeOf(const android::binder::Status& status) {
  if (status.isOk()) return kOk;
  return status.transactionError() != android::OK ? kTransactionFailed : kException;
}

}  // namespace

int callMethod(const std::vector<std::string>& words, const std::string& at, const Settings& settings) {
  std::string error;
  Call call{};
  if (words.empty()) return fail(kUsageError, "call: SERVICE and METHOD are missing");
  if (words[0].starts_with('-')) return fail(kUsageError, "call: there is no option '" + words[0] + "'");
  call.interface = findInterface(interfaces::all(), words[0], &error);
  if (call.interface == nullptr) return fail(kUsageError, error);
  if (words.size() < 2)
    return fail(kUsageError, "call: no method of " + call.interface->descriptor() + " is given");
  call.method = findMethod(*call.interface, words[1], &error);
  if (call.method == nullptr) return fail(kUsageError, error);
  if (!parseArguments(std::span(words).subspan(2), &call, &error)) {
    return fail(kUsageError, error + "\n  " + call.method->signature());
  }

  const std::string serviceName = at.empty() ? call.interface->serviceName() : at;
  if (call.events != nullptr) {
    blockSignals();
    android::ProcessState::self()->startThreadPool();
  }
  // Without a value if there is no such service.
  Background<std::optional<Answer>> background([=]() -> std::optional<Answer> {
    const android::sp<android::IBinder> binder = findService(serviceName);
    if (binder == nullptr) return std::nullopt;
    return transact(*binder, *call.interface, *call.method, call.ins);
  });
  const std::optional<std::optional<Answer>> answer =
      background.waitUntil(deadlineAfter(settings.timeoutSeconds));
  if (!answer) return fail(kTimedOut, serviceName + ": no answer in time; the call may still take effect");
  if (!*answer) return failNotRunning(serviceName);
  printAnswer(call, serviceName, **answer, settings);
  flush();
  const int exitCode = exitCodeOf((*answer)->status);
  return exitCode == kOk && call.events != nullptr ? showEvents(*call.events, settings) : exitCode;
}

}  // namespace veskctl
