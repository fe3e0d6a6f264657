/**
 * @file
 * The network: status, addresses, VLAN, quality of service, VPN.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_NETWORK_H
#define VESK_CONFIG_NETWORK_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_NETWORK_STATUS_SIZE 476
#define VESK_NETWORK_DETAILS_SIZE 328
#define VESK_STATIC_IP_CONFIG_SIZE 272
#define VESK_DHCP_IP_CONFIG_SIZE 98
#define VESK_PPPOE_IPV4_CONFIG_SIZE 128
#define VESK_WAN_VLAN_CONFIG_SIZE 97
#define VESK_VPN_CONFIG_SIZE 644

/* Status */

/** Fetches the status of the network (VESK_NETWORK_STATUS_SIZE bytes). */
VESK_API int binder_get_network_status(void* status);

/** Fetches details of the network (VESK_NETWORK_DETAILS_SIZE bytes). */
VESK_API int binder_get_network_details(int a, int b, void* details);

/** Returns the type of the active network. */
VESK_API int binder_get_active_network_type(void);

/** Returns whether the Ethernet link is up; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_eth_link_status(void);

/** Fetches the IPv4 address of the wireless network. */
VESK_API int binder_get_wlan_ipv4_addr(char* buffer, int size);

/* Addresses. The service defines the numbers that select one. */

/** Returns the IP mode; 0 on failure. */
VESK_API int binder_get_ip_mode(int value);

/** Sets the IP mode. */
VESK_API int binder_set_ip_mode(int value, int mode);

/** Returns the IP state; 0 on failure. */
VESK_API int binder_get_ip_state(int value, int flag);

/** Fetches the settings of a static address (VESK_STATIC_IP_CONFIG_SIZE bytes). */
VESK_API int binder_get_static_ip_config(int value, int flag, void* config);

/** Sets the settings of a static address (VESK_STATIC_IP_CONFIG_SIZE bytes). */
VESK_API int binder_set_static_ip_config(int value, int flag, const char* config);

/** Fetches the DHCP settings of an address (VESK_DHCP_IP_CONFIG_SIZE bytes). */
VESK_API int binder_get_dhcp_ip_config(int value, int flag, void* config);

/** Sets the DHCP settings of an address (VESK_DHCP_IP_CONFIG_SIZE bytes). */
VESK_API int binder_set_dhcp_ip_config(int value, int flag, const char* config);

/** Fetches the settings of PPPoE (VESK_PPPOE_IPV4_CONFIG_SIZE bytes). */
VESK_API int binder_get_pppoe_ipv4_config(void* config);

/** Sets the settings of PPPoE (VESK_PPPOE_IPV4_CONFIG_SIZE bytes). */
VESK_API int binder_set_pppoe_ipv4_config(const char* config);

/* DHCP options */

/** Fetches a DHCP option. Always returns 0. */
VESK_API int binder_get_dhcp(int index, char* buffer, int size);

/** Sets a DHCP option. */
VESK_API int binder_set_dhcp(int index, const char* text);

/* VLAN and VPN */

/** Fetches the settings of the VLAN on the WAN side (VESK_WAN_VLAN_CONFIG_SIZE bytes). */
VESK_API int binder_get_wan_vlan_config(void* config);

/** Sets the settings of the VLAN on the WAN side (VESK_WAN_VLAN_CONFIG_SIZE bytes). */
VESK_API int binder_set_wan_vlan_config(const char* config);

/** Fetches the settings of the VPN (VESK_VPN_CONFIG_SIZE bytes). */
VESK_API int binder_get_vpn_config(void* config);

/** Sets the settings of the VPN (VESK_VPN_CONFIG_SIZE bytes). */
VESK_API int binder_set_vpn_config(const char* config);

/* Quality of service and VLAN */

/** Sizes of the records in bytes. */
#define VESK_QOS_CDP_SIZE 68
#define VESK_LAN_VLAN_SIZE 68
#define VESK_QOS_LLDP_SIZE 66
#define VESK_QOS_SET_SIZE 129

/** Fetches the CDP settings for quality of service (VESK_QOS_CDP_SIZE bytes). */
VESK_API int binder_get_qos_cdp(void* out);

/** Sets the CDP settings for quality of service (VESK_QOS_CDP_SIZE bytes). */
VESK_API int binder_set_qos_cdp(const void* record);

/** Fetches the settings of the VLAN on the LAN side (VESK_LAN_VLAN_SIZE bytes). */
VESK_API int binder_get_lan_vlan(void* out);

/** Sets the settings of the VLAN on the LAN side (VESK_LAN_VLAN_SIZE bytes). */
VESK_API int binder_set_lan_vlan(const void* record);

/** Fetches the LLDP settings for quality of service (VESK_QOS_LLDP_SIZE bytes). */
VESK_API int binder_get_qos_lldp(void* out);

/** Sets the LLDP settings for quality of service (VESK_QOS_LLDP_SIZE bytes). */
VESK_API int binder_set_qos_lldp(const void* record);

/** Fetches the settings for quality of service (VESK_QOS_SET_SIZE bytes). */
VESK_API int binder_get_qos_set(void* out);

/** Sets the settings for quality of service (VESK_QOS_SET_SIZE bytes). */
VESK_API int binder_set_qos_set(const void* record);

/* Web server */

/** Returns the type of the web server. */
VESK_API int binder_get_web_type(void);

/** Sets the type of the web server. */
VESK_API int binder_set_web_type(int type);

#ifdef __cplusplus
}
#endif

#endif
