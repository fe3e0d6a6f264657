/**
 * @file
 * Finding other devices and talking to them: discovery (QDDP), names, credentials, QCMS.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DISCOVERY_H
#define VESK_CONFIG_DISCOVERY_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
