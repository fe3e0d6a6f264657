/**
 * @file
 * Dial peers: how the numbers that are dialled are routed.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DIAL_PEERS_H
#define VESK_CONFIG_DIAL_PEERS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
