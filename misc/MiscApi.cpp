#include <com/qv/MiscClient.h>
#include <vesk/misc.h>

#include <algorithm>

#include "ipc/Array.h"
#include "ipc/ClientApi.h"
#include "ipc/Text.h"
#include "misc/MiscCallbacks.h"

using namespace com::qv;

namespace {

ClientApi<MiscClient>& service = ClientApi<MiscClient>::instance();

}  // namespace

/* Connecting and events */

bool connect_misc_service(vesk_misc_callbacks callbacks, vesk_service_died_callback on_service_died) {
  return service.connect(on_service_died, [&] { miscCallbacks.set(callbacks); });
}

/* Automatic test */

int binder_get_ate_info_config(void* out) {
  return service.fetch<VESK_ATE_INFO_SIZE>(out, &IMiscService::getAteDisplay);
}
int binder_local_ate_start(int value) { return service.send(&IMiscService::localAteStart, value); }
int binder_local_ate_stop(int value) { return service.send(&IMiscService::localAteStop, value); }
int binder_ate_touch_screen_result(int a, int b) {
  return service.send(&IMiscService::ateTouchScreenResult, a, b);
}

/* Display */

void binder_switch_dsskey_page(int a, int b) { service.send(&IMiscService::switchDsskeyPage, a, b); }
void binder_backlight_always_active(int on) { service.send(&IMiscService::backlightAlwaysActive, on); }
void binder_start_backlight_presetting(void) { service.send(&IMiscService::backlightStartPresetting); }
void binder_preset_backlight_level(int level) { service.send(&IMiscService::balcklightPresetLevel, level); }
void binder_stop_backlight_presetting(void) { service.send(&IMiscService::backlightStopPresetting); }
void binder_notify_lcd_screen_shot_ready(void) { service.send(&IMiscService::notifyLcdScreenShotReady); }

/* USB disk and recordings */

int binder_get_udisk_status(void) {
  return service.value(IfNotConnected{3}, IfFailed{3}, &IMiscService::getUdiskStatus);
}
int binder_get_udisk_capacity(void* out) {
  return service.fetch<VESK_UDISK_CAPACITY_SIZE>(out, &IMiscService::getUdiskCapacity);
}
int binder_get_udisk_record_files(const vesk_array* list) {
  return fill(service, AppendTo<VESK_UDISK_RECORD_FILE_SIZE>{list}, &IMiscService::getUdiskRecordsFiles);
}
int binder_play_rec_file_start(const char* file) {
  return service.value(&IMiscService::playRecFileStart, file);
}
void binder_play_rec_file_stop(void) { service.send(&IMiscService::playRecFileStop); }
void binder_play_rec_file_pause(void) { service.send(&IMiscService::playRecFilePause); }
void binder_play_rec_file_resume(void) { service.send(&IMiscService::playRecFileResume); }
int binder_get_play_rec_file_state(void) { return service.value(&IMiscService::getPlayRecFileState); }

/* MQTT multicast */

int binder_has_mqtt_multicast_info(void) { return service.value(&IMiscService::hasMqttMulticastInfo); }
/* Unlike other records, this one may be null. */
int binder_get_mqtt_multicast_info(void* out) {
  if (out == nullptr) return -1;
  return service.fetch<VESK_MQTT_MULTICAST_INFO_SIZE>(out, &IMiscService::getMqttMulticastInfo);
}
/* Unlike other functions, this one empties the destination on failure. */
int binder_get_mqtt_multicast_action(char* dst, size_t size) {
  if (dst == nullptr || size == 0) return -1;
  char info[VESK_MQTT_MULTICAST_INFO_SIZE + 1] = {};  // The additional zero terminates an action without one.
  if (binder_get_mqtt_multicast_info(info) != 0) {
    *dst = '\0';
    return -1;
  }
  return Truncate{dst, static_cast<int>(std::min(size, sizeof(info)))}.store(info);
}
