/**
 * @file
 * Wi-Fi, Bluetooth, access points, wireless keys (WK).
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_WIRELESS_H
#define VESK_CONFIG_WIRELESS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
