#include <vesk/config/doors.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Doors and the monitor */

void binder_opendoor_request(int a, int b) { configService.send(&IConfigService::opendoorRequest, a, b); }
void binder_set_door_config_reset(int value) {
  configService.send(&IConfigService::setDoorConfigReset, value);
}
void binder_set_monitor_config_reset(int value) {
  configService.send(&IConfigService::setMonitorConfigReset, value);
}

/* Security and elevators */

int binder_get_security(int index, void* security) {
  return configService.fetch<VESK_SECURITY_CONFIG_SIZE>(security, &IConfigService::getSecurityConfig, index);
}
int binder_set_security(int index, const char* security) {
  const auto service = configService.proxy();
  if (service == nullptr) return -1;
  const CommonParcelable request(security, VESK_SECURITY_CONFIG_SIZE);
  service->setSecurityConfig(index, request);
  // The reply has no record. Callers rely on the request being copied back to them, through a
  // pointer that is only declared read-only.
  request.copyTo(const_cast<char*>(security), VESK_SECURITY_CONFIG_SIZE);
  return 0;
}
int binder_get_elevator(int index, void* elevator) {
  return configService.fetch<VESK_ELEVATOR_CONFIG_SIZE>(elevator, &IConfigService::getElevatorConfig, index);
}

/* Monitor */

int binder_set_monitor_config(const void* record) {
  return configService.value(&IConfigService::setMonitorConfig, Record{record, VESK_MONITOR_CONFIG_SIZE});
}
int binderGetRtspClientWorkMode(void) { return configService.value(&IConfigService::getRtspClientWorkMode); }
int binder_get_snapshot_timeout(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getSnapshotTimeout);
}
void binder_url_opendoor(const char* url) { configService.send(&IConfigService::urlOpenDoor, url); }
int binder_elevator_contron_info(int info) {
  return configService.value(&IConfigService::veskElevatorContronInfo, info);
}

/* Family call */

int binder_set_family_call_enabled(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setFamilyCallEnabled, enabled);
}
int binder_get_family_call_type(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getFamilyCallType);
}
int binder_get_family_call_ip(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getFamilyCallIp);
}

/* Alarm */

int binder_get_alarm_resetcode(char* dst, int value, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getAlarmResetCode,
                            value);
}
int binder_get_alarm_mode(void) { return configService.value(&IConfigService::getAlarmMode); }
int binder_set_alarm_mode(int mode) { return configService.value(&IConfigService::setAlarmMode, mode); }
int binder_security_logs_del_by_id(int id) {
  return configService.value(&IConfigService::securityLogsDelById, id);
}

/* Inputs, outputs and relays */

int binder_get_input_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getInputNums);
}
int binder_get_alarm_input_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getAlarmInputNums);
}
int binder_get_output_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getOutputNums);
}
int binder_input_reset_send_mqtt(int value) {
  return configService.value(&IConfigService::inputResetSendMqtt, value);
}
int binder_get_inputlogs_unread_num(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getInputlogsUnreadNum);
}
int binder_set_inputlogs_read_done(void) {
  return configService.value(&IConfigService::setInputlogsReadDone);
}
int binder_get_relay_output_trigger(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getRelayOutputTrigger, value);
}
void binder_set_relay_output_trigger(int value, int trigger) {
  configService.send(&IConfigService::setRelayOutputTrigger, value, trigger);
}
int binder_get_smart_home_relay_config(int index, void* out) {
  return configService.fetch<VESK_SMART_HOME_RELAY_CONFIG_SIZE>(out, &IConfigService::getSmartHomeRelayConfig,
                                                                index);
}
