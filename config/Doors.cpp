#include <vesk/config/doors.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Doors and the monitor */

void binder_opendoor_request(int a, int b) { configService.send(ConfigService::opendoorRequest, a, b); }
void binder_set_door_config_reset(int value) { configService.send(ConfigService::setDoorConfigReset, value); }
void binder_set_monitor_config_reset(int value) {
  configService.send(ConfigService::setMonitorConfigReset, value);
}

/* Security and elevators */

int binder_get_security(int index, void* security) {
  return configService.fetch<VESK_SECURITY_CONFIG_SIZE>(security, ConfigService::getSecurityConfig, index);
}
int binder_set_security(int index, const char* security) {
  const auto service = configService.proxy();
  if (service == nullptr) return -1;
  const CommonParcelable request(security, VESK_SECURITY_CONFIG_SIZE);
  service->setSecurityConfig(index, request);
  // The service gives no record back. What was sent goes back to where it came from, through a pointer that
  // only looks read-only: this is what callers know.
  request.copyTo(const_cast<char*>(security), VESK_SECURITY_CONFIG_SIZE);
  return 0;
}
int binder_get_elevator(int index, void* elevator) {
  return configService.fetch<VESK_ELEVATOR_CONFIG_SIZE>(elevator, ConfigService::getElevatorConfig, index);
}

/* Monitor */

int binder_set_monitor_config(const void* record) {
  return configService.value(ConfigService::setMonitorConfig, Record<VESK_MONITOR_CONFIG_SIZE>{record});
}
int binderGetRtspClientWorkMode(void) { return configService.value(ConfigService::getRtspClientWorkMode); }
int binder_get_snapshot_timeout(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getSnapshotTimeout);
}
void binder_url_opendoor(const char* url) { configService.send(ConfigService::urlOpenDoor, url); }
int binder_elevator_contron_info(int info) {
  return configService.value(ConfigService::veskElevatorContronInfo, info);
}

/* Family call */

int binder_set_family_call_enabled(int enabled) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::setFamilyCallEnabled, enabled);
}
int binder_get_family_call_type(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getFamilyCallType);
}
int binder_get_family_call_ip(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, ConfigService::getFamilyCallIp);
}

/* Alarm */

int binder_get_alarm_resetcode(char* dst, int value, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, ConfigService::getAlarmResetCode, value);
}
int binder_get_alarm_mode(void) { return configService.value(ConfigService::getAlarmMode); }
int binder_set_alarm_mode(int mode) { return configService.value(ConfigService::setAlarmMode, mode); }
int binder_security_logs_del_by_id(int id) {
  return configService.value(ConfigService::securityLogsDelById, id);
}

/* Inputs, outputs and relays */

int binder_get_input_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getInputNums);
}
int binder_get_alarm_input_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getAlarmInputNums);
}
int binder_get_output_nums(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getOutputNums);
}
int binder_input_reset_send_mqtt(int value) {
  return configService.value(ConfigService::inputResetSendMqtt, value);
}
int binder_get_inputlogs_unread_num(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getInputlogsUnreadNum);
}
int binder_set_inputlogs_read_done(void) { return configService.value(ConfigService::setInputlogsReadDone); }
int binder_get_relay_output_trigger(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getRelayOutputTrigger, value);
}
void binder_set_relay_output_trigger(int value, int trigger) {
  configService.send(ConfigService::setRelayOutputTrigger, value, trigger);
}
int binder_get_smart_home_relay_config(int index, void* out) {
  return configService.fetch<VESK_SMART_HOME_RELAY_CONFIG_SIZE>(out, ConfigService::getSmartHomeRelayConfig,
                                                                index);
}
