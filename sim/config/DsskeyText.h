#pragma once

#include <vesk/config/dss.h>

#include <cstdint>
#include <optional>

namespace sim {

/** The settings of a DSS key, as this device lays them out. */
struct DsskeyRecord {
  int32_t type;
  int32_t line;
  int32_t icon;
  int32_t theme;
  char title[156];
  char value[512];
};
static_assert(sizeof(DsskeyRecord) == VESK_DSSKEY_CONFIG_SIZE);

/**
 * Puts a key in words: its value, and behind it what differs from 0 or "", each as ";name=value": line, icon,
 * theme, title. A backslash stands before each ';' and '\' of a value. Nothing if these words, which have to
 * be shorter than 512 bytes, would not give the same record again.
 */
std::optional<vesk_dsskey_value> formatDsskey(const DsskeyRecord& key);

/** The reverse; nothing if the words make no sense. */
std::optional<DsskeyRecord> parseDsskey(const vesk_dsskey_value& words);

}  // namespace sim
