#pragma once

#include <vesk/relay.h>

#include <cstddef>
#include <cstdint>

namespace sim {

/* The records of the relay service. Times are in milliseconds. */

struct RelayInfoRecord {
  int32_t devices;
  /** Of each device. */
  int32_t outputs;
  char mac[24];
  char model[32];
  char version[16];
  char name[64];
};
static_assert(sizeof(RelayInfoRecord) == VESK_RELAY_DEV_INFO_SIZE);

struct RelayConfigRecord {
  int32_t device;
  int32_t outputs;
  int32_t enabled;
  int32_t reserved;
  char name[64];
  char address[24];
};
static_assert(sizeof(RelayConfigRecord) == VESK_RELAY_DEV_CONFIG_SIZE);

struct RelayNameRecord {
  /** The number of the device. */
  int32_t id;
  char name[64];
};
static_assert(sizeof(RelayNameRecord) == VESK_RELAY_DEV_NAME_SIZE);

/** An output of type kSwitch keeps its state; one of type kPulse goes off by itself. */
enum class RelayType : int32_t { kSwitch = 0, kPulse = 1 };

/** An output, as transferred and as stored. */
struct RelayOutput {
  int32_t id;
  RelayType type;
  int32_t enabled;
  /** 1: on, 0: off. Ignored when the output is set. */
  int32_t state;
  /** From the action to switching on. */
  int32_t delayMs;
  /** Duration of a pulse. */
  int32_t onMs;
  char name[56];
  char typeName[32];
};

constexpr int32_t kRelayOutputs = 8;

struct RelayOutputsRecord {
  RelayOutput outputs[kRelayOutputs];
};
static_assert(sizeof(RelayOutputsRecord) == VESK_RELAY_DO_CHANNELS_SIZE);

struct RelayTypeRecord {
  int32_t device;
  int32_t output;
  RelayType type;
  char typeName[32];
};
static_assert(sizeof(RelayTypeRecord) == VESK_RELAY_DO_TYPE_SIZE);

struct RelayTimeRecord {
  int32_t device;
  int32_t output;
  int32_t delayMs;
  int32_t onMs;
};
static_assert(sizeof(RelayTimeRecord) == VESK_RELAY_DO_TIME_SIZE);

struct RelayEnabledRecord {
  int32_t device;
  int32_t output;
  int32_t enabled;
};
static_assert(sizeof(RelayEnabledRecord) == VESK_RELAY_DO_ENABLED_SIZE);

struct RelayOutputRecord {
  int32_t device;
  int32_t reserved;
  RelayOutput output;
};
static_assert(sizeof(RelayOutputRecord) == VESK_RELAY_DO_CHANNEL_SIZE);

/** After kPulse, outputs of both types go off by themselves. */
enum class RelayAct : int32_t { kOff = 0, kOn = 1, kToggle = 2, kPulse = 3 };

struct RelayActRecord {
  int32_t device;
  int32_t output;
  RelayAct act;
};
static_assert(sizeof(RelayActRecord) == VESK_RELAY_ACT_SIZE);

struct ScheduledRelayActRecord {
  RelayActRecord act;
  int32_t afterMs;
  int32_t reserved;
};
static_assert(sizeof(ScheduledRelayActRecord) == VESK_RELAY_SCHEDULED_ACT_SIZE);

}  // namespace sim
