/**
 * @file
 * The config service: every setting of the device, and what it tells about itself. Read the conventions in
 * <vesk/vesk_client.h> first.
 *
 * The functions stand in a header for each topic; this one includes them all:
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
 *   <vesk/config/call_features.h>  answering, waiting, dialling, hot line, voice mail, headset, redial, agent
 *   <vesk/config/firmware.h>       checking for firmware, upgrading
 *   <vesk/config/device.h>         status, model and battery of the device, hotel
 *   <vesk/config/discovery.h>      other devices: discovery, names, credentials
 *   <vesk/config/doors.h>          doors, monitor, security, alarm, inputs and outputs, elevators
 *   <vesk/config/nat_share.h>      NAT share
 *   <vesk/config/lists.h>          what comes as a list of records
 *
 * What holds for them besides the conventions:
 *
 *  - Texts. A function that takes a buffer and its size cuts the text to fit, and ends it with a zero.
 *    Where its comment says so, it takes the text only as a whole: otherwise it gives -1, and the buffer is
 *    untouched. If a call fails although there is a connection, that is no failure of such a function: the
 *    text is "", unless the function's comment says otherwise. Without a connection, the buffer is untouched.
 *    With a size of 0 or less nothing is written either.
 *
 *  - Records. The layout is the service's where no header shows it.
 *
 *  - Logging. None of the functions logs, unless its comment says so; what is logged comes under the tag
 *    "ConfigClient".
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
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and the callback; a
 * failed one leaves both as they were. A connection that was replaced is not reported to on_service_died.
 *
 * @param on_service_died the service has died, and the connection with it; may be null
 * @return true if connected
 */
VESK_API bool connect_config_service(vesk_service_died_callback on_service_died);

#ifdef __cplusplus
}
#endif

#endif
