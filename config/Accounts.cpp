#include <vesk/config/accounts.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Accounts */

int binder_get_accounts_basic_config(int account, void* config) {
  return configService.fetch<VESK_ACCOUNTS_BASIC_CONFIG_SIZE>(config, &IConfigService::getAccountsBasicConfig,
                                                              account);
}
int binder_set_accounts_basic_config(int account, const char* config) {
  return configService.value(&IConfigService::setAccountsBasicConfig, account,
                             Record{config, VESK_ACCOUNTS_BASIC_CONFIG_SIZE});
}
int binder_get_accounts_advanced_config(int account, void* config) {
  return configService.fetch<VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE>(
      config, &IConfigService::getAccountsAdvancedConfig, account);
}
int binder_set_accounts_advanced_config(int account, const char* config) {
  return configService.value(&IConfigService::setAccountsAdvancedConfig, account,
                             Record{config, VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE});
}

/* Lines */

int binder_get_line_num(void) { return configService.value(&IConfigService::getLineNum); }
int binder_get_line_info(int index, void* info) {
  return configService.fetch<VESK_LINE_INFO_SIZE>(info, &IConfigService::getLineInfo, index);
}
int binder_get_active_line_num(void) { return configService.value(&IConfigService::getActiveLineNum); }
int binder_get_active_line_info(int index, void* info) {
  return configService.fetch<VESK_LINE_INFO_SIZE>(info, &IConfigService::getActiveLineInfo, index);
}
int binder_get_default_ext_line(int flag) {
  return configService.value(&IConfigService::getDefaultExtLine, flag);
}
int binder_set_default_ext_line(int line) {
  return configService.value(&IConfigService::setDefaultExtLine, line);
}

/* Default line, encryption */

int binder_get_default_line_enable(void) {
  return configService.value(&IConfigService::getDefaultLineEnable);
}
int binder_get_default_line(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getDefaultLine);
}
int binder_get_line_srtp_status(int line) {
  return configService.value(&IConfigService::getLineSrtpEnable, line);
}
