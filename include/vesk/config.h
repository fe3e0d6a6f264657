/**
 * @file
 * The config service: every setting of the device, and its status. Read the conventions in
 * <vesk/vesk_client.h> first.
 *
 * Each topic has a header of its own; this one includes them all:
 *
 *   <vesk/config/keys.h>           keys and values, saving, groups and scenes
 *   <vesk/config/dnd.h>            do not disturb
 *   <vesk/config/dss.h>            DSS keys, expansion modules, soft keys
 *   <vesk/config/dial_peers.h>     dial peers
 *   <vesk/config/time.h>           time and date, time zones
 *   <vesk/config/screen.h>         screen, screen saver, backgrounds, language, idle screen
 *   <vesk/config/sound.h>          ringtones, muting, volumes, tones
 *   <vesk/config/network.h>        status, addresses, VLAN, quality of service, VPN
 *   <vesk/config/accounts.h>       accounts and lines
 *   <vesk/config/provisioning.h>   TR-069, automatic provisioning, SPNP, factory reset
 *   <vesk/config/wireless.h>       Wi-Fi, Bluetooth, access points, wireless keys
 *   <vesk/config/passwords.h>      passwords and the keyboard lock
 *   <vesk/config/call_features.h>  answering, waiting, dialling, voice mail, headset, agent
 *   <vesk/config/firmware.h>       firmware check and upgrade
 *   <vesk/config/device.h>         status, model and battery of the device, hotel
 *   <vesk/config/discovery.h>      other devices: discovery, names, credentials
 *   <vesk/config/doors.h>          doors, monitor, security, alarm, inputs and outputs, elevators
 *   <vesk/config/nat_share.h>      NAT share
 *   <vesk/config/lists.h>          lists of records
 *
 * Two things are different here:
 *
 *  - Texts. A function that fetches a text into a buffer cuts it to fit and ends it with a zero
 *    byte. "All or nothing" means that a text which does not fit gives -1 and leaves
 *    the buffer untouched. If the call fails although there is a connection, the function does not
 *    fail: the text is "", unless the function's comment says otherwise. Without a connection, or
 *    with a size of 0 or less, nothing is written. "Always returns 0" includes the call without a
 *    connection.
 *
 *  - Logging. connect_config_service logs, and so do the functions whose comments say it, under the
 *    tag "ConfigClient".
 */
#ifndef VESK_CONFIG_H
#define VESK_CONFIG_H

#include <stdbool.h>

#include <vesk/common.h>
#include <vesk/config/accounts.h>
#include <vesk/config/call_features.h>
#include <vesk/config/device.h>
#include <vesk/config/dial_peers.h>
#include <vesk/config/discovery.h>
#include <vesk/config/dnd.h>
#include <vesk/config/doors.h>
#include <vesk/config/dss.h>
#include <vesk/config/firmware.h>
#include <vesk/config/keys.h>
#include <vesk/config/lists.h>
#include <vesk/config/nat_share.h>
#include <vesk/config/network.h>
#include <vesk/config/passwords.h>
#include <vesk/config/provisioning.h>
#include <vesk/config/screen.h>
#include <vesk/config/sound.h>
#include <vesk/config/time.h>
#include <vesk/config/wireless.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Connects to the config service.
 *
 * If the service is absent, waits as long as the service manager does, about five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and the
 * callback; a failed one leaves both unchanged. The death of a replaced connection is not reported.
 *
 * @param on_service_died may be null
 * @return true if connected
 */
VESK_API bool connect_config_service(vesk_service_died_callback on_service_died);

#ifdef __cplusplus
}
#endif

#endif
