/**
 * @file
 * The device: its status, model, battery and the information on it.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DEVICE_H
#define VESK_CONFIG_DEVICE_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
