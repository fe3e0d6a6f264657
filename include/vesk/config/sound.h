/**
 * @file
 * Ringtones and ringing, muting, volumes, tones.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_SOUND_H
#define VESK_CONFIG_SOUND_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
