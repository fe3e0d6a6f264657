#include <vesk/config/dial_peers.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Dial peers */

int bineder_get_configed_dialpeer_number(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getConfigedDialpeerNumber);
}
int binder_dialpeer_get_config(int index, void* dialpeer) {
  return configService.fetch<VESK_DIALPEER_CONFIG_SIZE>(dialpeer, &IConfigService::dialpeerGetConfig, index);
}
int binder_dialpeer_set_config(int index, const char* dialpeer) {
  return configService.value(&IConfigService::dialpeerSetConfig, index,
                             Record{dialpeer, VESK_DIALPEER_CONFIG_SIZE});
}
void binder_dialpeer_delete_config(int index) {
  configService.send(&IConfigService::dialpeerDeleteConfig, index);
}

/* Their lines */

int binder_dialpeer_get_line_max(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::dialpeerGetLineMax);
}
int binder_dialpeer_get_line_info(int line, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::dialpeerGetLineInfo,
                            line);
}
int binder_dialpeer_is_p2p_line(int line) {
  return configService.value(&IConfigService::dialpeerIsP2PLine, line);
}
