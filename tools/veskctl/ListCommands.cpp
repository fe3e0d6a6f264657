#include <cstdlib>
#include <optional>
#include <span>
#include <vector>

#include "Background.h"
#include "Binder.h"
#include "Commands.h"
#include "Json.h"
#include "Names.h"
#include "Text.h"

/* The commands list, ping and methods. */
namespace veskctl {

namespace {

/** A service and its state, which is not set if the service does not answer in time. */
struct Inspected {
  const Interface* service;
  std::optional<ServiceState> found;

  const char* state() const { return !found ? "no answer" : found->isAlive ? "alive" : "absent"; }
  bool isAlive() const { return found && found->isAlive; }
};

/** In parallel: several services that hang cost one timeout. */
std::vector<Inspected> inspectAll(const std::vector<const Interface*>& services, double timeoutSeconds) {
  std::vector<Background<ServiceState>> pending;
  pending.reserve(services.size());
  for (const Interface* service : services) {
    pending.emplace_back([name = service->serviceName()] { return inspect(name); });
  }
  const Clock::time_point deadline = deadlineAfter(timeoutSeconds);
  std::vector<Inspected> inspected;
  for (size_t i = 0; i < services.size(); ++i) {
    inspected.push_back({services[i], pending[i].waitUntil(deadline)});
  }
  return inspected;
}

std::vector<const Interface*> allServices() {
  std::vector<const Interface*> all;
  for (const Interface& service : interfaces::services()) all.push_back(&service);
  return all;
}

std::string stateOf(const Inspected& inspected, const Settings& settings) {
  return styled(settings, inspected.isAlive() ? Style::kGood : Style::kBad,
                format("%-9s", inspected.state()));
}

Json toJson(std::span<const Parameter> parameters) {
  Json list = Json::array();
  for (const Parameter& parameter : parameters) {
    Json entry = {{"name", parameter.name}, {"type", nameOf(parameter.type)}};
    if (!parameter.listener.empty()) entry["listener"] = std::string(parameter.listener);
    list.push_back(std::move(entry));
  }
  return list;
}

Json toJson(const Interface& interface) {
  Json json = {{"name", interface.name}, {"interface", interface.descriptor()}};
  if (!interface.isListener()) json["service"] = interface.serviceName();
  json["methods"] = Json::array();
  for (const Method& method : interface.methods) {
    json["methods"].push_back({{"code", method.code},
                               {"name", method.name},
                               {"signature", method.signature()},
                               {"in", toJson(method.ins())},
                               {"out", toJson(method.outs())}});
  }
  return json;
}

}  // namespace

int failNotRunning(const std::string& serviceName) {
  std::string message = serviceName + ": no such service is running";
#ifdef VESKCTL_RUNTIME_DIR_HINT
  const char* directory = std::getenv("BINDER_RUNTIME_DIR");
  message += directory == nullptr ? "; BINDER_RUNTIME_DIR is not set: is it where the service runs?"
                                  : std::string("; BINDER_RUNTIME_DIR is '") + directory +
                                        "', is it the same where the service runs?";
#endif
  return fail(kNotRunning, message);
}

int listServices(const Settings& settings) {
  Json list = Json::array();
  if (!settings.json) {
    const std::string head = "NAME         SERVICE                    STATE          PID  METHODS  INTERFACE";
    print(styled(settings, Style::kHeading, head) + "\n");
  }
  for (const Inspected& each : inspectAll(allServices(), settings.timeoutSeconds)) {
    const Interface& service = *each.service;
    const std::string name = service.serviceName();
    const pid_t pid = each.found ? each.found->pid.value_or(0) : 0;
    if (settings.json) {
      Json entry = {{"name", service.name}, {"service", name},      {"state", each.state()},
                    {"pid", nullptr},       {"interface", nullptr}, {"methods", service.methods.size()}};
      if (pid != 0) entry["pid"] = pid;
      if (each.isAlive()) entry["interface"] = each.found->descriptor;
      list.push_back(std::move(entry));
    } else {
      print(format("%-11s  %-25s  %s  %7s  %7zu  %s\n", service.name, name.c_str(),
                   stateOf(each, settings).c_str(), pid != 0 ? std::to_string(pid).c_str() : "-",
                   service.methods.size(), each.isAlive() ? each.found->descriptor.c_str() : "-"));
    }
  }
  if (settings.json) print(dump(list, 2));
  return kOk;
}

int pingServices(const std::vector<std::string>& names, const Settings& settings) {
  std::vector<const Interface*> wanted;
  for (const std::string& name : names) {
    std::string error;
    const Interface* service = findInterface(interfaces::services(), name, &error);
    if (service == nullptr) return fail(kUsageError, error);
    wanted.push_back(service);
  }
  if (wanted.empty()) wanted = allServices();

  int exitCode = kOk;
  Json list = Json::array();
  for (const Inspected& each : inspectAll(wanted, settings.timeoutSeconds)) {
    const std::string name = each.service->serviceName();
    if (!each.found) {
      exitCode = kTimedOut;
    } else if (!each.isAlive() && exitCode == kOk) {
      exitCode = kNotRunning;
    }
    if (settings.json) {
      Json entry = {{"service", name}, {"state", each.state()}, {"milliseconds", nullptr}};
      if (each.isAlive()) entry["milliseconds"] = each.found->roundTrip.count();
      list.push_back(std::move(entry));
    } else if (each.isAlive()) {
      print(format("%-25s  %s  %.3f ms\n", name.c_str(), stateOf(each, settings).c_str(),
                   each.found->roundTrip.count()));
    } else {
      print(format("%-25s  %s\n", name.c_str(), styled(settings, Style::kBad, each.state()).c_str()));
    }
  }
  if (settings.json) print(dump(list, 2));
  return exitCode;
}

int listMethods(const std::string& name, const Settings& settings) {
  std::span<const Interface> wanted = interfaces::all();
  if (!name.empty()) {
    std::string error;
    const Interface* interface = findInterface(interfaces::all(), name, &error);
    if (interface == nullptr) return fail(kUsageError, error);
    wanted = {interface, 1};
  }
  Json list = Json::array();
  for (const Interface& interface : wanted) {
    if (settings.json) {
      list.push_back(toJson(interface));
      continue;
    }
    print(styled(settings, Style::kHeading, interface.name) + "  " + interface.descriptor() + ", " +
          std::to_string(interface.methods.size()) + " methods\n");
    for (const Method& method : interface.methods)
      print(format("%5u  %s\n", method.code, method.signature().c_str()));
  }
  if (settings.json) print(dump(list, 2));
  return kOk;
}

}  // namespace veskctl
