#include <vesk/config/time.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <com/qv/detail/Platform.h>

#include <utils/String16.h>
#include <utils/String8.h>

#include "config/ConfigService.h"
#include "ipc/PlatformCompat.h"

using namespace com::qv;

namespace {

/** One entry of the list, cut to the size that is reserved for each. */
std::string timeZoneText(size_t index, const android::String16& entry) {
  char text[VESK_TIME_ZONE_ENTRY_SIZE] = {};
  std::snprintf(text, sizeof(text), "%d:%s;", static_cast<int>(index), bytesOf(android::String8(entry)));
  return text;
}

}  // namespace

/* Time and date */

int binder_timedate_get_config(void* timedate) {
  return configService.fetch<VESK_TIMEDATE_CONFIG_SIZE>(timedate, &IConfigService::timedateGetConfig);
}
int binder_timedate_set_config(const char* timedate) {
  return configService.value(&IConfigService::timedateSetConfig, Record{timedate, VESK_TIMEDATE_CONFIG_SIZE});
}

/* Time zones */

int binder_get_time_zone(char* buffer, int size) {
  const auto service = configService.proxy();
  if (service == nullptr) return -1;
  std::vector<android::String16> entries;
  service->getTimeZone(&entries);
  if (size <= 0) return -1;
  if (entries.empty()) return 0;
  const auto room = static_cast<size_t>(size);
  if (entries.size() > (room - 1) / VESK_TIME_ZONE_ENTRY_SIZE) return -1;

  size_t end = strnlen(buffer, room);
  for (size_t i = 0; i < entries.size(); ++i) {
    const std::string text = timeZoneText(i, entries[i]);
    if (text.size() + end + 1 > room) return -1;
    std::memcpy(buffer + end, text.c_str(), text.size() + 1);
    end += text.size();
  }
  return 0;
}
int binder_trans_timezone_cfg_2_index(int cfg) {
  return configService.value(&IConfigService::transTimezonecfg2index, cfg);
}
int binder_trans_timezone_index_2_cfg(int index) {
  return configService.value(&IConfigService::transTimezoneindex2cfg, index);
}

/* Default time zone */

int binder_get_default_tzpath(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getDefaultTzPath);
}
