#include "relay/RelayService.h"

#include <binder/IPCThreadState.h>

#include "common/Identity.h"

namespace sim {

namespace {

using android::binder::Status;

Status noDevice() { return refuse("There is no such device"); }

pid_t caller() { return android::IPCThreadState::self()->getCallingPid(); }

constexpr std::string_view kMac = "02:00:00:00:00:51";
constexpr std::string_view kModel = "Simulated relay box";
constexpr std::string_view kAddress = "192.0.2.51";

}  // namespace

bool RelayService::load(std::string* error) {
  return relays_.use([&](Relays& relays) { return relays.load(error); });
}

template <typename Record, typename Method>
Status RelayService::apply(const CommonParcelable& record, int32_t* result, Method method) {
  const std::optional<Record> content = unpack<Record>(record);
  const bool done = content && relays_.use([&](Relays& relays) { return method(relays, *content); });
  *result = done ? 0 : kRefused;
  return Status::ok();
}

Status RelayService::getRelayDevInfo(CommonParcelable* info) {
  RelayInfoRecord record{};
  record.devices = 1;
  record.outputs = kRelayOutputs;
  copyText(record.mac, kMac);
  copyText(record.model, kModel);
  copyText(record.version, identity::kSoftware);
  copyText(record.name, relays_.use([](Relays& relays) { return relays.name(); }));
  *info = pack(record);
  return Status::ok();
}

Status RelayService::getRelayDevConfig(int32_t device, CommonParcelable* config) {
  if (device != Relays::kDevice) return noDevice();
  RelayConfigRecord record{};
  record.device = device;
  record.outputs = kRelayOutputs;
  record.enabled = 1;
  copyText(record.name, relays_.use([](Relays& relays) { return relays.name(); }));
  copyText(record.address, kAddress);
  *config = pack(record);
  return Status::ok();
}

Status RelayService::setRelayDevName(const CommonParcelable& name, int32_t* result) {
  return apply<RelayNameRecord>(name, result,
                                [](Relays& relays, const auto& record) { return relays.setName(record); });
}

Status RelayService::getRelayDoChannels(int32_t device, CommonParcelable* channels) {
  if (device != Relays::kDevice) return noDevice();
  *channels = pack(relays_.use([](Relays& relays) { return relays.outputs(); }));
  return Status::ok();
}
Status RelayService::setRelayDoType(const CommonParcelable& type, int32_t* result) {
  return apply<RelayTypeRecord>(
      type, result, [](Relays& relays, const auto& record) { return relays.setType(caller(), record); });
}
Status RelayService::setRelayDoTime(const CommonParcelable& time, int32_t* result) {
  return apply<RelayTimeRecord>(
      time, result, [](Relays& relays, const auto& record) { return relays.setTime(caller(), record); });
}
Status RelayService::setRelayDoEnabled(const CommonParcelable& enabled, int32_t* result) {
  return apply<RelayEnabledRecord>(enabled, result, [](Relays& relays, const auto& record) {
    return relays.setEnabled(caller(), record);
  });
}
Status RelayService::setRelayDoChannel(const CommonParcelable& channel, int32_t* result) {
  return apply<RelayOutputRecord>(
      channel, result, [](Relays& relays, const auto& record) { return relays.setOutput(caller(), record); });
}

Status RelayService::beginRelayDoSave(int32_t device, int32_t* result) {
  const bool begun =
      device == Relays::kDevice && relays_.use([](Relays& relays) { return relays.begin(caller()); });
  *result = begun ? 0 : kRefused;
  return Status::ok();
}
Status RelayService::commitRelayDoSave(int32_t device, int32_t* result) {
  const bool committed =
      device == Relays::kDevice && relays_.use([](Relays& relays) { return relays.commit(caller()); });
  *result = committed ? 0 : kRefused;
  return Status::ok();
}

Status RelayService::relaySetAct(const CommonParcelable& action, int32_t* result) {
  return apply<RelayActRecord>(action, result,
                               [](Relays& relays, const auto& record) { return relays.act(record); });
}
Status RelayService::relayScheduleAct(const CommonParcelable& action, int32_t* result) {
  return apply<ScheduledRelayActRecord>(
      action, result, [](Relays& relays, const auto& record) { return relays.schedule(record); });
}
Status RelayService::relayGetAct(int32_t output, int32_t* action) {
  const auto act = relays_.use([&](Relays& relays) { return relays.lastAct(output); });
  *action = act ? static_cast<int32_t>(*act) : kRefused;
  return Status::ok();
}
Status RelayService::getRelayDoState(int32_t device, int32_t output, int32_t* state) {
  const auto on = relays_.use([&](Relays& relays) { return relays.isOn(output); });
  *state = device == Relays::kDevice && on ? *on : kRefused;
  return Status::ok();
}

Status RelayService::getRelayConfigEditable(int32_t* editable) {
  *editable = relays_.use([](Relays& relays) { return relays.isEditable(caller()); });
  return Status::ok();
}
Status RelayService::getPureLocalScene(int32_t* scene) {
  *scene = 0;
  return Status::ok();
}

}  // namespace sim
