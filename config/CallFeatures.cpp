#include <vesk/config/call_features.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Codecs and calls */

int binder_get_media_codec_list(char* buffer, int size) {
  return configService.text(Absent{-1}, Whole{buffer, size}, &IConfigService::getMediaCodecList);
}
int binder_set_call_state(int state) { return configService.value(&IConfigService::setCallState, state); }

/* Agent of a call centre */

int binder_get_agent_status(void) { return configService.value(&IConfigService::getAgentState); }
int binder_get_agent_config(void* config) {
  return configService.fetch<VESK_AGENT_CONFIG_SIZE>(config, &IConfigService::getAgentConfig);
}
int binder_set_agent_config(const char* config) {
  return configService.value(&IConfigService::setAgentConfig, Record<VESK_AGENT_CONFIG_SIZE>{config});
}
int binder_set_clear_log(int flag) { return configService.value(&IConfigService::setAgentClearLog, flag); }
int binder_set_log_off_request(int value) {
  return configService.value(&IConfigService::setAgentLogOffRequest, value);
}
