#include <vesk/config/dss.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <android/log.h>

#include "config/ConfigService.h"

using namespace com::qv;

namespace {

/** Copied, since a caller's record need not be aligned. */
template <class T>
T copyOf(const void* record) {
  T copy;
  std::memcpy(&copy, record, sizeof(copy));
  return copy;
}

}  // namespace

/* DSS keys */

int binder_get_dsskey_pages(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getDsskeyPages, value);
}
int binder_get_dsskey_numbers(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getDsskeyNumbers, value);
}
int binder_get_empty_dss_url_index(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getEmptyDssUrlIndex, value);
}
int binder_dss_memory_disable_auto_line(int value) {
  return configService.value(&IConfigService::isDssMemoryDisableAutoLine, value);
}
int binder_get_dss_display(int a, int b, int c, void* display) {
  if (configService.fetch<VESK_DSS_DISPLAY_SIZE>(display, &IConfigService::getDsskeyDisplay, a, b, c) != 0) {
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
  return configService.fetch<VESK_DSSKEY_CONFIG_SIZE>(dsskey, &IConfigService::getDsskeyConfig, a, b, c);
}
int binder_set_dsskey_config(int a, int b, int c, const char* dsskey) {
  return configService.send(&IConfigService::setDsskeyConfig, a, b, c,
                            Record{dsskey, VESK_DSSKEY_CONFIG_SIZE});
}
int binder_get_dss_icon_name(int index, void* name) {
  return configService.fetch<VESK_DSS_ICON_NAME_SIZE>(name, &IConfigService::getDssIconName, index);
}

/* Values of DSS keys in words */

int binder_formatting_dsskey_value(const char* dsskey, int* type, char* buffer, int size) {
  if (dsskey == nullptr || buffer == nullptr || size <= 0) return -1;
  vesk_dsskey_value value{};
  if (configService.fetch<VESK_DSSKEY_VALUE_SIZE>(&value, &IConfigService::formattingDsskeyValue,
                                                  Record{dsskey, VESK_DSSKEY_CONFIG_SIZE}) != 0) {
    return -1;
  }
  if (type != nullptr) *type = value.type;
  return Truncate{buffer, size}.store(std::string(value.text, strnlen(value.text, sizeof(value.text))));
}
int binder_parsing_dsskey_value(int type, const char* text, void* dsskey) {
  // Without a client nothing of the arguments is read.
  if (dsskey == nullptr || configService.proxy() == nullptr) return -1;
  vesk_dsskey_value value{};
  value.type = type;
  if (text != nullptr) std::snprintf(value.text, sizeof(value.text), "%s", text);
  return configService.fetch<VESK_DSSKEY_CONFIG_SIZE>(dsskey, &IConfigService::parsingDsskeyValue,
                                                      Record{&value, VESK_DSSKEY_VALUE_SIZE});
}

/* Expansion modules (MDC) */

int binder_get_mdc_dsskey_config(int a, int b, void* mdc_dsskey) {
  return configService.fetch<VESK_MDC_DSSKEY_CONFIG_SIZE>(mdc_dsskey, &IConfigService::getMdcDsskeyConfig, a,
                                                          b);
}
int binder_get_mdc_first_dsskey_config(int a, void* mdc_dsskey) {
  return configService.fetch<VESK_MDC_DSSKEY_CONFIG_SIZE>(mdc_dsskey,
                                                          &IConfigService::getMdcFirstDsskeyConfig, a);
}
int binder_set_mdc_dsskey_config(int a, int b, const char* mdc_dsskey) {
  return configService.send(&IConfigService::setMdcDsskeyConfig, a, b,
                            Record{mdc_dsskey, VESK_MDC_DSSKEY_CONFIG_SIZE});
}

/* Requests */

void binder_side_dsskey_request(int value) { configService.send(&IConfigService::sideDsskeyRequest, value); }
void binder_func_dsskey_request(int value) { configService.send(&IConfigService::funcDsskeyRequest, value); }
void binder_soft_dsskey_request(int value) { configService.send(&IConfigService::softDsskeyRequest, value); }
void binder_ex_dsskey_request(int value) { configService.send(&IConfigService::exDsskeyRequest, value); }
void binder_opendoor_dsskey_request(int value) {
  configService.send(&IConfigService::opendoorDsskeyRequest, value);
}

/* Soft keys */

int binder_get_user_softkey_config(int index, void* softkey) {
  if (configService.fetch<VESK_USER_SOFTKEY_CONFIG_SIZE>(softkey, &IConfigService::getUserSoftkeyConfig,
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
  return configService.value(&IConfigService::getSoftkeyNum, value);
}
int binder_get_softkey_config_text(int a, int b, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::getSoftkeyText, a,
                            b);
}
int binder_get_softkey_config_key_index(int a, int b) {
  return configService.value(&IConfigService::getSoftkeyConfigKeyIndex, a, b);
}
int binder_set_softkey(int value) { return configService.value(&IConfigService::setSoftkey, value); }
int binder_get_softkey_mode(void) { return configService.value(&IConfigService::getSoftkeyMode); }
int binder_get_softkey_exit_style(void) { return configService.value(&IConfigService::getSoftkeyExitStyle); }
int binder_get_softkey_icon_name(int index, void* name) {
  return configService.fetch<VESK_SOFTKEY_ICON_NAME_SIZE>(name, &IConfigService::getSoftkeyIconName, index);
}

/* Expansion modules: URL and layout */

int binder_get_mdc_recombine_url(void* buf) {
  return configService.fetch<VESK_MDC_RECOMBINE_URL_SIZE>(buf, &IConfigService::getMdcValueRecombineUrl,
                                                          Record{buf, VESK_MDC_RECOMBINE_URL_SIZE});
}
int binder_get_mdc_expand_config(int a, int b, void* out) {
  return configService.fetch<VESK_MDC_EXPAND_SIZE>(out, &IConfigService::getMdcExpandConfig, a, b);
}
int binder_get_exkey_state(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getExkeyState, value);
}

/* List of soft keys */

int binder_get_softkey_list(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getSoftkeyList);
}
int binder_set_softkey_list(int value, const char* list) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setSoftkeyList, value, list);
}
