#include <vesk/config/dial_peers.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Dial peers */

int bineder_get_configed_dialpeer_number(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getConfigedDialpeerNumber);
}
int binder_dialpeer_get_config(int index, void* dialpeer) {
  return configService.fetch<VESK_DIALPEER_CONFIG_SIZE>(dialpeer, ConfigService::dialpeerGetConfig, index);
}
int binder_dialpeer_set_config(int index, const char* dialpeer) {
  return configService.value(ConfigService::dialpeerSetConfig, index,
                             Record<VESK_DIALPEER_CONFIG_SIZE>{dialpeer});
}
void binder_dialpeer_delete_config(int index) {
  configService.send(ConfigService::dialpeerDeleteConfig, index);
}

/* Their lines */

int binder_dialpeer_get_line_max(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::dialpeerGetLineMax);
}
int binder_dialpeer_get_line_info(int line, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, ConfigService::dialpeerGetLineInfo,
                            line);
}
int binder_dialpeer_is_p2p_line(int line) {
  return configService.value(ConfigService::dialpeerIsP2PLine, line);
}
