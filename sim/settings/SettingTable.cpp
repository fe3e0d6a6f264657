#include "settings/SettingTable.h"

#include <vesk/config.h>

#include "common/Identity.h"
#include "phone/Phone.h"
#include "settings/Settings.h"

namespace sim {

namespace {

using enum ConfigMethod;

constexpr bool kShared = true;

constexpr Setting kSettings[] = {
    // DND, battery
    {getDndMode, setDndMode, 0},
    {getBatteryStatus, none, 0},
    {getElectrValue, none, 100},
    {getLineDndState, setLineDndState, 0},
    {getSpaceDndStartTime, none, 0},
    {getSpaceDndEndTime, none, 0},
    {getTimerDndState, setTimerDndState, 0},
    {configGroupTotalNumberGet, none, 0},

    // Keys and doors
    {getDsskeyPages, none, 4},
    {getDsskeyNumbers, none, 8},
    {getDsskeyConfig, setDsskeyConfig, RecordOf{VESK_DSSKEY_CONFIG_SIZE}},
    {getMdcDsskeyConfig, setMdcDsskeyConfig, RecordOf{VESK_MDC_DSSKEY_CONFIG_SIZE}},
    {getMdcExpandConfig, none, RecordOf{VESK_MDC_EXPAND_SIZE}},
    {isDssMemoryDisableAutoLine, none, 0},
    {getExkeyState, none, 0},
    {getUserSoftkeyConfig, none, RecordOf{sizeof(vesk_user_softkey), "Menu"}},
    {getSoftkeyText, none, "Menu"},
    {getSoftkeyNum, none, 4},
    {getSoftkeyConfigKeyIndex, none, 0},
    {getDssIconName, none, RecordOf{VESK_DSS_ICON_NAME_SIZE, "dss.png"}},
    {getBackgroundName, none, RecordOf{VESK_BACKGROUND_NAME_SIZE, "background.jpg"}},
    {getSoftkeyIconName, none, RecordOf{VESK_SOFTKEY_ICON_NAME_SIZE, "softkey.png"}},
    {getSoftkeyExitStyle, none, 0},
    {getSoftkeyMode, none, 0},
    {getSoftkeyList, setSoftkeyList, "history;contacts;dnd;menu", kShared},
    {none, setCallState, 0},
    {none, setSoftkey, 0},
    {getSecurityConfig, setSecurityConfig, RecordOf{VESK_SECURITY_CONFIG_SIZE}},
    {getElevatorConfig, none, RecordOf{VESK_ELEVATOR_CONFIG_SIZE}},
    {none, setMonitorConfig, RecordOf{VESK_MONITOR_CONFIG_SIZE}},
    {getRelayOutputTrigger, setRelayOutputTrigger, 0},
    {getSmartHomeRelayConfig, none, RecordOf{VESK_SMART_HOME_RELAY_CONFIG_SIZE}},
    {getSnapshotTimeout, none, 10},

    // Dial peers, lines, accounts
    {dialpeerGetConfig, none, RecordOf{VESK_DIALPEER_CONFIG_SIZE}},
    {getConfigedDialpeerNumber, none, CountOf{dialpeerGetConfig}},
    {dialpeerGetLineMax, none, Phone::kLines},
    {getLineNum, none, Phone::kLines},
    {getActiveLineNum, none, Phone::kRegisteredLines},
    {getDefaultExtLine, setDefaultExtLine, 1, kShared},
    {getDefaultLine, none, 1},
    {getDefaultLineEnable, none, 1},
    {getLineSrtpEnable, none, 0},
    {getAccountsBasicConfig, setAccountsBasicConfig, RecordOf{VESK_ACCOUNTS_BASIC_CONFIG_SIZE}},
    {getAccountsAdvancedConfig, setAccountsAdvancedConfig, RecordOf{VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE}},

    // Time, screen
    {timedateGetConfig, timedateSetConfig, RecordOf{VESK_TIMEDATE_CONFIG_SIZE}},
    {getDefaultTzPath, none, "/usr/share/zoneinfo/Etc/UTC"},
    {screeninfoGetConfig, screeninfoSetConfig, RecordOf{VESK_SCREENINFO_CONFIG_SIZE}},
    {getScreensaverTimeout, none, 60},
    {getScreensaverDisplay, none, RecordOf{VESK_SCREENSAVER_DISPLAY_SIZE}},
    {getFontColor, none, RecordOf{VESK_FONT_COLOR_SIZE}},
    {getUserBgConfig, none, RecordOf{VESK_USER_BG_CONFIG_SIZE}},
    {getDefaultLanguage, setDefaultLanguage, "en"},
    {getDefaultStandbyInterface, none, "clock"},
    {getDefaultTheme, setDefaultTheme, "light"},
    {getGreetingWord, setGreetingWord, "Welcome"},
    {getdisplayitemconfig, none, 0},
    {none, setKeyboardBacklight, 0},
    {idleGetTips, none, ""},
    {getIdleIconStatus, none, RecordOf{VESK_IDLE_ICON_STATUS_SIZE}},
    {getMissedData, none, RecordOf{VESK_MISSED_DATA_SIZE}},
    {getPopupStatus, none, RecordOf{VESK_POPUP_STATUS_SIZE}},
    {getHotelGeneralInfo, none, RecordOf{VESK_HOTEL_GENERAL_INFO_SIZE}},
    {getHotelCustomInfo, none, RecordOf{VESK_HOTEL_CUSTOM_INFO_SIZE}},
    {getCallerDisplayType, none, "name"},

    // The device itself
    {getVendorInfo, none, identity::kModel},
    {getUbootVerise, none, identity::kBootloader},
    {getDeviceModel, none, 0},
    {getSoftwareIsKit, none, 0},
    {getPhoneState, none, 0},
    {getHandsetHookStatus, none, 0},
    {getInputNums, none, 2},
    {getAlarmInputNums, none, 2},
    {getOutputNums, none, 2},
    {getFwcheckResultInfo, none, RecordOf{VESK_FWCHECK_RESULT_SIZE}},
    {getFwUpgradeConfig, setFwUpgradeConfig, RecordOf{VESK_FW_UPGRADE_CONFIG_SIZE}},

    // Network
    {getActiveIp, none, identity::kIp},
    {getWlanIpv4Address, none, ""},
    {getEthLinkStatus, none, 1},
    {getActiveNetworkType, none, 0},
    {getIpMode, setIpMode, 0},
    {getIpState, none, 0},
    {getStaticIpConfig, setStaticIpconfig, RecordOf{VESK_STATIC_IP_CONFIG_SIZE}},
    {getDhcpIpConfig, setDhcpIpConfig, RecordOf{VESK_DHCP_IP_CONFIG_SIZE}},
    {getPppoeConfig, setPppoeConfig, RecordOf{VESK_PPPOE_IPV4_CONFIG_SIZE}},
    {getDhcpConfig, setDhcpConfig, ""},
    {getWanVlanConfig, setWanVlanConfig, RecordOf{VESK_WAN_VLAN_CONFIG_SIZE}},
    {getLanVlanConfig, setLanVlanConfig, RecordOf{VESK_LAN_VLAN_SIZE}},
    {getVpnConfig, setVpnConfig, RecordOf{VESK_VPN_CONFIG_SIZE}},
    {getQosCdpConfig, setQosCdpConfig, RecordOf{VESK_QOS_CDP_SIZE}},
    {getQosLldpConfig, setQosLldpConfig, RecordOf{VESK_QOS_LLDP_SIZE}},
    {getQosSetConfig, setQosSetConfig, RecordOf{VESK_QOS_SET_SIZE}},
    {getWebTypeConfig, setWebTypeConfig, 0},
    {getNatShareConfig, setNatShareConfig, RecordOf{VESK_NAT_SHARE_CONFIG_SIZE}},
    {getNatShareNetworkGroupKey, setNatShareNetworkGroupKey, ""},
    {getNatShareNetworkGroupWorkMode, setNatShareNetworkGroupWorkMode, 0},

    // Provisioning
    {getTr069Type, none, 0},
    {getTr069SetingConfig, setTr069SetingConfig, RecordOf{VESK_TR069_SETING_CONFIG_SIZE}},
    {getSpnpConfig, setSpnpConfig, RecordOf{VESK_SPNP_CONFIG_SIZE}},
    {getAutoSpsConfig, setAutoSpsConfig, RecordOf{VESK_AUTO_SPS_CONFIG_SIZE}},

    // Wi-Fi, Bluetooth, access point, wireless keys
    {getApConfig, setApConfig, RecordOf{VESK_AP_CONFIG_SIZE}},
    {none, apUserInfoEventProcess, RecordOf{VESK_AP_USERINFO_SIZE}},
    {getWifiEnable, setWifiEnable, 0},
    {getWlanEnabled, setWlanEnabled, 0},
    {getWlanLogEnabled, none, 0},
    {getBluetoothEnebled, setBluetoothEnabled, 0},
    {getBluetoothAdaperName, setBluetoothAdapterName, identity::kName},
    {getBluetoothLastConnectedAddr, setBluetoothLastConnectedAddr, ""},
    {getWkNum, none, CountOf{getWkInfo}},
    {getWkInfo, setWkInfo, RecordOf{VESK_WK_INFO_SIZE}},
    {none, setWkConfig, 0},
    {getWkRingTime, none, ""},

    // Passwords
    {getKeyboardPasswordConfig, setKeyboardPasswordConfig, RecordOf{VESK_KEYBOARD_PASSWORD_SIZE}},
    {getEnterPassword, setMenuPassword, "", kShared},
    {getSecurityPassword, setSecurityPassword, "", kShared},
    {getKblockPassword, none, ""},
    {none, setkblockStatus, 0},
    {getAlarmResetCode, none, "0000"},

    // Call features
    {getAutoAnswerModel, setAutoAnswerModel, RecordOf{VESK_AUTO_ANSWER_SIZE}},
    {getCallAnswerModel, setCallAnswerModel, RecordOf{VESK_CALL_ANSWER_SIZE}},
    {getCwtCodeModel, setCwtCodeModel, RecordOf{VESK_CWT_CODE_SIZE}},
    {getCwtSetModel, setCwtSetModel, RecordOf{VESK_CWT_SET_SIZE}},
    {getDialPlanModel, setDialPlanModel, RecordOf{VESK_DIAL_PLAN_SIZE}},
    {getGeneralModel, setGeneralModel, RecordOf{VESK_GENERAL_SIZE}},
    {getHotLineModel, setHotLineModel, RecordOf{VESK_HOT_LINE_SIZE}},
    {getIntercomModel, setIntercomModel, RecordOf{VESK_INTERCOM_SIZE}},
    {getPassDialModel, setPassDialModel, RecordOf{VESK_PASS_DIAL_SIZE}},
    {getVoiceMsgModel, setVoiceMsgModel, RecordOf{VESK_VOICE_MSG_SIZE}},
    {getRedialCallModel, setRedialCallModel, RecordOf{VESK_REDIAL_CALL_INFO_SIZE}},
    {getNumberPrivacyData, none, RecordOf{VESK_NUMBER_PRIVACY_SIZE}},
    {getPickUpConfig, none, RecordOf{VESK_PICK_UP_CONFIG_SIZE}},
    {getBanAnonymousCallStatus, setBanAnonymousCallStatus, 0},
    {getEmergencyNumber, setEmergencyNumber, "112"},
    {getDialingDtmfToneEnable, none, 1},
    {getDisplayToInfoEnable, none, 0},
    {getAgentState, none, 0},
    {getAgentConfig, setAgentConfig, RecordOf{VESK_AGENT_CONFIG_SIZE}},

    // Sound
    {getMediaCodecList, none, "PCMU,PCMA,G722,opus"},
    {getRingType, setRingType, "Ring 1"},
    {getRingMuted, setRingMuted, 0},
    {getRingPriority, none, 0},
    {getVolumeValue, setVolumeValue, 5},
    {getVoiceVolume, none, 5},
    {getMuteStatus, setMuteStatus, 0, kShared},
    {getAudioDevMode, setAudioDevMode, 0},
    {getHeadsetModel, setHeadsetModel, RecordOf{VESK_HEADSET_INFO_SIZE}},
    {getAutoHeadsetEnable, setAutoHeadsetEnable, 0},

    // Phonebooks elsewhere
    {getNetPhonebookNum, none, 0},
    {getXmlPbookConfig, none, RecordOf{VESK_XML_PBOOK_CONFIG_SIZE}},
    {getLdapPbookConfig, none, RecordOf{VESK_LDAP_PBOOK_CONFIG_SIZE}},

    // Discovery, alarm, family call, video
    {getAutoDiscoveryConfig, setAutoDiscoveryConfig, RecordOf{VESK_AUTO_DISCOVERY_SIZE}},
    {getQddpDeviceConfig, setQddpDeviceConfig, RecordOf{VESK_QDDP_CONFIG_SIZE}},
    {getAlarmMode, setAlarmMode, 0},
    {getInputlogsUnreadNum, none, 2},
    {getFamilyCallType, setFamilyCallEnabled, 0},
    {getFamilyCallIp, none, ""},
    {getRtspClientWorkMode, none, 0},
    {getQcmsPlatformType, none, 2},
    {getQcmsPlatformUrl, none, identity::kQcmsUrl},
};

}  // namespace

std::string Setting::key() const { return joinKey({nameOf(getter != none ? getter : setter)}); }

std::string Setting::presetBytes(const Values& values) const {
  if (const auto* number = std::get_if<int32_t>(&preset)) return std::to_string(*number);
  if (const auto* record = std::get_if<RecordOf>(&preset)) {
    std::string bytes(record->text);
    bytes.resize(record->size);
    return bytes;
  }
  if (const auto* count = std::get_if<CountOf>(&preset)) {
    return std::to_string(numbersAfter(values, joinKey({nameOf(count->getter), ""})).size());
  }
  return std::string(std::get<std::string_view>(preset));
}

bool Setting::accepts(size_t size) const {
  const auto* record = std::get_if<RecordOf>(&preset);
  return record == nullptr || record->size == size;
}

const Setting* findSetting(ConfigMethod method) {
  static const auto byMethod = [] {
    std::array<const Setting*, std::size(kMethodNames)> settings{};
    for (const Setting& setting : kSettings) {
      for (const ConfigMethod user : {setting.getter, setting.setter}) {
        settings[static_cast<size_t>(user)] = &setting;
      }
    }
    settings[0] = nullptr;
    return settings;
  }();
  return byMethod[static_cast<size_t>(method)];
}

}  // namespace sim
