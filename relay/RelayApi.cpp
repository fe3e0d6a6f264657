#include <com/qv/RelayClient.h>
#include <vesk/relay.h>

#include "ipc/Immortal.h"
#include "ipc/Service.h"

#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include "ipc/DeclareRows.h"

using namespace com::qv;

namespace {

Service<RelayClient>& service = immortal<Service<RelayClient>>();
const ReleaseAtExit<RelayClient> kReleaseAtExit{service};

/** Sends a record, but no null pointer. */
template <size_t kSize>
int store(const char* record, Service<RelayClient>::Method<const CommonParcelable&, int32_t*> method) {
  return record == nullptr ? -1 : service.value(method, Record<kSize>{record});
}

}  // namespace

/* Connecting */

bool connect_relay_service(void) { return service.connect(); }

/* The relay device. These do not look for null pointers. */

int binder_get_relay_dev_mac(void* info) {
  return service.fetch<VESK_RELAY_DEV_INFO_SIZE>(info, RelayService::getRelayDevInfo);
}
int binder_get_relay_dev_config(int value, void* config) {
  return service.fetch<VESK_RELAY_DEV_CONFIG_SIZE>(config, RelayService::getRelayDevConfig, value);
}
int binder_set_relay_dev_name(const char* name) {
  return service.value(RelayService::setRelayDevName, Record<VESK_RELAY_DEV_NAME_SIZE>{name});
}

/* Output channels */

int binder_get_relay_do_channels(int value, void* channels) {
  if (channels == nullptr) return -1;
  return service.fetch<VESK_RELAY_DO_CHANNELS_SIZE>(channels, RelayService::getRelayDoChannels, value);
}
int binder_set_relay_do_type(const char* type) {
  return store<VESK_RELAY_DO_TYPE_SIZE>(type, RelayService::setRelayDoType);
}
int binder_set_relay_do_time(const char* time) {
  return store<VESK_RELAY_DO_TIME_SIZE>(time, RelayService::setRelayDoTime);
}
int binder_set_relay_do_enabled(const char* enabled) {
  return store<VESK_RELAY_DO_ENABLED_SIZE>(enabled, RelayService::setRelayDoEnabled);
}
int binder_set_relay_do_channel(const char* channel) {
  return store<VESK_RELAY_DO_CHANNEL_SIZE>(channel, RelayService::setRelayDoChannel);
}
int binder_begin_relay_do_save(int value) { return service.value(RelayService::beginRelayDoSave, value); }
int binder_commit_relay_do_save(int value) { return service.value(RelayService::commitRelayDoSave, value); }

/* Actions */

int binder_relay_set_act(const char* action) {
  return store<VESK_RELAY_ACT_SIZE>(action, RelayService::relaySetAct);
}
int binder_relay_schedule_act(const char* action) {
  return store<VESK_RELAY_SCHEDULED_ACT_SIZE>(action, RelayService::relayScheduleAct);
}
int binder_relay_get_act(int value) { return service.value(RelayService::relayGetAct, value); }
int binder_get_relay_do_state(int a, int b) { return service.value(RelayService::getRelayDoState, a, b); }

/* Flags */

int binder_get_relay_config_editable(void) { return service.value(RelayService::getRelayConfigEditable); }
int binder_get_pure_local_scene(void) { return service.value(RelayService::getPureLocalScene); }
