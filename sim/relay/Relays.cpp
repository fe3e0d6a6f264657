#include "relay/Relays.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string_view>

namespace sim {

namespace {

struct Preset {
  RelayType type;
  bool enabled;
  std::string_view name;
};

constexpr int32_t kDoorOpenMs = 3000;
constexpr Preset kPresets[kRelayOutputs] = {
    {RelayType::kPulse, true, "Front door"},   {RelayType::kPulse, true, "Back door"},
    {RelayType::kSwitch, true, "Stair light"}, {RelayType::kSwitch, true, "Garden light"},
    {RelayType::kSwitch, false, "Output 5"},   {RelayType::kSwitch, false, "Output 6"},
    {RelayType::kSwitch, false, "Output 7"},   {RelayType::kSwitch, false, "Output 8"},
};

RelayOutput toOutput(int32_t id, const Preset& preset) {
  RelayOutput output = with(&RelayOutput::name, preset.name);
  output.id = id;
  output.type = preset.type;
  output.enabled = preset.enabled;
  output.onMs = kDoorOpenMs;
  copyText(output.typeName, preset.type == RelayType::kPulse ? "door" : "light");
  return output;
}

bool isType(RelayType type) { return type == RelayType::kSwitch || type == RelayType::kPulse; }

bool isTime(int32_t ms) { return ms >= 0 && ms <= Relays::kMaxMs; }

bool isAlive(pid_t process) { return kill(process, 0) == 0 || errno != ESRCH; }

}  // namespace

bool Relays::load(std::string* error) {
  return store_->transact(
      [this](Transaction& transaction) {
        if (nameTable_.create(transaction)) {
          nameTable_.put(transaction, {.id = kDevice, .name = "Relay box"});
        }
        if (outputTable_.create(transaction)) {
          for (int32_t id = 1; id <= kRelayOutputs; ++id) {
            outputTable_.put(transaction, toOutput(id, kPresets[id - 1]));
          }
        }
        name_ = nameTable_.find(transaction, kDevice).value_or(RelayNameRecord{});
        for (const RelayOutput& stored : outputTable_.all(transaction)) {
          if (isOutput(stored.id)) at(stored.id).config = stored;
        }
      },
      error);
}

std::string Relays::name() const { return std::string(textOf(name_.name)); }

RelayOutputsRecord Relays::outputs() const {
  RelayOutputsRecord record{};
  for (int32_t id = 1; id <= kRelayOutputs; ++id) record.outputs[id - 1] = at(id).config;
  return record;
}

bool Relays::setName(const RelayNameRecord& name) {
  if (name.id != kDevice || textOf(name.name).empty()) return false;
  const bool stored = store_->transact([&](Transaction& transaction) { nameTable_.put(transaction, name); });
  if (stored) name_ = name;
  return stored;
}

bool Relays::isEditable(pid_t process) const {
  return !bracket_ || bracket_->owner == process || !isAlive(bracket_->owner);
}

bool Relays::begin(pid_t process) {
  if (!isEditable(process)) return false;
  bracket_ = Bracket{.owner = process, .changed = {}};
  for (size_t i = 0; i < outputs_.size(); ++i) bracket_->changed[i] = outputs_[i].config;
  return true;
}

RelayOutput* Relays::toChange(pid_t process, int32_t device, int32_t output) {
  if (!bracket_ || bracket_->owner != process || device != kDevice || !isOutput(output)) return nullptr;
  return &bracket_->changed[static_cast<size_t>(output - 1)];
}

bool Relays::setType(pid_t process, const RelayTypeRecord& type) {
  RelayOutput* output = toChange(process, type.device, type.output);
  if (output == nullptr || !isType(type.type)) return false;
  output->type = type.type;
  std::ranges::copy(type.typeName, output->typeName);
  return true;
}

bool Relays::setTime(pid_t process, const RelayTimeRecord& time) {
  RelayOutput* output = toChange(process, time.device, time.output);
  if (output == nullptr || !isTime(time.delayMs) || !isTime(time.onMs)) return false;
  output->delayMs = time.delayMs;
  output->onMs = time.onMs;
  return true;
}

bool Relays::setEnabled(pid_t process, const RelayEnabledRecord& enabled) {
  RelayOutput* output = toChange(process, enabled.device, enabled.output);
  if (output == nullptr) return false;
  output->enabled = enabled.enabled != 0;
  return true;
}

bool Relays::setOutput(pid_t process, const RelayOutputRecord& record) {
  const RelayOutput& changed = record.output;
  RelayOutput* output = toChange(process, record.device, changed.id);
  if (output == nullptr || !isType(changed.type) || !isTime(changed.delayMs) || !isTime(changed.onMs)) {
    return false;
  }
  *output = changed;
  output->enabled = changed.enabled != 0;
  return true;
}

bool Relays::commit(pid_t process) {
  if (!bracket_ || bracket_->owner != process) return false;
  for (size_t i = 0; i < outputs_.size(); ++i) bracket_->changed[i].state = 0;
  const bool stored = store_->transact([this](Transaction& transaction) {
    for (const RelayOutput& changed : bracket_->changed) outputTable_.put(transaction, changed);
  });
  if (!stored) return false;
  for (const RelayOutput& changed : bracket_->changed) {
    Output& output = at(changed.id);
    const int32_t state = output.config.state;
    output.config = changed;
    output.config.state = changed.enabled != 0 ? state : 0;
    if (changed.enabled == 0) timers_.cancel(output.timer);
  }
  bracket_.reset();
  return true;
}

bool Relays::isActable(const RelayActRecord& act) {
  return act.device == kDevice && isOutput(act.output) && act.act >= RelayAct::kOff &&
         act.act <= RelayAct::kPulse;
}

bool Relays::act(const RelayActRecord& act) {
  if (!isActable(act) || at(act.output).config.enabled == 0) return false;
  perform(act);
  return true;
}

bool Relays::schedule(const ScheduledRelayActRecord& scheduled) {
  if (!isActable(scheduled.act) || at(scheduled.act.output).config.enabled == 0 ||
      !isTime(scheduled.afterMs) || scheduled_ == kMaxScheduled) {
    return false;
  }
  ++scheduled_;
  timers_.after(Time(scheduled.afterMs), [this, act = scheduled.act] {
    --scheduled_;
    // Refused if the output has been disabled meanwhile.
    this->act(act);
  });
  return true;
}

void Relays::perform(const RelayActRecord& act) {
  Output& output = at(act.output);
  output.lastAct = act.act;
  timers_.cancel(output.timer);
  const bool wasOn = output.config.state != 0;
  if (act.act == RelayAct::kOff || (act.act == RelayAct::kToggle && wasOn)) {
    output.config.state = 0;
    return;
  }
  const bool goesOff = act.act == RelayAct::kPulse || output.config.type == RelayType::kPulse;
  if (output.config.delayMs == 0) return switchOn(output, goesOff);
  output.timer =
      timers_.after(Time(output.config.delayMs), [this, &output, goesOff] { switchOn(output, goesOff); });
}

void Relays::switchOn(Output& output, bool goesOff) {
  output.config.state = 1;
  if (goesOff) {
    output.timer = timers_.after(Time(output.config.onMs), [&output] { output.config.state = 0; });
  }
}

std::optional<RelayAct> Relays::lastAct(int32_t output) const {
  return isOutput(output) ? std::optional(at(output).lastAct) : std::nullopt;
}

std::optional<bool> Relays::isOn(int32_t output) const {
  return isOutput(output) ? std::optional(at(output).config.state != 0) : std::nullopt;
}

}  // namespace sim
