/**
 * @file
 * The screen: its settings, screen saver, backgrounds, language, and what the idle screen shows.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_SCREEN_H
#define VESK_CONFIG_SCREEN_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
