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

/**
 * Fetches the status of the network.
 *
 * @param[out] status receives a record of VESK_NETWORK_STATUS_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_network_status(void* status);

/**
 * Fetches details of the network.
 *
 * @param      a       for the service to interpret
 * @param      b       for the service to interpret
 * @param[out] details receives a record of VESK_NETWORK_DETAILS_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_network_details(int a, int b, void* details);

/**
 * Asks for the type of the network that is in use.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_active_network_type(void);

/**
 * Asks whether the Ethernet link is up.
 *
 * @return 1 if so, 0 if not and if the call failed; -1 without a connection
 */
VESK_API int binder_get_eth_link_status(void);

/**
 * Fetches the IPv4 address of the wireless network.
 *
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_get_wlan_ipv4_addr(char* buffer, int size);

/* Addresses. Which of them is meant, the integers say. */

/**
 * Asks for the IP mode.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_ip_mode(int value);

/**
 * Sets the IP mode.
 *
 * @param value for the service to interpret
 * @param mode  for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_ip_mode(int value, int mode);

/**
 * Asks for the IP state.
 *
 * @param value for the service to interpret
 * @param flag  0 for false, anything else for true; for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_ip_state(int value, int flag);

/**
 * Fetches the settings of a static address.
 *
 * @param      value  for the service to interpret
 * @param      flag   0 for false, anything else for true; for the service to interpret
 * @param[out] config receives a record of VESK_STATIC_IP_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_static_ip_config(int value, int flag, void* config);

/**
 * Sets a static address.
 *
 * @param value  for the service to interpret
 * @param flag   0 for false, anything else for true; for the service to interpret
 * @param config a record of VESK_STATIC_IP_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_static_ip_config(int value, int flag, const char* config);

/**
 * Fetches the settings of an address that is had by DHCP.
 *
 * @param      value  for the service to interpret
 * @param      flag   0 for false, anything else for true; for the service to interpret
 * @param[out] config receives a record of VESK_DHCP_IP_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_dhcp_ip_config(int value, int flag, void* config);

/**
 * Sets the settings of an address that is had by DHCP.
 *
 * @param value  for the service to interpret
 * @param flag   0 for false, anything else for true; for the service to interpret
 * @param config a record of VESK_DHCP_IP_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_dhcp_ip_config(int value, int flag, const char* config);

/**
 * Fetches the settings of PPPoE.
 *
 * @param[out] config receives a record of VESK_PPPOE_IPV4_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_pppoe_ipv4_config(void* config);

/**
 * Sets the settings of PPPoE.
 *
 * @param config a record of VESK_PPPOE_IPV4_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_pppoe_ipv4_config(const char* config);

/* DHCP options */

/**
 * Fetches a DHCP option.
 *
 * @param      index  which of the options
 * @param[out] buffer receives the text, cut to fit; untouched without a connection
 * @param      size   the size of the buffer in bytes
 * @return 0 in every case
 */
VESK_API int binder_get_dhcp(int index, char* buffer, int size);

/**
 * Sets a DHCP option.
 *
 * @param index which of the options
 * @param text  the option
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_dhcp(int index, const char* text);

/* VLAN and VPN */

/**
 * Fetches the settings of the VLAN on the WAN side.
 *
 * @param[out] config receives a record of VESK_WAN_VLAN_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_wan_vlan_config(void* config);

/**
 * Sets the settings of the VLAN on the WAN side.
 *
 * @param config a record of VESK_WAN_VLAN_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_wan_vlan_config(const char* config);

/**
 * Fetches the settings of the VPN.
 *
 * @param[out] config receives a record of VESK_VPN_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_vpn_config(void* config);

/**
 * Sets the settings of the VPN.
 *
 * @param config a record of VESK_VPN_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_vpn_config(const char* config);

/* Quality of service and VLAN */

/** Sizes of the records in bytes. */
#define VESK_QOS_CDP_SIZE 68
#define VESK_LAN_VLAN_SIZE 68
#define VESK_QOS_LLDP_SIZE 66
#define VESK_QOS_SET_SIZE 129

/**
 * Fetches the CDP settings for quality of service.
 *
 * @param[out] out receives a record of VESK_QOS_CDP_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_qos_cdp(void* out);

/**
 * Sets the CDP settings for quality of service.
 *
 * @param record a record of VESK_QOS_CDP_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_qos_cdp(const void* record);

/**
 * Fetches the VLAN of the LAN port.
 *
 * @param[out] out receives a record of VESK_LAN_VLAN_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_lan_vlan(void* out);

/**
 * Sets the VLAN of the LAN port.
 *
 * @param record a record of VESK_LAN_VLAN_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_lan_vlan(const void* record);

/**
 * Fetches the LLDP settings for quality of service.
 *
 * @param[out] out receives a record of VESK_QOS_LLDP_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_qos_lldp(void* out);

/**
 * Sets the LLDP settings for quality of service.
 *
 * @param record a record of VESK_QOS_LLDP_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_qos_lldp(const void* record);

/**
 * Fetches the settings for quality of service.
 *
 * @param[out] out receives a record of VESK_QOS_SET_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_qos_set(void* out);

/**
 * Sets the settings for quality of service.
 *
 * @param record a record of VESK_QOS_SET_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_qos_set(const void* record);

/* Web server */

/**
 * Asks for the type of the web server.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_web_type(void);

/**
 * Sets the type of the web server.
 *
 * @param type for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_web_type(int type);

#ifdef __cplusplus
}
#endif

#endif
