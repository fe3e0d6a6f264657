#pragma once

#include <vesk/misc.h>

#include <cstddef>
#include <cstdint>

namespace sim {

/* The records of the misc service. */

struct TestInfoRecord {
  int32_t running;
  /** The current or last test. */
  int32_t test;
  int32_t passed;
  int32_t failed;
  /** The last context text. */
  char text[128];
  char device[16];
};
static_assert(sizeof(TestInfoRecord) == VESK_ATE_INFO_SIZE);

struct UdiskCapacityRecord {
  int32_t totalMiB;
  int32_t usedMiB;
  int32_t freeMiB;
  int32_t reserved;
  char path[64];
  char label[24];
};
static_assert(sizeof(UdiskCapacityRecord) == VESK_UDISK_CAPACITY_SIZE);

struct RecordingRecord {
  int32_t seconds;
  int32_t kib;
  int32_t reserved[2];
  char file[48];
};
static_assert(sizeof(RecordingRecord) == VESK_UDISK_RECORD_FILE_SIZE);

struct MulticastRecord {
  char action[64];
  char address[64];
  int32_t port;
  int32_t priority;
  char payload[540];
};
static_assert(sizeof(MulticastRecord) == VESK_MQTT_MULTICAST_INFO_SIZE &&
              offsetof(MulticastRecord, action) == 0);

}  // namespace sim
