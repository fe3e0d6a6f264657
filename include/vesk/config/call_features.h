/**
 * @file
 * How calls are handled: answering, waiting, dialling, hot line, voice mail, headset, redial, agent.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_CALL_FEATURES_H
#define VESK_CONFIG_CALL_FEATURES_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Size of the record in bytes. */
#define VESK_AGENT_CONFIG_SIZE 144

/* Codecs and calls */

/**
 * Fetches the list of the media codecs.
 *
 * @param[out] buffer receives the text, if all of it fits
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection and if the text does not fit
 */
VESK_API int binder_get_media_codec_list(char* buffer, int size);

/**
 * Tells the service the state of the call.
 *
 * @param state for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_call_state(int state);

/* Agent of a call centre */

/**
 * Asks for the state of the agent.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_agent_status(void);

/**
 * Fetches the settings of the agent.
 *
 * @param[out] config receives a record of VESK_AGENT_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_agent_config(void* config);

/**
 * Sets the settings of the agent.
 *
 * @param config a record of VESK_AGENT_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_agent_config(const char* config);

/**
 * Has the log of the agent cleared.
 *
 * @param flag 0 for false, anything else for true; for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_clear_log(int flag);

/**
 * Asks to log the agent off.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_log_off_request(int value);

/* Answering and waiting */

/** Sizes of the records in bytes. */
#define VESK_AUTO_ANSWER_SIZE 8
#define VESK_CALL_ANSWER_SIZE 68
#define VESK_CWT_CODE_SIZE 40
#define VESK_CWT_SET_SIZE 8

/**
 * Fetches how calls are answered automatically.
 *
 * @param      value for the service to interpret
 * @param[out] out   receives a record of VESK_AUTO_ANSWER_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_auto_answer(int value, void* out);

/**
 * Sets how calls are answered automatically.
 *
 * @param value  for the service to interpret
 * @param record a record of VESK_AUTO_ANSWER_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_auto_answer(int value, const void* record);

/**
 * Fetches how calls are answered.
 *
 * @param      a   for the service to interpret
 * @param      b   for the service to interpret
 * @param[out] out receives a record of VESK_CALL_ANSWER_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_call_answer(int a, int b, void* out);

/**
 * Sets how calls are answered.
 *
 * @param a      for the service to interpret
 * @param b      for the service to interpret
 * @param record a record of VESK_CALL_ANSWER_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_call_answer(int a, int b, const void* record);

/**
 * Fetches the codes for call waiting.
 *
 * @param      value for the service to interpret
 * @param[out] out   receives a record of VESK_CWT_CODE_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_cwt_code(int value, void* out);

/**
 * Sets the codes for call waiting.
 *
 * @param value  for the service to interpret
 * @param record a record of VESK_CWT_CODE_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_cwt_code(int value, const void* record);

/**
 * Fetches call waiting.
 *
 * @param[out] out receives a record of VESK_CWT_SET_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_cwt_set(void* out);

/**
 * Sets call waiting.
 *
 * @param record a record of VESK_CWT_SET_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_cwt_set(const void* record);

/* Dialling */

/** Sizes of the records in bytes. */
#define VESK_DIAL_PLAN_SIZE 132
#define VESK_GENERAL_SIZE 12
#define VESK_INTERCOM_SIZE 4
#define VESK_PASS_DIAL_SIZE 97
#define VESK_HOT_LINE_SIZE 65
#define VESK_REDIAL_CALL_INFO_SIZE 12

/**
 * Fetches the dial plan.
 *
 * @param[out] out receives a record of VESK_DIAL_PLAN_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_dial_plan(void* out);

/**
 * Sets the dial plan.
 *
 * @param record a record of VESK_DIAL_PLAN_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_dial_plan(const void* record);

/**
 * Fetches the general settings of calls.
 *
 * @param[out] out receives a record of VESK_GENERAL_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_general(void* out);

/**
 * Sets the general settings of calls.
 *
 * @param record a record of VESK_GENERAL_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_general(const void* record);

/**
 * Fetches the settings of the intercom.
 *
 * @param[out] out receives a record of VESK_INTERCOM_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_intercom(void* out);

/**
 * Sets the settings of the intercom.
 *
 * @param record a record of VESK_INTERCOM_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_intercom(const void* record);

/**
 * Fetches the settings of pass dialling.
 *
 * @param[out] out receives a record of VESK_PASS_DIAL_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_pass_dial(void* out);

/**
 * Sets the settings of pass dialling.
 *
 * @param record a record of VESK_PASS_DIAL_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_pass_dial(const void* record);

/**
 * Fetches the hot line.
 *
 * @param[out] out   receives a record of VESK_HOT_LINE_SIZE bytes; untouched on failure
 * @param      value for the service to interpret
 * @return 0; -1 on failure
 */
VESK_API int binder_get_hot_line(void* out, int value);

/**
 * Sets the hot line.
 *
 * @param record a record of VESK_HOT_LINE_SIZE bytes
 * @param value  for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_hot_line(const void* record, int value);

/**
 * Fetches the settings of redialling.
 *
 * @param[out] out receives a record of VESK_REDIAL_CALL_INFO_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_redial_call_info(void* out);

/**
 * Sets the settings of redialling.
 *
 * @param record a record of VESK_REDIAL_CALL_INFO_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_redial_call_info(const void* record);

/**
 * Fetches the emergency number.
 *
 * @param[out] dst  receives the number, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_emergency_number(char* dst, int size);

/**
 * Sets the emergency number.
 *
 * @param number the number
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_emergency_number(const char* number);

/* Voice mail, headset and hook */

/** Sizes of the records in bytes. */
#define VESK_VOICE_MSG_SIZE 65
#define VESK_HEADSET_INFO_SIZE 2

/**
 * Fetches the settings of voice mail.
 *
 * @param[out] out   receives a record of VESK_VOICE_MSG_SIZE bytes; untouched on failure
 * @param      value for the service to interpret
 * @return 0; -1 on failure
 */
VESK_API int binder_get_voice_msg(void* out, int value);

/**
 * Sets the settings of voice mail.
 *
 * @param record a record of VESK_VOICE_MSG_SIZE bytes
 * @param value  for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_voice_msg(const void* record, int value);

/**
 * Fetches the settings of the headset.
 *
 * @param[out] out receives a record of VESK_HEADSET_INFO_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_headset_info(void* out);

/**
 * Sets the settings of the headset.
 *
 * @param record a record of VESK_HEADSET_INFO_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_headset_info(const void* record);

/**
 * Asks whether the headset is used automatically.
 *
 * @return 1 if it is, 0 if not; 0 on failure
 */
VESK_API int binder_get_auto_headset_enable(void);

/**
 * Sets whether the headset is used automatically.
 *
 * @param enable 0 for no, anything else for yes
 */
VESK_API void binder_set_auto_headset_enable(int enable);

/**
 * Asks for the state of the hook.
 *
 * @return the service's answer, 1 or 0; 0 on failure
 */
VESK_API int binder_get_handset_hook_status(void);

/* Whom a call shows, and picking up */

/** Sizes of the records in bytes. */
#define VESK_PICK_UP_CONFIG_SIZE 18
#define VESK_NUMBER_PRIVACY_SIZE 129

/**
 * Asks whether anonymous calls are refused.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_ban_anonymous_status(int value);

/**
 * Sets whether anonymous calls are refused.
 *
 * @param value  for the service to interpret
 * @param status for the service to interpret
 */
VESK_API void binder_set_ban_anonymous_status(int value, int status);

/**
 * Fetches how callers are displayed.
 *
 * @param[out] dst  receives the type of display, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_caller_display_type(char* dst, int size);

/**
 * Asks whether the "to" information of a call is displayed.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_display_to_info_enable(void);

/**
 * Fetches the settings of picking up calls.
 *
 * @param[out] out receives a record of VESK_PICK_UP_CONFIG_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_pick_up_config(void* out);

/**
 * Fetches the privacy data of a number.
 *
 * @param[in,out] rec a record of VESK_NUMBER_PRIVACY_SIZE bytes. The number is the text that starts at
 *                    byte 1 and ends with a zero. The record that comes back takes the place of the whole;
 *                    untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_number_privacy_data(void* rec);

#ifdef __cplusplus
}
#endif

#endif
