/**
 * @file
 * Call features: answering, waiting, dialling, hot line, voice mail, headset, redial, agent.
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

/** Fetches the list of media codecs, all or nothing: -1 if it does not fit. */
VESK_API int binder_get_media_codec_list(char* buffer, int size);

/** Sets the state of the call. */
VESK_API int binder_set_call_state(int state);

/* Agent of a call centre */

/** Returns the state of the agent. */
VESK_API int binder_get_agent_status(void);

/** Fetches the settings of the agent (VESK_AGENT_CONFIG_SIZE bytes). */
VESK_API int binder_get_agent_config(void* config);

/** Sets the settings of the agent (VESK_AGENT_CONFIG_SIZE bytes). */
VESK_API int binder_set_agent_config(const char* config);

/** Clears the log of the agent. */
VESK_API int binder_set_clear_log(int flag);

/** Requests that the agent be logged off. */
VESK_API int binder_set_log_off_request(int value);

/* Answering and waiting */

/** Sizes of the records in bytes. */
#define VESK_AUTO_ANSWER_SIZE 8
#define VESK_CALL_ANSWER_SIZE 68
#define VESK_CWT_CODE_SIZE 40
#define VESK_CWT_SET_SIZE 8

/** Fetches the settings of automatic answering (VESK_AUTO_ANSWER_SIZE bytes). */
VESK_API int binder_get_auto_answer(int value, void* out);

/** Sets the settings of automatic answering (VESK_AUTO_ANSWER_SIZE bytes). */
VESK_API int binder_set_auto_answer(int value, const void* record);

/** Fetches the settings of answering calls (VESK_CALL_ANSWER_SIZE bytes). */
VESK_API int binder_get_call_answer(int a, int b, void* out);

/** Sets the settings of answering calls (VESK_CALL_ANSWER_SIZE bytes). */
VESK_API int binder_set_call_answer(int a, int b, const void* record);

/** Fetches the codes for call waiting (VESK_CWT_CODE_SIZE bytes). */
VESK_API int binder_get_cwt_code(int value, void* out);

/** Sets the codes for call waiting (VESK_CWT_CODE_SIZE bytes). */
VESK_API int binder_set_cwt_code(int value, const void* record);

/** Fetches the settings of call waiting (VESK_CWT_SET_SIZE bytes). */
VESK_API int binder_get_cwt_set(void* out);

/** Sets the settings of call waiting (VESK_CWT_SET_SIZE bytes). */
VESK_API int binder_set_cwt_set(const void* record);

/* Dialling */

/** Sizes of the records in bytes. */
#define VESK_DIAL_PLAN_SIZE 132
#define VESK_GENERAL_SIZE 12
#define VESK_INTERCOM_SIZE 4
#define VESK_PASS_DIAL_SIZE 97
#define VESK_HOT_LINE_SIZE 65
#define VESK_REDIAL_CALL_INFO_SIZE 12

/** Fetches the dial plan (VESK_DIAL_PLAN_SIZE bytes). */
VESK_API int binder_get_dial_plan(void* out);

/** Sets the dial plan (VESK_DIAL_PLAN_SIZE bytes). */
VESK_API int binder_set_dial_plan(const void* record);

/** Fetches the general settings of calls (VESK_GENERAL_SIZE bytes). */
VESK_API int binder_get_general(void* out);

/** Sets the general settings of calls (VESK_GENERAL_SIZE bytes). */
VESK_API int binder_set_general(const void* record);

/** Fetches the settings of the intercom (VESK_INTERCOM_SIZE bytes). */
VESK_API int binder_get_intercom(void* out);

/** Sets the settings of the intercom (VESK_INTERCOM_SIZE bytes). */
VESK_API int binder_set_intercom(const void* record);

/** Fetches the settings of pass dialling (VESK_PASS_DIAL_SIZE bytes). */
VESK_API int binder_get_pass_dial(void* out);

/** Sets the settings of pass dialling (VESK_PASS_DIAL_SIZE bytes). */
VESK_API int binder_set_pass_dial(const void* record);

/** Fetches the settings of the hot line (VESK_HOT_LINE_SIZE bytes). */
VESK_API int binder_get_hot_line(void* out, int value);

/** Sets the settings of the hot line (VESK_HOT_LINE_SIZE bytes). */
VESK_API int binder_set_hot_line(const void* record, int value);

/** Fetches the settings of redialling (VESK_REDIAL_CALL_INFO_SIZE bytes). */
VESK_API int binder_get_redial_call_info(void* out);

/** Sets the settings of redialling (VESK_REDIAL_CALL_INFO_SIZE bytes). */
VESK_API int binder_set_redial_call_info(const void* record);

/** Fetches the emergency number. Always returns 0. */
VESK_API int binder_get_emergency_number(char* dst, int size);

/** Sets the emergency number. Returns 0 on failure. */
VESK_API int binder_set_emergency_number(const char* number);

/* Voice mail, headset and hook */

/** Sizes of the records in bytes. */
#define VESK_VOICE_MSG_SIZE 65
#define VESK_HEADSET_INFO_SIZE 2

/** Fetches the settings of voice mail (VESK_VOICE_MSG_SIZE bytes). */
VESK_API int binder_get_voice_msg(void* out, int value);

/** Sets the settings of voice mail (VESK_VOICE_MSG_SIZE bytes). */
VESK_API int binder_set_voice_msg(const void* record, int value);

/** Fetches the settings of the headset (VESK_HEADSET_INFO_SIZE bytes). */
VESK_API int binder_get_headset_info(void* out);

/** Sets the settings of the headset (VESK_HEADSET_INFO_SIZE bytes). */
VESK_API int binder_set_headset_info(const void* record);

/** Returns whether the headset is used automatically; 0 on failure. */
VESK_API int binder_get_auto_headset_enable(void);

/** Sets whether the headset is used automatically. */
VESK_API void binder_set_auto_headset_enable(int enable);

/** Returns the status of the hook, 1 or 0; 0 on failure. */
VESK_API int binder_get_handset_hook_status(void);

/* Anonymous calls, display and pick-up */

/** Sizes of the records in bytes. */
#define VESK_PICK_UP_CONFIG_SIZE 18
#define VESK_NUMBER_PRIVACY_SIZE 129

/** Returns the status of the ban on anonymous calls. */
VESK_API int binder_get_ban_anonymous_status(int value);

/** Sets the status of the ban on anonymous calls. */
VESK_API void binder_set_ban_anonymous_status(int value, int status);

/** Fetches the display type of callers. Always returns 0. */
VESK_API int binder_get_caller_display_type(char* dst, int size);

/** Returns the setting for displaying the "to" information; 0 on failure. */
VESK_API int binder_get_display_to_info_enable(void);

/** Fetches the settings of picking up calls (VESK_PICK_UP_CONFIG_SIZE bytes). */
VESK_API int binder_get_pick_up_config(void* out);

/**
 * Fetches the privacy data of a number.
 *
 * @param[in,out] rec VESK_NUMBER_PRIVACY_SIZE bytes. The number is the text that starts at byte 1;
 *                    the answer replaces the whole record.
 */
VESK_API int binder_get_number_privacy_data(void* rec);

#ifdef __cplusplus
}
#endif

#endif
