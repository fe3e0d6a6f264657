#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "common/Identity.h"
#include "common/ParseNumber.h"
#include "common/Records.h"
#include "config/ConfigRecords.h"
#include "config/ConfigService.h"
#include "phone/Phone.h"

/* Lines, DND, dial peers, time zones, ringtones. */

namespace sim {

using android::String16;
using android::String8;
using android::binder::Status;

namespace {

struct TimeZone {
  /** Minutes east of UTC: the configuration value. */
  int32_t offset;
  const char* name;
};

constexpr TimeZone kTimeZones[] = {
    {-660, "(UTC-11:00) Samoa"},         {-600, "(UTC-10:00) Hawaii"},
    {-540, "(UTC-09:00) Alaska"},        {-480, "(UTC-08:00) Pacific Time"},
    {-420, "(UTC-07:00) Mountain Time"}, {-360, "(UTC-06:00) Central Time"},
    {-300, "(UTC-05:00) Eastern Time"},  {-240, "(UTC-04:00) Atlantic Time"},
    {-210, "(UTC-03:30) Newfoundland"},  {-180, "(UTC-03:00) Buenos Aires"},
    {-120, "(UTC-02:00) South Georgia"}, {-60, "(UTC-01:00) Azores"},
    {0, "(UTC+00:00) London"},           {60, "(UTC+01:00) Berlin"},
    {120, "(UTC+02:00) Helsinki"},       {180, "(UTC+03:00) Nairobi"},
    {210, "(UTC+03:30) Tehran"},         {240, "(UTC+04:00) Dubai"},
    {270, "(UTC+04:30) Kabul"},          {300, "(UTC+05:00) Karachi"},
    {330, "(UTC+05:30) Delhi"},          {345, "(UTC+05:45) Kathmandu"},
    {360, "(UTC+06:00) Dhaka"},          {420, "(UTC+07:00) Bangkok"},
    {480, "(UTC+08:00) Singapore"},      {540, "(UTC+09:00) Tokyo"},
    {570, "(UTC+09:30) Darwin"},         {600, "(UTC+10:00) Brisbane"},
    {660, "(UTC+11:00) Nouméa"},         {720, "(UTC+12:00) Fiji"},
    {780, "(UTC+13:00) Tonga"},          {840, "(UTC+14:00) Kiritimati"},
};

constexpr std::array<std::string_view, 5> kRings = {"Ring 1", "Ring 2", "Bell", "Chime", "Marimba"};

constexpr int32_t kNone = -1;

/** The index of the first element for which `is` holds; kNone if there is none. */
template <typename List, typename Is>
int32_t indexOf(const List& list, Is is) {
  const auto found = std::find_if(std::begin(list), std::end(list), is);
  return found == std::end(list) ? kNone : static_cast<int32_t>(found - std::begin(list));
}

template <typename List>
bool isIndex(const List& list, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < std::size(list);
}

/** Parses HH:MM to the minute of the day, or a plain number. */
std::optional<int32_t> parseTimeOfDay(std::string_view text) {
  const size_t colon = text.find(':');
  if (colon == std::string_view::npos) return parseNumber<int32_t>(text);
  const auto hour = parseNumber<int32_t>(text.substr(0, colon));
  const auto minute = parseNumber<int32_t>(text.substr(colon + 1));
  if (!hour || !minute || *hour < 0 || *hour > 23 || *minute < 0 || *minute > 59) return std::nullopt;
  return *hour * 60 + *minute;
}

std::string numberOf(int32_t line) { return "10" + std::to_string(line); }

/** `index` counts from 0, lines from 1. */
Status putLine(com::qv::CommonParcelable* record, int32_t index, int32_t lines) {
  if (index < 0 || index >= lines) {
    return refuse("There is no such line");
  }
  LineRecord line{};
  line.line = index + 1;
  line.registered = Phone::isRegistered(line.line) ? 1 : 0;
  copyText(line.number, numberOf(line.line));
  copyText(line.name, "Line " + std::to_string(line.line));
  copyText(line.server, identity::kServer);
  *record = pack(line);
  return Status::ok();
}

}  // namespace

Status ConfigService::setSpaceDndTime(const std::string& startTime, const std::string& endTime) {
  const auto start = parseTimeOfDay(startTime);
  const auto end = parseTimeOfDay(endTime);
  if (!start || !end) return refuse("A time is HH:MM");
  settings_->use([&](Values& values) {
    values[keyOf(ConfigMethod::getSpaceDndStartTime, {})] = std::to_string(*start);
    values[keyOf(ConfigMethod::getSpaceDndEndTime, {})] = std::to_string(*end);
  });
  return Status::ok();
}

Status ConfigService::dialpeerSetConfig(int32_t index, const CommonParcelable& dialpeer, int32_t* result) {
  if (dialpeer.blob().length() != VESK_DIALPEER_CONFIG_SIZE) return refuse("The record has another size");
  const std::string prefix = keyOf(ConfigMethod::dialpeerGetConfig, {}) + "/";
  *result = settings_->use([&](Values& values) {
    if (index < 0 || static_cast<size_t>(index) > numbersAfter(values, prefix).size()) return kRefused;
    values[prefix + std::to_string(index)] = std::string_view(dialpeer.blob());
    return 0;
  });
  return Status::ok();
}

Status ConfigService::dialpeerDeleteConfig(int32_t index) {
  settings_->use([&](Values& values) {
    eraseNumbered(values, keyOf(ConfigMethod::dialpeerGetConfig, {}) + "/", index);
  });
  return Status::ok();
}

Status ConfigService::dialpeerIsP2PLine(int32_t line, bool* isP2P) {
  *isP2P = line >= 1 && line <= Phone::kLines && !Phone::isRegistered(line);
  return Status::ok();
}

Status ConfigService::dialpeerGetLineInfo(int32_t line, std::string* info) {
  if (line >= 1 && line <= Phone::kLines) *info = numberOf(line) + "@" + std::string(identity::kServer);
  return Status::ok();
}

Status ConfigService::getTimeZone(std::vector<String16>* entries) {
  for (const TimeZone& zone : kTimeZones) entries->push_back(String16(String8(zone.name)));
  return Status::ok();
}

Status ConfigService::transTimezonecfg2index(int32_t cfg, int32_t* index) {
  *index = indexOf(kTimeZones, [&](const TimeZone& zone) { return zone.offset == cfg; });
  return Status::ok();
}

Status ConfigService::transTimezoneindex2cfg(int32_t index, int32_t* cfg) {
  *cfg = isIndex(kTimeZones, index) ? kTimeZones[index].offset : kNone;
  return Status::ok();
}

Status ConfigService::ringtoneGetListLen(bool, int32_t* length) {
  *length = static_cast<int32_t>(kRings.size());
  return Status::ok();
}

Status ConfigService::ringtoneGetRingName(int32_t index, std::string* name) {
  if (isIndex(kRings, index)) *name = kRings[static_cast<size_t>(index)];
  return Status::ok();
}

Status ConfigService::ringtoneGetRingIndex(const std::string& name, int32_t* index) {
  *index = indexOf(kRings, [&](std::string_view ring) { return ring == name; });
  return Status::ok();
}

Status ConfigService::setVoiceVolume(int32_t a, int32_t b, bool, int32_t* result) {
  settings_->use(
      [&](Values& values) { values[keyOf(ConfigMethod::getVoiceVolume, {a})] = std::to_string(b); });
  *result = 0;
  return Status::ok();
}

Status ConfigService::getLineInfo(int32_t index, CommonParcelable* info) {
  return putLine(info, index, Phone::kLines);
}

Status ConfigService::getActiveLineInfo(int32_t index, CommonParcelable* info) {
  return putLine(info, index, Phone::kRegisteredLines);
}

Status ConfigService::getPhoneStatus(CommonParcelable* status) {
  PhoneStatusRecord record{};
  copyText(record.model, identity::kModel);
  copyText(record.hardware, identity::kHardware);
  copyText(record.software, identity::kSoftware);
  copyText(record.bootloader, identity::kBootloader);
  copyText(record.serial, identity::kSerial);
  copyText(record.mac, identity::kMac);
  copyText(record.name, identity::kName);
  const auto up = std::chrono::steady_clock::now() - start_;
  record.uptimeSeconds = static_cast<int32_t>(std::chrono::duration_cast<std::chrono::seconds>(up).count());
  *status = pack(record);
  return Status::ok();
}

Status ConfigService::getRtpStatus(std::vector<CommonParcelable>* status) {
  RtpStatusRecord record{.chan = 1,
                         .line = 1,
                         .packetsSent = 1500,
                         .packetsReceived = 1497,
                         .packetsLost = 3,
                         .jitterMs = 4,
                         .codec = {},
                         .remote = {}};
  copyText(record.codec, "G722");
  copyText(record.remote, "192.0.2.1:16384");
  status->push_back(pack(record));
  return Status::ok();
}

Status ConfigService::getPickUpInfo(std::vector<CommonParcelable>* infos) {
  for (const std::string_view number : {"201", "220"}) {
    PickUpRecord record{.line = 1, .ringing = number == "201" ? 1 : 0, .number = {}, .name = {}};
    copyText(record.number, number);
    copyText(record.name, findContact(kDirectory, number)->name);
    infos->push_back(pack(record));
  }
  return Status::ok();
}

}  // namespace sim
