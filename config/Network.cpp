#include <vesk/config/network.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Status */

int binder_get_network_status(void* status) {
  return configService.fetch<VESK_NETWORK_STATUS_SIZE>(status, ConfigService::getNetworkStatus);
}
int binder_get_network_details(int a, int b, void* details) {
  return configService.fetch<VESK_NETWORK_DETAILS_SIZE>(details, ConfigService::getNetworkDetails, a, b);
}
int binder_get_active_network_type(void) { return configService.value(ConfigService::getActiveNetworkType); }
int binder_get_eth_link_status(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, ConfigService::getEthLinkStatus);
}
int binder_get_wlan_ipv4_addr(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, ConfigService::getWlanIpv4Address);
}

/* Addresses */

int binder_get_ip_mode(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getIpMode, value);
}
int binder_set_ip_mode(int value, int mode) {
  return configService.value(ConfigService::setIpMode, value, mode);
}
int binder_get_ip_state(int value, int flag) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, ConfigService::getIpState, value, flag);
}
int binder_get_static_ip_config(int value, int flag, void* config) {
  return configService.fetch<VESK_STATIC_IP_CONFIG_SIZE>(config, ConfigService::getStaticIpConfig, value,
                                                         flag);
}
int binder_set_static_ip_config(int value, int flag, const char* config) {
  return configService.value(ConfigService::setStaticIpconfig, value, flag,
                             Record<VESK_STATIC_IP_CONFIG_SIZE>{config});
}
int binder_get_dhcp_ip_config(int value, int flag, void* config) {
  return configService.fetch<VESK_DHCP_IP_CONFIG_SIZE>(config, ConfigService::getDhcpIpConfig, value, flag);
}
int binder_set_dhcp_ip_config(int value, int flag, const char* config) {
  return configService.value(ConfigService::setDhcpIpConfig, value, flag,
                             Record<VESK_DHCP_IP_CONFIG_SIZE>{config});
}
int binder_get_pppoe_ipv4_config(void* config) {
  return configService.fetch<VESK_PPPOE_IPV4_CONFIG_SIZE>(config, ConfigService::getPppoeConfig);
}
int binder_set_pppoe_ipv4_config(const char* config) {
  return configService.value(ConfigService::setPppoeConfig, Record<VESK_PPPOE_IPV4_CONFIG_SIZE>{config});
}

/* DHCP options */

int binder_get_dhcp(int index, char* buffer, int size) {
  return configService.text(IfNotConnected{0}, Truncate{buffer, size}, ConfigService::getDhcpConfig, index);
}
int binder_set_dhcp(int index, const char* text) {
  return configService.value(ConfigService::setDhcpConfig, index, text);
}

/* VLAN and VPN */

int binder_get_wan_vlan_config(void* config) {
  return configService.fetch<VESK_WAN_VLAN_CONFIG_SIZE>(config, ConfigService::getWanVlanConfig);
}
int binder_set_wan_vlan_config(const char* config) {
  return configService.value(ConfigService::setWanVlanConfig, Record<VESK_WAN_VLAN_CONFIG_SIZE>{config});
}
int binder_get_vpn_config(void* config) {
  return configService.fetch<VESK_VPN_CONFIG_SIZE>(config, ConfigService::getVpnConfig);
}
int binder_set_vpn_config(const char* config) {
  return configService.value(ConfigService::setVpnConfig, Record<VESK_VPN_CONFIG_SIZE>{config});
}

/* Quality of service and VLAN */

int binder_get_qos_cdp(void* out) {
  return configService.fetch<VESK_QOS_CDP_SIZE>(out, ConfigService::getQosCdpConfig);
}
int binder_set_qos_cdp(const void* record) {
  return configService.value(ConfigService::setQosCdpConfig, Record<VESK_QOS_CDP_SIZE>{record});
}
int binder_get_lan_vlan(void* out) {
  return configService.fetch<VESK_LAN_VLAN_SIZE>(out, ConfigService::getLanVlanConfig);
}
int binder_set_lan_vlan(const void* record) {
  return configService.value(ConfigService::setLanVlanConfig, Record<VESK_LAN_VLAN_SIZE>{record});
}
int binder_get_qos_lldp(void* out) {
  return configService.fetch<VESK_QOS_LLDP_SIZE>(out, ConfigService::getQosLldpConfig);
}
int binder_set_qos_lldp(const void* record) {
  return configService.value(ConfigService::setQosLldpConfig, Record<VESK_QOS_LLDP_SIZE>{record});
}
int binder_get_qos_set(void* out) {
  return configService.fetch<VESK_QOS_SET_SIZE>(out, ConfigService::getQosSetConfig);
}
int binder_set_qos_set(const void* record) {
  return configService.value(ConfigService::setQosSetConfig, Record<VESK_QOS_SET_SIZE>{record});
}

/* Web server */

int binder_get_web_type(void) { return configService.value(ConfigService::getWebTypeConfig); }
int binder_set_web_type(int type) { return configService.value(ConfigService::setWebTypeConfig, type); }
