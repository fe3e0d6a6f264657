#include "Console.h"

#include <cstdio>
#include <iterator>
#include <sstream>
#include <vector>

#include "ParseNumber.h"

namespace sim {

namespace {

constexpr const char* kHelp =
    "incoming NUMBER [LINE]  NUMBER calls this phone\n"
    "screenshot              ask for a screenshot over the web\n"
    "ring VALUE              the wireless key rings\n"
    "scan-cancel             a scan is cancelled\n"
    "udisk in|out            plug a USB disk in, or pull it out\n"
    "multicast [ACTION]      a multicast comes; without ACTION, there is none any more\n"
    "status                  show the calls and what else there is to see and hear\n"
    "directory               show the numbers that can be called\n"
    "quit                    end the device\n";

void showDirectory() {
  for (const Contact& contact : kDirectory) {
    std::printf("%.*s  %.*s\n", static_cast<int>(contact.number.size()), contact.number.data(),
                static_cast<int>(contact.name.size()), contact.name.data());
  }
}

}  // namespace

void Console::feed(std::string_view bytes) {
  pending_ += bytes;
  size_t start = 0;
  for (size_t end; !quit_ && (end = pending_.find('\n', start)) != std::string::npos; start = end + 1) {
    run(pending_.substr(start, end - start));
  }
  pending_.erase(0, start);
  std::fflush(stdout);
}

void Console::run(const std::string& line) {
  std::istringstream stream(line);
  const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
  if (words.empty()) return;
  const std::string& command = words[0];

  if (command == "incoming" && (words.size() == 2 || words.size() == 3)) {
    const std::optional<int32_t> onLine = words.size() == 3 ? parseNumber<int32_t>(words[2]) : 0;
    const Phone::Refusal refusal =
        onLine ? device_.phone().use([&](Phone& phone) { return phone.incomingCall(*onLine, words[1]); })
               : "Not a line: " + words[2];
    if (refusal) std::puts(refusal->c_str());
  } else if (command == "status") {
    showStatus();
  } else if (command == "directory") {
    showDirectory();
  } else if (command == "quit") {
    quit_ = true;
  } else if (!runMisc(words)) {
    std::fputs(kHelp, stdout);
  }
}

bool Console::runMisc(const std::vector<std::string>& words) {
  const std::string& command = words[0];
  const size_t arguments = words.size() - 1;
  const std::string argument = arguments > 0 ? words[1] : "";
  return device_.misc().use([&](MiscDevice& misc) {
    if (command == "screenshot" && arguments == 0) {
      misc.askForScreenshot();
    } else if (command == "scan-cancel" && arguments == 0) {
      misc.cancelScan();
    } else if (command == "multicast" && arguments <= 1) {
      misc.setMulticast(arguments == 1 ? std::optional(argument) : std::nullopt);
    } else if (command == "udisk" && (argument == "in" || argument == "out") && arguments == 1) {
      misc.putUdisk(argument == "in");
    } else if (const auto value = parseNumber<int32_t>(argument);
               command == "ring" && arguments == 1 && value) {
      misc.ring(*value);
    } else {
      return false;
    }
    return true;
  });
}

void Console::showStatus() {
  device_.phone().use([](Phone& phone) {
    for (const CallInfo& call : phone.calls()) {
      std::printf("%s %s\n", call.chan == phone.currentChannel() ? "*" : " ", toString(call).c_str());
    }
    std::printf("tone %d, DTMF type %d, key multiplexing %s, door LED %s\n", phone.tone(), phone.dtmfType(),
                phone.keysMultiplexed() ? "on" : "off", phone.doorLedOn() ? "on" : "off");
  });
  std::puts(device_.misc().use([](MiscDevice& misc) { return misc.describe(); }).c_str());
}

}  // namespace sim
