#include <com/qv/RelayClient.h>
#include <vesk/relay.h>

#include "ipc/ClientApi.h"

using namespace com::qv;

namespace {

ClientApi<RelayClient>& service = ClientApi<RelayClient>::instance();

/** Sends a record; -1 for a null pointer. */
template <size_t kSize>
int sendRecord(const char* record, ClientApi<RelayClient>::Method<const CommonParcelable&, int32_t*> method) {
  return record == nullptr ? -1 : service.value(method, Record{record, kSize});
}

}  // namespace

/* Connecting */

bool connect_relay_service(void) { return service.connectWithoutDeathNotification(); }

/* The relay device. These functions do not check for null pointers. */

int binder_get_relay_dev_mac(void* info) {
  return service.fetch<VESK_RELAY_DEV_INFO_SIZE>(info, &IRelayService::getRelayDevInfo);
}
int binder_get_relay_dev_config(int value, void* config) {
  return service.fetch<VESK_RELAY_DEV_CONFIG_SIZE>(config, &IRelayService::getRelayDevConfig, value);
}
int binder_set_relay_dev_name(const char* name) {
  return service.value(&IRelayService::setRelayDevName, Record{name, VESK_RELAY_DEV_NAME_SIZE});
}

/* Output channels */

int binder_get_relay_do_channels(int value, void* channels) {
  if (channels == nullptr) return -1;
  return service.fetch<VESK_RELAY_DO_CHANNELS_SIZE>(channels, &IRelayService::getRelayDoChannels, value);
}
int binder_set_relay_do_type(const char* type) {
  return sendRecord<VESK_RELAY_DO_TYPE_SIZE>(type, &IRelayService::setRelayDoType);
}
int binder_set_relay_do_time(const char* time) {
  return sendRecord<VESK_RELAY_DO_TIME_SIZE>(time, &IRelayService::setRelayDoTime);
}
int binder_set_relay_do_enabled(const char* enabled) {
  return sendRecord<VESK_RELAY_DO_ENABLED_SIZE>(enabled, &IRelayService::setRelayDoEnabled);
}
int binder_set_relay_do_channel(const char* channel) {
  return sendRecord<VESK_RELAY_DO_CHANNEL_SIZE>(channel, &IRelayService::setRelayDoChannel);
}
int binder_begin_relay_do_save(int value) { return service.value(&IRelayService::beginRelayDoSave, value); }
int binder_commit_relay_do_save(int value) { return service.value(&IRelayService::commitRelayDoSave, value); }

/* Actions */

int binder_relay_set_act(const char* action) {
  return sendRecord<VESK_RELAY_ACT_SIZE>(action, &IRelayService::relaySetAct);
}
int binder_relay_schedule_act(const char* action) {
  return sendRecord<VESK_RELAY_SCHEDULED_ACT_SIZE>(action, &IRelayService::relayScheduleAct);
}
int binder_relay_get_act(int value) { return service.value(&IRelayService::relayGetAct, value); }
int binder_get_relay_do_state(int a, int b) { return service.value(&IRelayService::getRelayDoState, a, b); }

/* Flags */

int binder_get_relay_config_editable(void) { return service.value(&IRelayService::getRelayConfigEditable); }
int binder_get_pure_local_scene(void) { return service.value(&IRelayService::getPureLocalScene); }
