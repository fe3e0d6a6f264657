#include <vesk/config/network.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Status */

int binder_get_network_status(void* status) {
  return configService.fetch<VESK_NETWORK_STATUS_SIZE>(status, &IConfigService::getNetworkStatus);
}
int binder_get_network_details(int a, int b, void* details) {
  return configService.fetch<VESK_NETWORK_DETAILS_SIZE>(details, &IConfigService::getNetworkDetails, a, b);
}
int binder_get_active_network_type(void) {
  return configService.value(&IConfigService::getActiveNetworkType);
}
int binder_get_eth_link_status(void) {
  return configService.value(IfNotConnected{-1}, IfFailed{0}, &IConfigService::getEthLinkStatus);
}
int binder_get_wlan_ipv4_addr(char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::getWlanIpv4Address);
}

/* Addresses */

int binder_get_ip_mode(int value) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getIpMode, value);
}
int binder_set_ip_mode(int value, int mode) {
  return configService.value(&IConfigService::setIpMode, value, mode);
}
int binder_get_ip_state(int value, int flag) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getIpState, value, flag);
}
int binder_get_static_ip_config(int value, int flag, void* config) {
  return configService.fetch<VESK_STATIC_IP_CONFIG_SIZE>(config, &IConfigService::getStaticIpConfig, value,
                                                         flag);
}
int binder_set_static_ip_config(int value, int flag, const char* config) {
  return configService.value(&IConfigService::setStaticIpconfig, value, flag,
                             Record{config, VESK_STATIC_IP_CONFIG_SIZE});
}
int binder_get_dhcp_ip_config(int value, int flag, void* config) {
  return configService.fetch<VESK_DHCP_IP_CONFIG_SIZE>(config, &IConfigService::getDhcpIpConfig, value, flag);
}
int binder_set_dhcp_ip_config(int value, int flag, const char* config) {
  return configService.value(&IConfigService::setDhcpIpConfig, value, flag,
                             Record{config, VESK_DHCP_IP_CONFIG_SIZE});
}
int binder_get_pppoe_ipv4_config(void* config) {
  return configService.fetch<VESK_PPPOE_IPV4_CONFIG_SIZE>(config, &IConfigService::getPppoeConfig);
}
int binder_set_pppoe_ipv4_config(const char* config) {
  return configService.value(&IConfigService::setPppoeConfig, Record{config, VESK_PPPOE_IPV4_CONFIG_SIZE});
}

/* DHCP options */

int binder_get_dhcp(int index, char* buffer, int size) {
  return configService.text(IfNotConnected{0}, Truncate{buffer, size}, &IConfigService::getDhcpConfig, index);
}
int binder_set_dhcp(int index, const char* text) {
  return configService.value(&IConfigService::setDhcpConfig, index, text);
}

/* VLAN and VPN */

int binder_get_wan_vlan_config(void* config) {
  return configService.fetch<VESK_WAN_VLAN_CONFIG_SIZE>(config, &IConfigService::getWanVlanConfig);
}
int binder_set_wan_vlan_config(const char* config) {
  return configService.value(&IConfigService::setWanVlanConfig, Record{config, VESK_WAN_VLAN_CONFIG_SIZE});
}
int binder_get_vpn_config(void* config) {
  return configService.fetch<VESK_VPN_CONFIG_SIZE>(config, &IConfigService::getVpnConfig);
}
int binder_set_vpn_config(const char* config) {
  return configService.value(&IConfigService::setVpnConfig, Record{config, VESK_VPN_CONFIG_SIZE});
}

/* Quality of service and VLAN */

int binder_get_qos_cdp(void* out) {
  return configService.fetch<VESK_QOS_CDP_SIZE>(out, &IConfigService::getQosCdpConfig);
}
int binder_set_qos_cdp(const void* record) {
  return configService.value(&IConfigService::setQosCdpConfig, Record{record, VESK_QOS_CDP_SIZE});
}
int binder_get_lan_vlan(void* out) {
  return configService.fetch<VESK_LAN_VLAN_SIZE>(out, &IConfigService::getLanVlanConfig);
}
int binder_set_lan_vlan(const void* record) {
  return configService.value(&IConfigService::setLanVlanConfig, Record{record, VESK_LAN_VLAN_SIZE});
}
int binder_get_qos_lldp(void* out) {
  return configService.fetch<VESK_QOS_LLDP_SIZE>(out, &IConfigService::getQosLldpConfig);
}
int binder_set_qos_lldp(const void* record) {
  return configService.value(&IConfigService::setQosLldpConfig, Record{record, VESK_QOS_LLDP_SIZE});
}
int binder_get_qos_set(void* out) {
  return configService.fetch<VESK_QOS_SET_SIZE>(out, &IConfigService::getQosSetConfig);
}
int binder_set_qos_set(const void* record) {
  return configService.value(&IConfigService::setQosSetConfig, Record{record, VESK_QOS_SET_SIZE});
}

/* Web server */

int binder_get_web_type(void) { return configService.value(&IConfigService::getWebTypeConfig); }
int binder_set_web_type(int type) { return configService.value(&IConfigService::setWebTypeConfig, type); }
