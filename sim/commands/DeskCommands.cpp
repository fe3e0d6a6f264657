#include <algorithm>
#include <iterator>

#include "Device.h"
#include "commands/Command.h"
#include "commands/Runner.h"
#include "common/ParseNumber.h"

/* The commands that act on the device as a user, a remote party or the network does, and those that
 * show its state. */
namespace sim {

namespace {

using ParsedCommand = std::optional<Command>;

/** `access` is the member of Device that gives the model. */
template <typename Model>
Command onModel(RealTime<Model>& (Device::*access)(), std::function<Refusal(Model&)> action) {
  return {[=](Runner& runner) {
    const Refusal refusal = (runner.device().*access)().use(action);
    return refusal ? *refusal + "\n" : "";
  }};
}

Command onPhone(std::function<Refusal(Phone&)> action) { return onModel(&Device::phone, std::move(action)); }
Command onMisc(std::function<Refusal(MiscDevice&)> action) {
  return onModel(&Device::misc, std::move(action));
}

/** The word at `index`, or `otherwise` if there are fewer. */
std::optional<int32_t> number(const Words& words, size_t index, int32_t otherwise = 0) {
  return index < words.size() ? parseNumber<int32_t>(words[index]) : otherwise;
}

ParsedCommand incoming(const Words& words, std::string* error) {
  const std::optional<int32_t> line = number(words, 1);
  if (!line) *error = "not a line: " + words[1];
  if (!line) return std::nullopt;
  return onPhone([=, caller = words[0]](Phone& phone) { return phone.incomingCall(*line, caller); });
}

template <auto Method>
ParsedCommand farEnd(const Words& words, std::string*) {
  const std::optional<int32_t> chan = number(words, 0);
  if (!chan) return std::nullopt;
  return onPhone([=](Phone& phone) { return (phone.*Method)(*chan); });
}

ParsedCommand key(const Words& words, std::string*) {
  const std::optional<int32_t> code = number(words, 0);
  const std::string how = words.size() > 1 ? words[1] : "";
  if (!code || (!how.empty() && how != "down" && how != "up")) return std::nullopt;
  return onPhone([=](Phone& phone) -> Refusal {
    if (how != "up") phone.key(*code, true);
    if (how != "down") phone.key(*code, false);
    return {};
  });
}

ParsedCommand ring(const Words& words, std::string*) {
  const std::optional<int32_t> value = number(words, 0);
  if (!value) return std::nullopt;
  return onMisc([=](MiscDevice& misc) { return misc.ring(*value), Refusal(); });
}

ParsedCommand screenshot(const Words&, std::string*) {
  return onMisc([](MiscDevice& misc) { return misc.requestScreenshot(), Refusal(); });
}

ParsedCommand scanCancel(const Words&, std::string*) {
  return onMisc([](MiscDevice& misc) { return misc.cancelScan(), Refusal(); });
}

ParsedCommand udisk(const Words& words, std::string*) {
  if (words[0] != "in" && words[0] != "out") return std::nullopt;
  return onMisc([in = words[0] == "in"](MiscDevice& misc) { return misc.setUdisk(in), Refusal(); });
}

ParsedCommand multicast(const Words& words, std::string*) {
  const auto action = words.empty() ? std::nullopt : std::optional(words[0]);
  return onMisc([=](MiscDevice& misc) { return misc.setMulticast(action), Refusal(); });
}

ParsedCommand test(const Words& words, std::string*) {
  const std::optional<int32_t> which = words[0] == "start" ? number(words, 1) : std::nullopt;
  if (which) return onMisc([=](MiscDevice& misc) { return misc.localAteStart(*which); });
  if (words.size() > 1) return std::nullopt;
  if (words[0] == "stop") return onMisc([](MiscDevice& misc) { return misc.localAteStop(0); });
  if (words[0] != "passed" && words[0] != "failed") return std::nullopt;
  const int32_t result = words[0] == "passed" ? MiscDevice::kPassed : MiscDevice::kFailed;
  return onMisc([=](MiscDevice& misc) { return misc.ateTouchScreenResult(result, 0); });
}

ParsedCommand sms(const Words& words, std::string*) {
  std::string text = words[1];
  for (size_t i = 2; i < words.size(); ++i) text += " " + words[i];
  return Command{[=, from = words[0]](Runner& runner) {
    const bool stored = runner.device().database().receiveSms(1, from, text);
    return std::string(stored ? "" : "The message can't be stored\n");
  }};
}

ParsedCommand voicemail(const Words& words, std::string*) {
  const std::optional<int32_t> line = number(words, 0);
  const std::optional<int32_t> unheard = number(words, 1);
  const std::optional<int32_t> heard = number(words, 2);
  if (!line || !unheard || !heard) return std::nullopt;
  return Command{[=](Runner& runner) {
    const bool stored = runner.device().database().setVoiceMail(*line, *unheard, *heard);
    return std::string(stored ? "" : "There is no such line, or number of messages\n");
  }};
}

ParsedCommand relay(const Words& words, std::string*) {
  static constexpr std::string_view kActs[] = {"off", "on", "toggle", "pulse"};
  const std::optional<int32_t> output = number(words, 0);
  const auto act = std::ranges::find(kActs, words[1]);
  if (!output || act == std::end(kActs)) return std::nullopt;
  const RelayActRecord record{
      .device = Relays::kDevice, .output = *output, .act = static_cast<RelayAct>(act - std::begin(kActs))};
  return onModel<Relays>(&Device::relays, [=](Relays& relays) {
    return relays.act(record) ? Refusal() : "There is no such output, or it is disabled";
  });
}

ParsedCommand status(const Words&, std::string*) {
  return Command{[](Runner& runner) {
    std::string text = runner.device().phone().use([](Phone& phone) { return phone.describe(); });
    text += runner.device().misc().use([](MiscDevice& misc) { return misc.describe(); });
    for (const android::sp<FaultInjector>& service : runner.device().services()) text += service->describe();
    return text;
  }};
}

ParsedCommand directory(const Words&, std::string*) {
  return Command{[](Runner&) {
    std::string text;
    for (const Contact& contact : kDirectory) {
      text += std::string(contact.number) + "  " + std::string(contact.name) + "\n";
    }
    return text;
  }};
}

constexpr size_t kAnyNumber = 1000;

constexpr CommandRow kRows[] = {
    {"incoming", "NUMBER [LINE]", "a call from NUMBER arrives", 1, 2, incoming},
    {"answer", "[CHANNEL]", "the remote party answers an outgoing call", 0, 1, farEnd<&Phone::farEndAnswer>},
    {"hangup", "[CHANNEL]", "the remote party hangs up", 0, 1, farEnd<&Phone::farEndHangUp>},
    {"engaged", "[CHANNEL]", "the remote party is engaged", 0, 1, farEnd<&Phone::farEndEngage>},
    {"key", "CODE [down|up]", "press and release a key, or one of the two", 1, 2, key},
    {"ring", "VALUE", "the wireless key rings", 1, 1, ring},
    {"test", "start [TEST]|stop|passed|failed", "run the test mode, or end its touch-screen test", 1, 2,
     test},
    {"screenshot", "", "the web interface requests a screenshot", 0, 0, screenshot},
    {"sms", "NUMBER TEXT...", "a short message arrives", 2, kAnyNumber, sms},
    {"voicemail", "LINE UNHEARD [HEARD]", "set the number of voice messages", 2, 3, voicemail},
    {"relay", "OUTPUT on|off|toggle|pulse", "switch a relay", 2, 2, relay},
    {"scan-cancel", "", "a scan is cancelled", 0, 0, scanCancel},
    {"udisk", "in|out", "plug in a USB disk, or remove it", 1, 1, udisk},
    {"multicast", "[ACTION]", "set the last multicast; without ACTION, remove it", 0, 1, multicast},
    {"status", "", "show calls, faults and other state", 0, 0, status},
    {"directory", "", "list the numbers that can be called", 0, 0, directory},
};

}  // namespace

std::span<const CommandRow> deskCommands() { return kRows; }

}  // namespace sim
