#include "ShowEvents.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <iterator>

#include "Render.h"
#include "Text.h"

namespace veskctl {

namespace {

sigset_t stopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

/** "17:04:05.123" in local time; for programs "2026-11-23T16:04:05.123Z". */
std::string timeText(const Event& event, bool isForPrograms) {
  using std::chrono::system_clock;
  const std::time_t seconds = system_clock::to_time_t(event.time);
  const auto ms =
      std::chrono::duration_cast<std::chrono::milliseconds>(event.time.time_since_epoch()).count() % 1000;
  std::tm parts{};
  isForPrograms ? gmtime_r(&seconds, &parts) : localtime_r(&seconds, &parts);
  char text[64];
  const size_t length =
      std::strftime(text, sizeof(text), isForPrograms ? "%Y-%m-%dT%H:%M:%S" : "%H:%M:%S", &parts);
  return std::string(text, length) + format(".%03d%s", static_cast<int>(ms), isForPrograms ? "Z" : "");
}

std::string asJson(const Event& event) {
  Json json = {{"time", timeText(event, true)}};
  if (event.method == nullptr) {
    json["service"] = event.service;
    json["state"] = event.state;
    if (!event.reason.empty()) json["reason"] = event.reason;
    return dump(json, -1);
  }
  json["topic"] = event.listener->topic();
  json["event"] = event.method->name;
  Json& arguments = json["arguments"] = Json::object();
  for (size_t i = 0; i < event.arguments.size(); ++i) {
    const Parameter& parameter = event.method->parameters[i];
    arguments[parameter.name] = toJson(parameter, event.arguments[i]);
  }
  return dump(json, -1);
}

std::string describe(const Event& event) {
  if (event.state == "waiting") return event.service + " is not running; waiting for it";
  if (event.state == "died") return event.service + " has died; waiting for it to come back";
  if (event.state == "refused") return event.service + " does not take the listener: " + event.reason;
  return "watching " + event.service;
}

std::string asLine(const Event& event, const Settings& settings) {
  std::string line = styled(settings, Style::kDim, timeText(event, false)) + "  ";
  if (event.method == nullptr) return line + styled(settings, Style::kDim, "-- " + describe(event)) + "\n";
  line += event.listener->topic() + "  " + styled(settings, Style::kHeading, event.method->name);
  for (size_t i = 0; i < event.arguments.size(); ++i) {
    const Parameter& parameter = event.method->parameters[i];
    line += std::string("  ") + parameter.name + "=" + brief(parameter, event.arguments[i]);
  }
  return line + "\n";
}

}  // namespace

void blockSignals() {
  const sigset_t signals = stopSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

int showEvents(EventQueue& queue, const Settings& settings) {
  const sigset_t signals = stopSignals();
  const int signalFd = signalfd(-1, &signals, SFD_CLOEXEC);
  // No events are requested for the output: poll() reports a closed reader in any case.
  pollfd fds[] = {{signalFd, POLLIN, 0}, {queue.fd(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
  while (fds[0].revents == 0 && fds[2].revents == 0) {
    if (poll(fds, std::size(fds), -1) < 0) continue;
    for (const Event& event : queue.take()) {
      print(settings.json ? asJson(event) : asLine(event, settings));
    }
    flush();
  }
  close(signalFd);
  return kOk;
}

}  // namespace veskctl
