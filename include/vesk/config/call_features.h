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

#ifdef __cplusplus
}
#endif

#endif
