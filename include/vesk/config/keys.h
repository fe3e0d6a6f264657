/**
 * @file
 * Keys and values of the settings, saving them, groups and scenes.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_KEYS_H
#define VESK_CONFIG_KEYS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
