#include <com/qv/AteEventListener.h>

#include <cstdio>

#include "misc/MiscCallbacks.h"

namespace com::qv {

using android::binder::Status;

Status AteEventListener::onlineAteStartedEvent() {
  return notify(&vesk_misc_callbacks::on_online_ate_started);
}

Status AteEventListener::onlineAteStopedEvent() {
  return notify(&vesk_misc_callbacks::on_online_ate_stopped);
}

Status AteEventListener::updateContextEvent(const std::string& text) {
  char buffer[VESK_ATE_CONTEXT_SIZE] = {};
  std::snprintf(buffer, sizeof(buffer), "%s", text.c_str());
  return notify(&vesk_misc_callbacks::on_update_context, static_cast<const char*>(buffer));
}

Status AteEventListener::lcdSwitchEvent() { return notify(&vesk_misc_callbacks::on_lcd_switch); }

Status AteEventListener::touchScreenStartEvent() {
  return notify(&vesk_misc_callbacks::on_touch_screen_start);
}

Status AteEventListener::touchScreenStopEvent() { return notify(&vesk_misc_callbacks::on_touch_screen_stop); }

Status AteEventListener::systemRebootEvent() { return notify(&vesk_misc_callbacks::on_system_reboot); }

}  // namespace com::qv
