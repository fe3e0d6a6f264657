#include <vesk/config/call_features.h>

#include "config/ConfigService.h"
#include "config/TextAt.h"

using namespace com::qv;

/* Codecs and calls */

int binder_get_media_codec_list(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, AllOrNothing{buffer, size},
                            &IConfigService::getMediaCodecList);
}
int binder_set_call_state(int state) { return configService.value(&IConfigService::setCallState, state); }

/* Agent of a call centre */

int binder_get_agent_status(void) { return configService.value(&IConfigService::getAgentState); }
int binder_get_agent_config(void* config) {
  return configService.fetch<VESK_AGENT_CONFIG_SIZE>(config, &IConfigService::getAgentConfig);
}
int binder_set_agent_config(const char* config) {
  return configService.value(&IConfigService::setAgentConfig, Record{config, VESK_AGENT_CONFIG_SIZE});
}
int binder_set_clear_log(int flag) { return configService.value(&IConfigService::setAgentClearLog, flag); }
int binder_set_log_off_request(int value) {
  return configService.value(&IConfigService::setAgentLogOffRequest, value);
}

/* Answering and waiting */

int binder_get_auto_answer(int value, void* out) {
  return configService.fetch<VESK_AUTO_ANSWER_SIZE>(out, &IConfigService::getAutoAnswerModel, value);
}
int binder_set_auto_answer(int value, const void* record) {
  return configService.value(&IConfigService::setAutoAnswerModel, value,
                             Record{record, VESK_AUTO_ANSWER_SIZE});
}
int binder_get_call_answer(int a, int b, void* out) {
  return configService.fetch<VESK_CALL_ANSWER_SIZE>(out, &IConfigService::getCallAnswerModel, a, b);
}
int binder_set_call_answer(int a, int b, const void* record) {
  return configService.value(&IConfigService::setCallAnswerModel, a, b,
                             Record{record, VESK_CALL_ANSWER_SIZE});
}
int binder_get_cwt_code(int value, void* out) {
  return configService.fetch<VESK_CWT_CODE_SIZE>(out, &IConfigService::getCwtCodeModel, value);
}
int binder_set_cwt_code(int value, const void* record) {
  return configService.value(&IConfigService::setCwtCodeModel, value, Record{record, VESK_CWT_CODE_SIZE});
}
int binder_get_cwt_set(void* out) {
  return configService.fetch<VESK_CWT_SET_SIZE>(out, &IConfigService::getCwtSetModel);
}
int binder_set_cwt_set(const void* record) {
  return configService.value(&IConfigService::setCwtSetModel, Record{record, VESK_CWT_SET_SIZE});
}

/* Dialling */

int binder_get_dial_plan(void* out) {
  return configService.fetch<VESK_DIAL_PLAN_SIZE>(out, &IConfigService::getDialPlanModel);
}
int binder_set_dial_plan(const void* record) {
  return configService.value(&IConfigService::setDialPlanModel, Record{record, VESK_DIAL_PLAN_SIZE});
}
int binder_get_general(void* out) {
  return configService.fetch<VESK_GENERAL_SIZE>(out, &IConfigService::getGeneralModel);
}
int binder_set_general(const void* record) {
  return configService.value(&IConfigService::setGeneralModel, Record{record, VESK_GENERAL_SIZE});
}
int binder_get_intercom(void* out) {
  return configService.fetch<VESK_INTERCOM_SIZE>(out, &IConfigService::getIntercomModel);
}
int binder_set_intercom(const void* record) {
  return configService.value(&IConfigService::setIntercomModel, Record{record, VESK_INTERCOM_SIZE});
}
int binder_get_pass_dial(void* out) {
  return configService.fetch<VESK_PASS_DIAL_SIZE>(out, &IConfigService::getPassDialModel);
}
int binder_set_pass_dial(const void* record) {
  return configService.value(&IConfigService::setPassDialModel, Record{record, VESK_PASS_DIAL_SIZE});
}
int binder_get_hot_line(void* out, int value) {
  return configService.fetch<VESK_HOT_LINE_SIZE>(out, &IConfigService::getHotLineModel, value);
}
int binder_set_hot_line(const void* record, int value) {
  return configService.value(&IConfigService::setHotLineModel, Record{record, VESK_HOT_LINE_SIZE}, value);
}
int binder_get_redial_call_info(void* out) {
  return configService.fetch<VESK_REDIAL_CALL_INFO_SIZE>(out, &IConfigService::getRedialCallModel);
}
int binder_set_redial_call_info(const void* record) {
  return configService.value(&IConfigService::setRedialCallModel, Record{record, VESK_REDIAL_CALL_INFO_SIZE});
}
int binder_get_emergency_number(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getEmergencyNumber);
}
int binder_set_emergency_number(const char* number) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setEmergencyNumber, number);
}

/* Voice mail, headset and hook */

int binder_get_voice_msg(void* out, int value) {
  return configService.fetch<VESK_VOICE_MSG_SIZE>(out, &IConfigService::getVoiceMsgModel, value);
}
int binder_set_voice_msg(const void* record, int value) {
  return configService.value(&IConfigService::setVoiceMsgModel, Record{record, VESK_VOICE_MSG_SIZE}, value);
}
int binder_get_headset_info(void* out) {
  return configService.fetch<VESK_HEADSET_INFO_SIZE>(out, &IConfigService::getHeadsetModel);
}
int binder_set_headset_info(const void* record) {
  return configService.value(&IConfigService::setHeadsetModel, Record{record, VESK_HEADSET_INFO_SIZE});
}
int binder_get_auto_headset_enable(void) {
  return configService.value(&IConfigService::getAutoHeadsetEnable);
}
void binder_set_auto_headset_enable(int enable) {
  configService.send(&IConfigService::setAutoHeadsetEnable, enable);
}
int binder_get_handset_hook_status(void) {
  return configService.value(&IConfigService::getHandsetHookStatus);
}

/* Whom a call shows, and picking up */

int binder_get_ban_anonymous_status(int value) {
  return configService.value(&IConfigService::getBanAnonymousCallStatus, value);
}
void binder_set_ban_anonymous_status(int value, int status) {
  configService.send(&IConfigService::setBanAnonymousCallStatus, value, status);
}
int binder_get_caller_display_type(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getCallerDisplayType);
}
int binder_get_display_to_info_enable(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getDisplayToInfoEnable);
}
int binder_get_pick_up_config(void* out) {
  return configService.fetch<VESK_PICK_UP_CONFIG_SIZE>(out, &IConfigService::getPickUpConfig);
}
/* The first byte of the record belongs to the reply; a request holds only the number behind it. */
int binder_get_number_privacy_data(void* rec) {
  return configService.fetch<VESK_NUMBER_PRIVACY_SIZE>(rec, &IConfigService::getNumberPrivacyData,
                                                       TextAt{rec, 1});
}
