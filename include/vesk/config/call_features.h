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

#ifdef __cplusplus
}
#endif

#endif
