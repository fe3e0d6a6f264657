#include <vesk/config/dss.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <android/log.h>

#include "config/ConfigService.h"

using namespace com::qv;

namespace {

using DsskeyConfig = Record<VESK_DSSKEY_CONFIG_SIZE>;
using MdcDsskeyConfig = Record<VESK_MDC_DSSKEY_CONFIG_SIZE>;

/** A caller's record need not be aligned. */
template <class T>
T copyOf(const void* record) {
  T copy;
  std::memcpy(&copy, record, sizeof(copy));
  return copy;
}

}  // namespace

/* DSS keys */

int binder_get_dsskey_pages(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getDsskeyPages, value);
}
int binder_get_dsskey_numbers(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getDsskeyNumbers, value);
}
int binder_get_empty_dss_url_index(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getEmptyDssUrlIndex, value);
}
int binder_dss_memory_disable_auto_line(int value) {
  return configService.value(ConfigService::isDssMemoryDisableAutoLine, value);
}
int binder_get_dss_display(int a, int b, int c, void* display) {
  if (configService.fetch<VESK_DSS_DISPLAY_SIZE>(display, ConfigService::getDsskeyDisplay, a, b, c) != 0) {
    return -1;
  }
  const auto shown = copyOf<vesk_dss_display>(display);
  __android_log_print(ANDROID_LOG_DEBUG, ConfigClient::kLogTag,
                      "dsskey display: name[%.*s], value[%.*s], icon[%d], theme[%d]\n",
                      int{sizeof(shown.name)}, shown.name, int{sizeof(shown.value)}, shown.value,
                      static_cast<int>(shown.icon), shown.theme);
  return 0;
}
int binder_get_dsskey_config(int a, int b, int c, void* dsskey) {
  return configService.fetch<VESK_DSSKEY_CONFIG_SIZE>(dsskey, ConfigService::getDsskeyConfig, a, b, c);
}
int binder_set_dsskey_config(int a, int b, int c, const char* dsskey) {
  return configService.send(ConfigService::setDsskeyConfig, a, b, c, DsskeyConfig{dsskey});
}
int binder_get_dss_icon_name(int index, void* name) {
  return configService.fetch<VESK_DSS_ICON_NAME_SIZE>(name, ConfigService::getDssIconName, index);
}

/* Values of DSS keys in words */

int binder_formatting_dsskey_value(const char* dsskey, int* type, char* buffer, int size) {
  if (dsskey == nullptr || buffer == nullptr || size <= 0) return -1;
  vesk_dsskey_value value{};
  if (configService.fetch<VESK_DSSKEY_VALUE_SIZE>(&value, ConfigService::formattingDsskeyValue,
                                                  DsskeyConfig{dsskey}) != 0) {
    return -1;
  }
  if (type != nullptr) *type = value.type;
  return Truncate{buffer, size}.store(std::string(value.text, strnlen(value.text, sizeof(value.text))));
}
int binder_parsing_dsskey_value(int type, const char* text, void* dsskey) {
  if (dsskey == nullptr) return -1;
  vesk_dsskey_value value{};
  value.type = type;
  if (text != nullptr) std::snprintf(value.text, sizeof(value.text), "%s", text);
  return configService.fetch<VESK_DSSKEY_CONFIG_SIZE>(dsskey, ConfigService::parsingDsskeyValue,
                                                      Record<VESK_DSSKEY_VALUE_SIZE>{&value});
}

/* Expansion modules (MDC) */

int binder_get_mdc_dsskey_config(int a, int b, void* mdc_dsskey) {
  return configService.fetch<VESK_MDC_DSSKEY_CONFIG_SIZE>(mdc_dsskey, ConfigService::getMdcDsskeyConfig, a,
                                                          b);
}
int binder_get_mdc_first_dsskey_config(int a, void* mdc_dsskey) {
  return configService.fetch<VESK_MDC_DSSKEY_CONFIG_SIZE>(mdc_dsskey, ConfigService::getMdcFirstDsskeyConfig,
                                                          a);
}
int binder_set_mdc_dsskey_config(int a, int b, const char* mdc_dsskey) {
  return configService.send(ConfigService::setMdcDsskeyConfig, a, b, MdcDsskeyConfig{mdc_dsskey});
}

/* Requests */

void binder_side_dsskey_request(int value) { configService.send(ConfigService::sideDsskeyRequest, value); }
void binder_func_dsskey_request(int value) { configService.send(ConfigService::funcDsskeyRequest, value); }
void binder_soft_dsskey_request(int value) { configService.send(ConfigService::softDsskeyRequest, value); }
void binder_ex_dsskey_request(int value) { configService.send(ConfigService::exDsskeyRequest, value); }
void binder_opendoor_dsskey_request(int value) {
  configService.send(ConfigService::opendoorDsskeyRequest, value);
}

/* Soft keys */

int binder_get_user_softkey_config(int index, void* softkey) {
  if (configService.fetch<VESK_USER_SOFTKEY_CONFIG_SIZE>(softkey, ConfigService::getUserSoftkeyConfig,
                                                         index) != 0) {
    return -1;
  }
  const auto shown = copyOf<vesk_user_softkey>(softkey);
  __android_log_print(ANDROID_LOG_DEBUG, ConfigClient::kLogTag,
                      "user softkey display: name[%.*s], icon[%d], type[%d]\n", int{sizeof(shown.name)},
                      shown.name, shown.icon, static_cast<int>(shown.type));
  return 0;
}
int binder_get_softkey_config_num(int value) {
  return configService.value(ConfigService::getSoftkeyNum, value);
}
int binder_get_softkey_config_text(int a, int b, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, ConfigService::getSoftkeyText, a, b);
}
int binder_get_softkey_config_key_index(int a, int b) {
  return configService.value(ConfigService::getSoftkeyConfigKeyIndex, a, b);
}
int binder_set_softkey(int value) { return configService.value(ConfigService::setSoftkey, value); }
int binder_get_softkey_mode(void) { return configService.value(ConfigService::getSoftkeyMode); }
int binder_get_softkey_exit_style(void) { return configService.value(ConfigService::getSoftkeyExitStyle); }
int binder_get_softkey_icon_name(int index, void* name) {
  return configService.fetch<VESK_SOFTKEY_ICON_NAME_SIZE>(name, ConfigService::getSoftkeyIconName, index);
}

/* Expansion modules: URL and layout */

int binder_get_mdc_recombine_url(void* buf) {
  return configService.fetch<VESK_MDC_RECOMBINE_URL_SIZE>(buf, ConfigService::getMdcValueRecombineUrl,
                                                          Record<VESK_MDC_RECOMBINE_URL_SIZE>{buf});
}
int binder_get_mdc_expand_config(int a, int b, void* out) {
  return configService.fetch<VESK_MDC_EXPAND_SIZE>(out, ConfigService::getMdcExpandConfig, a, b);
}
int binder_get_exkey_state(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getExkeyState, value);
}

/* List of soft keys */

int binder_get_softkey_list(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, ConfigService::getSoftkeyList);
}
int binder_set_softkey_list(int value, const char* list) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::setSoftkeyList, value, list);
}
