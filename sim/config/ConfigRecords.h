#pragma once

#include <vesk/config.h>

#include <cstdint>

namespace sim {

/* The records of the config service with fields that the simulated device uses;
 * docs/simulated-device.md shows them. All others are opaque to the device. */

struct DsskeyRecord {
  int32_t type;
  int32_t line;
  int32_t icon;
  int32_t theme;
  char title[156];
  char value[512];
};
static_assert(sizeof(DsskeyRecord) == VESK_DSSKEY_CONFIG_SIZE);

struct SceneRecord {
  int32_t index;
  int32_t enabled;
  int32_t value;
  int32_t flag;
  char texts[4][110];
};
static_assert(sizeof(SceneRecord) == VESK_SCENE_CONFIG_SIZE);

struct LineRecord {
  int32_t line;
  int32_t registered;
  char number[64];
  char name[64];
  char server[68];
};
static_assert(sizeof(LineRecord) == VESK_LINE_INFO_SIZE);

struct NetworkStatusRecord {
  int32_t up;
  /** 0 for a cable. */
  int32_t type;
  char mac[24];
  char ip[64];
  char netmask[64];
  char gateway[64];
  char dns1[64];
  char dns2[64];
  char hostname[124];
};
static_assert(sizeof(NetworkStatusRecord) == VESK_NETWORK_STATUS_SIZE);

struct NetworkDetailsRecord {
  /** The arguments of the request. */
  int32_t a;
  int32_t b;
  char ip[64];
  char netmask[64];
  char gateway[64];
  char dns1[64];
  char dns2[64];
};
static_assert(sizeof(NetworkDetailsRecord) == VESK_NETWORK_DETAILS_SIZE);

struct PhoneStatusRecord {
  char model[64];
  char hardware[64];
  char software[64];
  char bootloader[64];
  char serial[64];
  char mac[24];
  char name[40];
  int32_t uptimeSeconds;
};
static_assert(sizeof(PhoneStatusRecord) == VESK_PHONE_STATUS_SIZE);

struct LocalDataRecord {
  char ip[24];
  char mac[24];
  char name[48];
};
static_assert(sizeof(LocalDataRecord) == VESK_LOCAL_CONFIG_SIZE);

struct DeviceNameRecord {
  char ip[24];
  char name[64];
};
static_assert(sizeof(DeviceNameRecord) == VESK_DEVICE_NAME_SIZE);

struct RtpStatusRecord {
  int32_t chan;
  int32_t line;
  int32_t packetsSent;
  int32_t packetsReceived;
  int32_t packetsLost;
  int32_t jitterMs;
  char codec[24];
  char remote[80];
};
static_assert(sizeof(RtpStatusRecord) == VESK_RTP_STATUS_SIZE);

struct PickUpRecord {
  int32_t line;
  int32_t ringing;
  char number[64];
  char name[116];
};
static_assert(sizeof(PickUpRecord) == VESK_PICK_UP_INFO_SIZE);

struct IconChangedRecord {
  /** The numbers of the key. */
  int32_t a;
  int32_t b;
  int32_t c;
  int32_t icon;
};
static_assert(sizeof(IconChangedRecord) == VESK_DSSKEY_ICON_CHANGED_SIZE);

struct MonitorDeviceRecord {
  int32_t id;
  char ip[24];
  char name[40];
};
static_assert(sizeof(MonitorDeviceRecord) == VESK_MONITOR_DEVICE_SIZE);

struct ScanResultRecord {
  char ip[24];
  char mac[24];
  char name[64];
  char model[64];
  char software[64];
  char url[240];
};
static_assert(sizeof(ScanResultRecord) == VESK_QDDP_SCAN_RESULT_SIZE);

struct AlarmLogRecord {
  int32_t id;
  int32_t input;
  int32_t type;
  /** Seconds since 1970. */
  uint32_t time;
  char text[136];
};
static_assert(sizeof(AlarmLogRecord) == VESK_ALARM_LOG_SIZE);

}  // namespace sim
