/**
 * @file
 * Doors, the monitor, security, alarm, inputs and outputs, relays, elevators.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DOORS_H
#define VESK_CONFIG_DOORS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
