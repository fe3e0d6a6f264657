#include <com/qv/MiscClient.h>
#include <vesk/misc.h>

#include <algorithm>

#include "ipc/Array.h"
#include "ipc/Immortal.h"
#include "ipc/Service.h"
#include "ipc/Text.h"
#include "misc/MiscCallbacks.h"

#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include "ipc/DeclareRows.h"

using namespace com::qv;

namespace {

/* Until the application has given its own: the service may raise an event while the first connection is being
 * made. */
constexpr vesk_misc_notice_callback kIgnore = [] {};
constexpr vesk_misc_callbacks kNoCallbacks{
    kIgnore, kIgnore, [](const char*) {}, kIgnore, kIgnore, kIgnore, kIgnore,
    {},      kIgnore, [](int) {},         kIgnore};

Service<MiscClient>& service = immortal<Service<MiscClient>>();
const ReleaseAtExit<MiscClient> kReleaseAtExit{service};

}  // namespace

Synchronized<vesk_misc_callbacks>& com::qv::miscCallbacks =
    immortal<Synchronized<vesk_misc_callbacks>>(kNoCallbacks);

/* Connecting and events */

bool connect_misc_service(vesk_misc_callbacks callbacks, vesk_service_died_callback on_service_died) {
  const auto hook = [](ClientBase* client, const android::wp<android::IBinder>&) { service.died(client); };
  return service.connect(hook, on_service_died, [&] { miscCallbacks.set(callbacks); });
}

/* Automatic test */

int binder_get_ate_info_config(void* out) {
  return service.fetch<VESK_ATE_INFO_SIZE>(out, MiscService::getAteDisplay);
}
int binder_local_ate_start(int value) { return service.send(MiscService::localAteStart, value); }
int binder_local_ate_stop(int value) { return service.send(MiscService::localAteStop, value); }
int binder_ate_touch_screen_result(int a, int b) {
  return service.send(MiscService::ateTouchScreenResult, a, b);
}

/* Display */

void binder_switch_dsskey_page(int a, int b) { service.send(MiscService::switchDsskeyPage, a, b); }
void binder_backlight_always_active(int on) { service.send(MiscService::backlightAlwaysActive, on); }
void binder_start_backlight_presetting(void) { service.send(MiscService::backlightStartPresetting); }
void binder_preset_backlight_level(int level) { service.send(MiscService::balcklightPresetLevel, level); }
void binder_stop_backlight_presetting(void) { service.send(MiscService::backlightStopPresetting); }
void binder_notify_lcd_screen_shot_ready(void) { service.send(MiscService::notifyLcdScreenShotReady); }

/* USB disk and recordings */

int binder_get_udisk_status(void) {
  return service.value(IfNotConnected{3}, IfFailed{3}, MiscService::getUdiskStatus);
}
int binder_get_udisk_capacity(void* out) {
  return service.fetch<VESK_UDISK_CAPACITY_SIZE>(out, MiscService::getUdiskCapacity);
}
/* A failed call is an empty list, and so a success. */
int binder_get_udisk_record_files(const vesk_array* list) {
  const AppendTo<VESK_UDISK_RECORD_FILE_SIZE> append{list};
  if (!append.isUsable()) return -1;
  const int count = service.list<VESK_UDISK_RECORD_FILE_SIZE>(append, MiscService::getUdiskRecordsFiles);
  return count < 0 ? -1 : 0;
}
int binder_play_rec_file_start(const char* file) {
  return service.value(MiscService::playRecFileStart, file);
}
void binder_play_rec_file_stop(void) { service.send(MiscService::playRecFileStop); }
void binder_play_rec_file_pause(void) { service.send(MiscService::playRecFilePause); }
void binder_play_rec_file_resume(void) { service.send(MiscService::playRecFileResume); }
int binder_get_play_rec_file_state(void) { return service.value(MiscService::getPlayRecFileState); }

/* MQTT multicast */

int binder_has_mqtt_multicast_info(void) { return service.value(MiscService::hasMqttMulticastInfo); }
/* The one record that may be null, which spares the call. */
int binder_get_mqtt_multicast_info(void* out) {
  if (out == nullptr) return -1;
  return service.fetch<VESK_MQTT_MULTICAST_INFO_SIZE>(out, MiscService::getMqttMulticastInfo);
}
/* Empties the destination when there is nothing to tell, where other functions leave it alone. */
int binder_get_mqtt_multicast_action(char* dst, size_t size) {
  if (dst == nullptr || size == 0) return -1;
  char info[VESK_MQTT_MULTICAST_INFO_SIZE + 1] =
      {};  // The zero behind it ends an action that the service did not end.
  if (binder_get_mqtt_multicast_info(info) != 0) {
    *dst = '\0';
    return -1;
  }
  return Truncate{dst, static_cast<int>(std::min(size, sizeof(info)))}.store(info);
}
