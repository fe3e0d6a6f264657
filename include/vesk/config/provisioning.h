/**
 * @file
 * Provisioning and management: TR-069, automatic provisioning, SPNP, factory reset.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_PROVISIONING_H
#define VESK_CONFIG_PROVISIONING_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
