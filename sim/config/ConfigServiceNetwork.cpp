#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

#include "common/Identity.h"
#include "common/Records.h"
#include "config/ConfigRecords.h"
#include "config/ConfigService.h"

/* The network, the devices in it, and the alarm. */

namespace sim {

using android::binder::Status;

namespace {

using identity::kNeighbours;
using identity::Neighbour;

const Neighbour* findNeighbour(std::string_view ip) {
  const auto found = std::ranges::find(kNeighbours, ip, &Neighbour::ip);
  return found == kNeighbours.end() ? nullptr : &*found;
}

/** Sets the fields that NetworkStatusRecord and NetworkDetailsRecord share. */
template <typename Record>
void putAddresses(Record* record) {
  copyText(record->ip, identity::kIp);
  copyText(record->netmask, identity::kNetmask);
  copyText(record->gateway, identity::kGateway);
  copyText(record->dns1, identity::kGateway);
}

std::string toBase64(std::string_view bytes) {
  static constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const auto byteAt = [&](size_t place) {
      return place < bytes.size() ? uint32_t{static_cast<unsigned char>(bytes[place])} : 0;
    };
    const uint32_t bits = byteAt(i) << 16 | byteAt(i + 1) << 8 | byteAt(i + 2);
    text += kDigits[bits >> 18];
    text += kDigits[bits >> 12 & 63];
    text += i + 1 < bytes.size() ? kDigits[bits >> 6 & 63] : '=';
    text += i + 2 < bytes.size() ? kDigits[bits & 63] : '=';
  }
  return text;
}

std::string percentEncode(std::string_view text) {
  static constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 &&
        (std::isalnum(byte) != 0 || std::string_view("-._~").find(c) != std::string_view::npos)) {
      encoded += c;
    } else {
      encoded += {'%', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return encoded;
}

struct Alarm {
  int32_t id;
  int32_t input;
  int32_t type;
  uint32_t time;
  std::string_view text;
};

constexpr Alarm kAlarms[] = {
    {.id = 1, .input = 1, .type = 1, .time = 1767254400, .text = "Input 1 opened"},
    {.id = 2, .input = 1, .type = 2, .time = 1767254460, .text = "Input 1 closed"},
    {.id = 3, .input = 2, .type = 1, .time = 1767340800, .text = "Input 2 opened"},
};

}  // namespace

Status ConfigService::getNetworkStatus(CommonParcelable* status) {
  NetworkStatusRecord record{};
  record.up = 1;
  copyText(record.mac, identity::kMac);
  copyText(record.hostname, identity::kName);
  putAddresses(&record);
  *status = pack(record);
  return Status::ok();
}

Status ConfigService::getNetworkDetails(int32_t a, int32_t b, CommonParcelable* details) {
  NetworkDetailsRecord record{};
  record.a = a;
  record.b = b;
  putAddresses(&record);
  *details = pack(record);
  return Status::ok();
}

Status ConfigService::getLocalData(CommonParcelable* data) {
  LocalDataRecord record{};
  copyText(record.ip, identity::kIp);
  copyText(record.mac, identity::kMac);
  copyText(record.name, identity::kName);
  *data = pack(record);
  return Status::ok();
}

Status ConfigService::getMonitorDevice(std::vector<CommonParcelable>* devices) {
  for (const Neighbour& neighbour : kNeighbours) {
    MonitorDeviceRecord record{};
    record.id = static_cast<int32_t>(devices->size());
    copyText(record.ip, neighbour.ip);
    copyText(record.name, neighbour.name);
    devices->push_back(pack(record));
  }
  return Status::ok();
}

Status ConfigService::getQddpScanResult(std::vector<CommonParcelable>* results) {
  for (const Neighbour& neighbour : kNeighbours) {
    ScanResultRecord record{};
    copyText(record.ip, neighbour.ip);
    copyText(record.mac, neighbour.mac);
    copyText(record.name, neighbour.name);
    copyText(record.model, neighbour.model);
    copyText(record.software, identity::kSoftware);
    copyText(record.url, "http://" + std::string(neighbour.ip) + "/");
    results->push_back(pack(record));
  }
  return Status::ok();
}

Status ConfigService::setQddpDeviceConfig(const CommonParcelable& device, const CommonParcelable& config,
                                          int32_t* result) {
  if (device.blob().length() != VESK_QDDP_DEVICE_SIZE) return refuse("The device's record has another size");
  return SettingService::setQddpDeviceConfig(device, config, result);
}

Status ConfigService::getQddpDeviceConfig(const CommonParcelable& device, const CommonParcelable&,
                                          CommonParcelable* config) {
  if (device.blob().length() != VESK_QDDP_DEVICE_SIZE) return refuse("The device's record has another size");
  // The configuration is kept by device only.
  return perform(ConfigMethod::getQddpDeviceConfig, {device}, config);
}

Status ConfigService::getDeviceNameByIp(const std::string& ip, CommonParcelable* device) {
  DeviceNameRecord record{};
  copyText(record.ip, ip);
  if (const Neighbour* neighbour = findNeighbour(ip)) copyText(record.name, neighbour->name);
  settings_->use([&](const Values& values) {
    const auto given = values.find(keyOf(ConfigMethod::getDeviceNameByIp, {ip}));
    if (given == values.end()) return;
    record = with(&DeviceNameRecord::name, given->second, record);
  });
  *device = pack(record);
  return Status::ok();
}

Status ConfigService::setDeviceNameByIp(const std::string& ip, const std::string& name) {
  if (ip.empty() || ip.size() >= sizeof(DeviceNameRecord::ip) ||
      name.size() >= sizeof(DeviceNameRecord::name)) {
    return refuse("The address is missing, or one of the two is too long");
  }
  settings_->use([&](Values& values) { values[keyOf(ConfigMethod::getDeviceNameByIp, {ip})] = name; });
  return Status::ok();
}

Status ConfigService::getUsernameByIp(const std::string& ip, std::string* username) {
  if (const Neighbour* neighbour = findNeighbour(ip)) *username = neighbour->username;
  return Status::ok();
}

Status ConfigService::getPasswordByIp(const std::string& ip, std::string* password) {
  if (const Neighbour* neighbour = findNeighbour(ip)) *password = neighbour->password;
  return Status::ok();
}

Status ConfigService::generateQcmsMonitorDoorOpenUrl(const std::string& text1, const std::string& text2,
                                                     const std::string& text3, const std::string& text4,
                                                     std::string* url) {
  *url = std::string(identity::kQcmsUrl) + "/door/open";
  for (const std::string* text : {&text1, &text2, &text3, &text4}) *url += "/" + percentEncode(*text);
  return Status::ok();
}

Status ConfigService::srcToB64(const std::string& src, int32_t a, int32_t b, std::string* converted) {
  const bool isPart = a > 0 && static_cast<size_t>(a) < src.size();
  const std::string text =
      toBase64(std::string_view(src).substr(0, isPart ? static_cast<size_t>(a) : src.size()));
  // The client does not check the size of its buffer.
  if (b <= 0 || text.size() >= static_cast<size_t>(b)) return refuse("There is no room for the text");
  *converted = text;
  return Status::ok();
}

Status ConfigService::getAlarmLogs(std::vector<CommonParcelable>* logs) {
  settings_->use([&](const Values& values) {
    for (const Alarm& alarm : kAlarms) {
      if (values.contains(keyOf(ConfigMethod::securityLogsDelById, {alarm.id}))) continue;
      AlarmLogRecord record{
          .id = alarm.id, .input = alarm.input, .type = alarm.type, .time = alarm.time, .text = {}};
      copyText(record.text, alarm.text);
      logs->push_back(pack(record));
    }
  });
  return Status::ok();
}

Status ConfigService::securityLogsDelById(int32_t id, int32_t* result) {
  *result = settings_->use([&](Values& values) {
    if (std::ranges::find(kAlarms, id, &Alarm::id) == std::end(kAlarms)) return kRefused;
    return values.emplace(keyOf(ConfigMethod::securityLogsDelById, {id}), "deleted").second ? 0 : kRefused;
  });
  return Status::ok();
}

Status ConfigService::setInputlogsReadDone(int32_t* result) {
  settings_->use([](Values& values) { values[keyOf(ConfigMethod::getInputlogsUnreadNum, {})] = "0"; });
  *result = 0;
  return Status::ok();
}

}  // namespace sim
