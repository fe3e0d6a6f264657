#include <com/qv/IConfigService.h>
#include <vesk/config.h>

#include <atomic>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "config/ConfigService.h"

using namespace vesk::test;

namespace {

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(IConfigService, code, name)
#include <com/qv/ConfigService.def>
#undef METHOD
};

constexpr Expected kLogged{.success = 0, .failed = -1, .absent = -1, .logsRecord = true};

/** An empty text, as after a failed call, gives `empty` and leaves the buffer. */
constexpr Expected zeroFilled(int empty) { return {0, empty, -1, Expected::kZeroFill}; }

/* Of two functions with one name. */
int (*const kShortDisplay)(ipc_screen_saver_display_t*) = binder_get_screensaver_display;
int (*const kLongDisplay)(void*) = binder_get_screensaver_display;

const std::vector<ApiGroup> kGroups{
    group(zeroFilled(-2), ROW(binderGetUsernameByIp, 303).refused(),
          ROW(binderGetPasswordByIp, 304).refused()),
    group(zeroFilled(-1), ROW(binder_get_nat_share_network_group_key, 307).refused()),
    group(kValue, ROW(binder_scene_config_add, 9), ROW(binder_scene_config_set_enabled, 11)),
    group(kFetched, ROW(binder_scene_config_get, 10, 456)),
    group(kValue, ROW(binder_scene_config_set, 12), ROW(binder_scene_config_delete, 13)),
    group(text(Expected::kAllOrNothing, 0, -1), ROW(binder_get_config, 1), ROW(binder_get_idle_tips, 165),
          ROW(binder_get_media_codec_list, 35)),
    group(kFlag, ROW(binder_get_config_bool, 2), ROW(binder_get_line_dnd_state, 18),
          ROW(binder_dss_memory_disable_auto_line, 40), ROW(binder_dialpeer_is_p2p_line, 54),
          ROW(binder_get_ring_muted, 181), ROW(binder_get_wlan_enable_config, 183),
          ROW(binder_get_wlan_log_enable_config, 184), ROW(binder_get_bluetooth_enable_config, 186),
          ROW(binder_get_battery_status, 16), ROW(binder_get_dialing_dtmf_tone_enable, 242),
          ROW(binder_get_auto_headset_enable, 233), ROW(binder_get_handset_hook_status, 235),
          ROW(binder_get_default_line_enable, 231), ROW(binder_get_line_srtp_status, 239)),
    group(kValue, ROW(binder_set_config, 3), ROW(binder_save_config, 4), ROW(binder_save_config_handel, 5),
          ROW(binder_config_group_add, 6), ROW(binder_config_group_delete, 7).refused(),
          ROW(binder_config_group_total_number_get, 8),

          ROW(binder_get_softkey_config_num, 174), ROW(binder_get_softkey_config_key_index, 175),
          ROW(binder_set_softkey, 179), ROW(binder_get_softkey_mode, 177),
          ROW(binder_get_softkey_exit_style, 176), ROW(binder_dialpeer_set_config, 51, 208).refused(),
          ROW(binder_timedate_set_config, 57, 152), ROW(binder_trans_timezone_cfg_2_index, 59).refused(),
          ROW(binder_trans_timezone_index_2_cfg, 60).refused(), ROW(binder_screeninfo_set_config, 62, 24),
          ROW(binder_get_mute_status, 201), ROW(binder_set_mute_status, 200),
          ROW(binder_get_voice_volume, 203), ROW(binder_set_voice_volume, 202),
          ROW(binder_get_active_network_type, 187), ROW(binder_set_ip_mode, 77),
          ROW(binder_set_static_ip_config, 82, 272), ROW(binder_set_dhcp_ip_config, 83, 98),
          ROW(binder_set_pppoe_ipv4_config, 84, 128), ROW(binder_set_dhcp, 104),
          ROW(binder_set_wan_vlan_config, 92, 97), ROW(binder_set_vpn_config, 100, 644),
          ROW(binder_set_accounts_basic_config, 89, 1160), ROW(binder_set_accounts_advanced_config, 90, 328),
          ROW(binder_get_line_num, 162), ROW(binder_get_active_line_num, 163),
          ROW(binder_get_default_ext_line, 74), ROW(binder_set_default_ext_line, 75),
          ROW(binder_set_spnp_config, 94, 584), ROW(binder_set_auto_sps_config, 98, 648),
          ROW(binder_set_tr069_seting_config, 96, 616), ROW(binder_factory_reset, 86),
          ROW(binder_set_ap_config, 102, 112), ROW(binder_set_bluetooth_adapter_name_config, 190),
          ROW(binder_set_bluetooth_last_connected_addr, 192), ROW(binder_set_call_state, 178),
          ROW(binder_get_agent_status, 193), ROW(binder_set_agent_config, 195, 144),
          ROW(binder_set_clear_log, 196), ROW(binder_set_log_off_request, 197),
          ROW(binder_get_electr_value, 17), ROW(binder_clean_unread_clog, 172),
          ROW(binder_set_qos_cdp, 106, 68), ROW(binder_set_lan_vlan, 108, 68),
          ROW(binder_set_qos_lldp, 110, 66), ROW(binder_set_qos_set, 112, 129), ROW(binder_get_web_type, 113),
          ROW(binder_set_web_type, 114), ROW(binder_get_wifi_enable, 115), ROW(binder_set_wifi_enable, 116),
          ROW(binder_ap_userinfo_event_process, 243, 256), ROW(binder_ap_filename_event_process, 244),
          ROW(binder_ap_input_timer_refresh, 245), ROW(binder_get_wk_num, 246),
          ROW(binder_set_wk_info, 249, 272), ROW(binder_enter_wk_scan, 248), ROW(binder_set_wk_config, 250),
          ROW(binder_wk_stop_ring, 251), ROW(binder_set_keyboard_password, 120, 72),
          ROW(binder_stop_security_input_tone, 258), ROW(binderSetKeyboardBacklight, 297),
          ROW(binder_get_ring_priority, 240), ROW(binder_get_volume_value, 158),
          ROW(binder_set_audio_device_mode, 237), ROW(binder_set_auto_answer, 137, 8),
          ROW(binder_set_call_answer, 139, 68), ROW(binder_set_cwt_code, 141, 40),
          ROW(binder_set_cwt_set, 143, 8), ROW(binder_set_dial_plan, 145, 132),
          ROW(binder_set_general, 147, 12), ROW(binder_set_intercom, 151, 4),
          ROW(binder_set_pass_dial, 153, 97), ROW(binder_set_hot_line, 149, 65),
          ROW(binder_set_redial_call_info, 208, 12), ROW(binder_set_voice_msg, 155, 65),
          ROW(binder_set_headset_info, 206, 2), ROW(binder_get_ban_anonymous_status, 156),
          ROW(binder_fwcheck_request, 210), ROW(binder_set_fw_upgrade_config, 227, 33),
          ROW(binder_set_core_reboot, 214), ROW(binder_get_software_is_kit, 263),
          ROW(binder_get_device_model, 296), ROW(binder_set_monitor_config, 254, 980),
          ROW(binderGetRtspClientWorkMode, 298), ROW(binder_elevator_contron_info, 299),
          ROW(binder_get_alarm_mode, 275), ROW(binder_set_alarm_mode, 276),
          ROW(binder_security_logs_del_by_id, 278), ROW(binder_input_reset_send_mqtt, 262),
          ROW(binder_set_inputlogs_read_done, 295), ROW(binder_set_auto_discovery_config, 261, 129),
          ROW(binder_qddp_send_scan, 265), ROW(binder_set_qddp_device_config, 266, 164, 1024),
          ROW(binder_send_reboot_to_target, 274), ROW(binder_set_nat_share_config, 306, 68),
          ROW(binder_set_nat_share_network_group_key, 308),
          ROW(binder_set_nat_share_network_group_work_mode, 310)),
    group(
        kFetched, ROW(binder_get_dsskey_config, 33, 684), ROW(binder_get_dss_icon_name, 218, 256),
        ROW(binder_get_mdc_dsskey_config, 31, 980), ROW(binder_get_mdc_first_dsskey_config, 32, 980),
        ROW(binder_get_softkey_icon_name, 220, 256), ROW(binder_dialpeer_get_config, 50, 208),
        ROW(binder_timedate_get_config, 56, 152), ROW(binder_screeninfo_get_config, 61, 24),
        ROW(binder_get_user_bg_config, 204, 2), ROW(binder_get_background_name, 219, 256),
        ROW(binder_get_idle_icon_status, 168, 20), ROW(binder_get_missed_data, 169, 12),
        ROW(binder_get_popup_status, 170, 6), ROW(kShortDisplay, 127, 4).refused(),
        ROW(binder_get_network_status, 69, 476), ROW(binder_get_network_details, 70, 328),
        ROW(binder_get_static_ip_config, 79, 272), ROW(binder_get_dhcp_ip_config, 80, 98),
        ROW(binder_get_pppoe_ipv4_config, 81, 128), ROW(binder_get_wan_vlan_config, 91, 97),
        ROW(binder_get_vpn_config, 99, 644), ROW(binder_get_accounts_basic_config, 87, 1160),
        ROW(binder_get_accounts_advanced_config, 88, 328), ROW(binder_get_line_info, 72, 204),
        ROW(binder_get_active_line_info, 73, 204), ROW(binder_get_spnp_config, 93, 584),
        ROW(binder_get_auto_sps_config, 97, 648), ROW(binder_get_tr069_seting_config, 95, 616),
        ROW(binder_get_ap_config, 101, 112), ROW(binder_get_agent_config, 194, 144),
        ROW(binder_get_phone_status, 71, 388), ROW(binder_get_hotel_general_info, 166, 520),
        ROW(binder_get_hotel_custom_info, 167, 1036), ROW(binder_get_security, 26, 464),
        ROW(binder_get_elevator, 27, 40), ROW(binder_get_qos_cdp, 105, 68), ROW(binder_get_lan_vlan, 107, 68),
        ROW(binder_get_qos_lldp, 109, 66), ROW(binder_get_qos_set, 111, 129),
        ROW(binder_get_wk_info, 247, 272), ROW(binder_get_keyboard_password, 117, 72),
        ROW(binder_get_mdc_expand_config, 288, 472), ROW(kLongDisplay, 127, 24),
        ROW(binder_get_font_color, 128, 81), ROW(binder_get_auto_answer, 136, 8),
        ROW(binder_get_call_answer, 138, 68), ROW(binder_get_cwt_code, 140, 40),
        ROW(binder_get_cwt_set, 142, 8), ROW(binder_get_dial_plan, 144, 132),
        ROW(binder_get_general, 146, 12), ROW(binder_get_intercom, 150, 4),
        ROW(binder_get_pass_dial, 152, 97), ROW(binder_get_hot_line, 148, 65),
        ROW(binder_get_redial_call_info, 207, 12), ROW(binder_get_voice_msg, 154, 65),
        ROW(binder_get_headset_info, 205, 2), ROW(binder_get_pick_up_config, 228, 18),
        ROW(binder_get_fwcheck_result, 212, 1192), ROW(binder_get_fw_upgrade_config, 226, 33),
        ROW(binder_get_local_config, 270, 96), ROW(binder_get_xml_pbook_config_by_index, 222, 192),
        ROW(binder_get_ldap_pbook_config_by_index, 223, 196),
        ROW(binder_get_smart_home_relay_config, 292, 76), ROW(binder_get_auto_discovery_config, 260, 129),
        ROW(binder_get_qddp_device_config, 267, 164, 1024, 1024), ROW(binder_get_nat_share_config, 305, 68)),
    group(kZeroUnlessAnswered, ROW(binder_get_dnd_mode, 14), ROW(binder_get_space_dnd_start_time, 20),
          ROW(binder_get_space_dnd_end_time, 21), ROW(binder_get_dnd_timer_state, 23),
          ROW(binder_get_dsskey_pages, 25), ROW(binder_get_dsskey_numbers, 29),
          ROW(binder_get_empty_dss_url_index, 119), ROW(bineder_get_configed_dialpeer_number, 49),
          ROW(binder_dialpeer_get_line_max, 53), ROW(binder_get_display_item_config, 180),
          ROW(binder_ringtone_get_list_len, 63), ROW(binder_ringtone_get_ring_index, 65).refused(),
          ROW(binder_get_ip_mode, 76), ROW(binder_get_ip_state, 78), ROW(binder_get_tr069_type, 85),
          ROW(binder_set_wlan_enable_config, 185), ROW(binder_set_bluetooth_enable_config, 188),
          ROW(binder_set_menu_password, 122), ROW(binder_set_security_password, 256),
          ROW(binder_get_exkey_state, 286), ROW(binder_set_softkey_list, 135),
          ROW(binder_set_default_language, 130), ROW(binder_set_default_theme, 284),
          ROW(binder_set_greeting_word, 161), ROW(binder_set_ring_type, 133),
          ROW(binder_get_audio_device_mode, 238), ROW(binder_set_emergency_number, 230),
          ROW(binder_get_display_to_info_enable, 259), ROW(binder_get_default_line, 232),
          ROW(binder_get_phone_state, 236), ROW(binder_set_family_call_enabled, 123),
          ROW(binder_get_relay_output_trigger, 290), ROW(binder_get_nat_share_network_group_work_mode, 309)),
    group(kNothing, ROW(binder_set_dnd_mode, 15), ROW(binder_set_lind_dnd_state, 19),
          ROW(binder_set_space_dnd_time, 22), ROW(binder_set_dnd_timer_state, 24),
          ROW(binder_side_dsskey_request, 41), ROW(binder_func_dsskey_request, 42),
          ROW(binder_soft_dsskey_request, 43), ROW(binder_ex_dsskey_request, 44),
          ROW(binder_opendoor_dsskey_request, 45), ROW(binder_dialpeer_delete_config, 52),
          ROW(binder_play_ring, 198), ROW(binder_stop_ring, 199), ROW(binder_set_ring_muted, 182),
          ROW(binder_update_file_directory, 221), ROW(binder_opendoor_request, 46),
          ROW(binder_set_door_config_reset, 48), ROW(binder_set_monitor_config_reset, 47),
          ROW(binder_set_kblock_status, 225), ROW(binder_set_volume_value, 159), ROW(binder_play_tone, 255),
          ROW(binder_set_auto_headset_enable, 234), ROW(binder_set_ban_anonymous_status, 157),
          ROW(binder_firmware_upgrade_request, 211), ROW(binder_url_opendoor, 289),
          ROW(binder_set_relay_output_trigger, 291), ROW(binder_qdps_manual_run, 269),
          ROW(binder_scan_device, 273)),
    group(kLogged, ROW(binder_get_dss_display, 30, 776), ROW(binder_get_user_softkey_config, 34, 72)),
    group(kDone, ROW(binder_set_dsskey_config, 38, 684), ROW(binder_set_mdc_dsskey_config, 39, 980)),
    group(text(Expected::kTruncate, 0, -1), ROW(binder_get_softkey_config_text, 173),
          ROW(binder_dialpeer_get_line_info, 55), ROW(binder_ringtone_get_ring_name, 64),
          ROW(binder_get_wlan_ipv4_addr, 67), ROW(binder_get_phone_uboot, 68),
          ROW(binder_get_vendor_info, 131)),
    group(flag(-1), ROW(binder_get_eth_link_status, 171)),
    group(text(Expected::kTruncate, {}, {}), ROW(binder_get_bluetooth_adapter_name_config, 189),
          ROW(binder_get_bluetooth_last_connected_addr, 191)),
    group(text(Expected::kTruncate, -1, -1), ROW(binder_get_wk_ring_time, 252)),
    group(text(Expected::kTruncate, 0, 0), ROW(binder_get_dhcp, 103), ROW(binder_get_enter_password, 121),
          ROW(binder_get_kblock_password, 224), ROW(binder_get_security_password, 257),
          ROW(binder_get_softkey_list, 134), ROW(binder_get_default_language, 129),
          ROW(binder_get_default_standby_interface, 282), ROW(binder_get_default_theme, 283),
          ROW(binder_get_greeting_word, 160), ROW(binder_get_ring_type, 132),
          ROW(binder_get_emergency_number, 229), ROW(binder_get_caller_display_type, 215),
          ROW(binder_get_default_tzpath, 217), ROW(binder_get_family_call_ip, 287),
          ROW(binder_get_alarm_resetcode, 124)),
    group(integer(-1, 0), ROW(binder_get_screensaver_timeout, 126), ROW(binder_generate_key, 209),
          ROW(binder_get_net_phonebook_num, 125), ROW(binder_get_snapshot_timeout, 293),
          ROW(binder_get_family_call_type, 285), ROW(binder_get_input_nums, 279),
          ROW(binder_get_alarm_input_nums, 280), ROW(binder_get_output_nums, 281),
          ROW(binder_get_inputlogs_unread_num, 294)),
};

std::atomic<int> deaths = 0;

bool connectToService() {
  return connect_config_service([] { ++deaths; });
}

class ConfigRowsTest : public ApiTest {
 protected:
  ConfigRowsTest()
      : ApiTest("com.qv.ConfigService", u"com.qv.IConfigService", "ConfigClient", kMethods, kGroups) {}
  /** Ends the connection, for the next test. */
  ~ConfigRowsTest() override { die(); }
};

TEST_F(ConfigRowsTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connectWith(connectToService);
  expectCallsAndAnswers(291);
  expectNullPointers();
  expectFailures();
  expectTextsKeepToTheirRoom();
  expectDeathEndsCallAndConnection();
  EXPECT_EQ(deaths, 1);
}

TEST_F(ConfigRowsTest, SimulatedDeviceServesEveryFunction) {
  const auto settings = std::make_shared<sim::Settings>(openStore());
  std::string error;
  ASSERT_TRUE(settings->load(sim::ConfigService::factoryValues(), &error)) << error;
  expectServedBy(new sim::ConfigService(settings), connectToService);
}

}  // namespace
