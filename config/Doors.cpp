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
  // The service gives no record back. What was sent goes back to where it came from, through a pointer that
  // only looks read-only: this is what callers know.
  request.copyTo(const_cast<char*>(security), VESK_SECURITY_CONFIG_SIZE);
  return 0;
}
int binder_get_elevator(int index, void* elevator) {
  return configService.fetch<VESK_ELEVATOR_CONFIG_SIZE>(elevator, &IConfigService::getElevatorConfig, index);
}
