#include <vesk/config/passwords.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Keypad, entry and menu */

int binder_get_keyboard_password(void* out) {
  return configService.fetch<VESK_KEYBOARD_PASSWORD_SIZE>(out, &IConfigService::getKeyboardPasswordConfig);
}
int binder_set_keyboard_password(const void* record) {
  return configService.value(&IConfigService::setKeyboardPasswordConfig,
                             Record{record, VESK_KEYBOARD_PASSWORD_SIZE});
}
int binder_get_enter_password(int flag, char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getEnterPassword, flag);
}
int binder_set_menu_password(const char* password) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setMenuPassword, password);
}

/* Keyboard lock */

int binder_get_kblock_password(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getKblockPassword);
}
void binder_set_kblock_status(int status) { configService.send(&IConfigService::setkblockStatus, status); }

/* Security password */

int binder_set_security_password(const char* password) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setSecurityPassword, password);
}
int binder_get_security_password(int flag, char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getSecurityPassword,
                            flag);
}
int binder_stop_security_input_tone(void) { return configService.value(&IConfigService::stopInputTone); }
