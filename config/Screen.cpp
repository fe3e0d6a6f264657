#include <vesk/config/screen.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* The screen and its backgrounds */

int binder_screeninfo_get_config(void* screeninfo) {
  return configService.fetch<VESK_SCREENINFO_CONFIG_SIZE>(screeninfo, &IConfigService::screeninfoGetConfig);
}
int binder_screeninfo_set_config(const char* screeninfo) {
  return configService.value(&IConfigService::screeninfoSetConfig,
                             Record{screeninfo, VESK_SCREENINFO_CONFIG_SIZE});
}
int binder_get_display_item_config(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getdisplayitemconfig);
}
int binder_get_user_bg_config(void* config) {
  return configService.fetch<VESK_USER_BG_CONFIG_SIZE>(config, &IConfigService::getUserBgConfig);
}
int binder_get_background_name(int index, void* name) {
  return configService.fetch<VESK_BACKGROUND_NAME_SIZE>(name, &IConfigService::getBackgroundName, index);
}

/* The idle screen and its notices */

int binder_get_idle_tips(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, AllOrNothing{buffer, size}, &IConfigService::idleGetTips);
}
int binder_get_idle_icon_status(void* status) {
  return configService.fetch<VESK_IDLE_ICON_STATUS_SIZE>(status, &IConfigService::getIdleIconStatus);
}
int binder_get_missed_data(void* data) {
  return configService.fetch<VESK_MISSED_DATA_SIZE>(data, &IConfigService::getMissedData);
}
int binder_get_popup_status(void* status) {
  return configService.fetch<VESK_POPUP_STATUS_SIZE>(status, &IConfigService::getPopupStatus);
}

/* The screen saver: C++ linkage, the short record */

int binder_get_screensaver_display(ipc_screen_saver_display_t* display) {
  return configService.fetch<VESK_SCREENSAVER_DISPLAY_SHORT_SIZE>(display,
                                                                  &IConfigService::getScreensaverDisplay);
}

/* Screen saver, colors, backlight */

int binder_get_screensaver_timeout(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getScreensaverTimeout);
}
int binder_get_screensaver_display(void* out) {
  return configService.fetch<VESK_SCREENSAVER_DISPLAY_SIZE>(out, &IConfigService::getScreensaverDisplay);
}
int binder_get_font_color(void* out) {
  return configService.fetch<VESK_FONT_COLOR_SIZE>(out, &IConfigService::getFontColor);
}
int binderSetKeyboardBacklight(int value) {
  return configService.value(&IConfigService::setKeyboardBacklight, value);
}

/* Language and theme */

int binder_get_default_language(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getDefaultLanguage);
}
int binder_set_default_language(const char* language) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setDefaultLanguage, language);
}
int binder_get_default_standby_interface(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size},
                            &IConfigService::getDefaultStandbyInterface);
}
int binder_get_default_theme(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getDefaultTheme);
}
int binder_set_default_theme(const char* theme) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setDefaultTheme, theme);
}
int binder_get_greeting_word(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getGreetingWord);
}
int binder_set_greeting_word(const char* text) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setGreetingWord, text);
}
