#include <vesk/config/accounts.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Accounts */

int binder_get_accounts_basic_config(int account, void* config) {
  return configService.fetch<VESK_ACCOUNTS_BASIC_CONFIG_SIZE>(config, ConfigService::getAccountsBasicConfig,
                                                              account);
}
int binder_set_accounts_basic_config(int account, const char* config) {
  return configService.value(ConfigService::setAccountsBasicConfig, account,
                             Record<VESK_ACCOUNTS_BASIC_CONFIG_SIZE>{config});
}
int binder_get_accounts_advanced_config(int account, void* config) {
  return configService.fetch<VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE>(
      config, ConfigService::getAccountsAdvancedConfig, account);
}
int binder_set_accounts_advanced_config(int account, const char* config) {
  return configService.value(ConfigService::setAccountsAdvancedConfig, account,
                             Record<VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE>{config});
}

/* Lines */

int binder_get_line_num(void) { return configService.value(ConfigService::getLineNum); }
int binder_get_line_info(int index, void* info) {
  return configService.fetch<VESK_LINE_INFO_SIZE>(info, ConfigService::getLineInfo, index);
}
int binder_get_active_line_num(void) { return configService.value(ConfigService::getActiveLineNum); }
int binder_get_active_line_info(int index, void* info) {
  return configService.fetch<VESK_LINE_INFO_SIZE>(info, ConfigService::getActiveLineInfo, index);
}
int binder_get_default_ext_line(int flag) {
  return configService.value(ConfigService::getDefaultExtLine, flag);
}
int binder_set_default_ext_line(int line) {
  return configService.value(ConfigService::setDefaultExtLine, line);
}

/* Default line, encryption */

int binder_get_default_line_enable(void) { return configService.value(ConfigService::getDefaultLineEnable); }
int binder_get_default_line(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getDefaultLine);
}
int binder_get_line_srtp_status(int line) {
  return configService.value(ConfigService::getLineSrtpEnable, line);
}
