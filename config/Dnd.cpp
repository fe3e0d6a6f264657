#include <vesk/config/dnd.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* The mode */

int binder_get_dnd_mode(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getDndMode);
}
void binder_set_dnd_mode(int mode) { configService.send(&IConfigService::setDndMode, mode); }

/* The state of a line */

int binder_get_line_dnd_state(int line) {
  return configService.value(&IConfigService::getLineDndState, line);
}
void binder_set_lind_dnd_state(int line, int on) {
  configService.send(&IConfigService::setLineDndState, line, on);
}

/* The times */

int binder_get_space_dnd_start_time(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getSpaceDndStartTime);
}
int binder_get_space_dnd_end_time(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getSpaceDndEndTime);
}
void binder_set_space_dnd_time(const char* start_time, const char* end_time) {
  configService.send(&IConfigService::setSpaceDndTime, start_time, end_time);
}
int binder_get_dnd_timer_state(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getTimerDndState);
}
void binder_set_dnd_timer_state(int state) { configService.send(&IConfigService::setTimerDndState, state); }
