#include <gtest/gtest.h>
#include <unistd.h>
#include <vesk/vesk_client.h>

#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "Records.h"
#include "RunProgram.h"
#include "TemporaryDirectory.h"
#include "WaitUntil.h"
#include "database/DatabaseRecords.h"
#include "externalkey/KeyModuleRecords.h"
#include "misc/MiscRecords.h"
#include "relay/RelayRecords.h"

/* The database, misc, relay and external-key services of a vesk-device process, seen through the C API, also
 * after the process was killed and started again with the same state. */

namespace {

using vesk::test::Channel;
using vesk::test::ChildProcess;
using vesk::test::waitUntil;

CHILD_ROLE(device) {
  parent.ready();
  return vesk::test::become({VESK_DEVICE, "--speed", "50", "--state", args[0].c_str()});
}

Channel* toTest = nullptr;

constexpr auto kIgnore = [] {};

/** Tells the test of each event of the misc service; with an argument it never returns from a ring. */
CHILD_ROLE(miscListener) {
  toTest = &parent.channel();
  const vesk_misc_callbacks callbacks{
      .on_online_ate_started = [] { toTest->send("started"); },
      .on_online_ate_stopped = [] { toTest->send("stopped"); },
      .on_update_context = [](const char* text) { toTest->send(text); },
      .on_lcd_switch = [] { toTest->send("lcd"); },
      .on_touch_screen_start = [] { toTest->send("touch"); },
      .on_touch_screen_stop = [] { toTest->send("no touch"); },
      .on_system_reboot = [] { toTest->send("reboot"); },
      .reserved = {},
      .on_web_screenshot = [] { toTest->send("screenshot"); },
      .on_ring = args.empty() ? [](int value) { toTest->send("ring " + std::to_string(value)); } : [](int) {
        toTest->send("hangs");
        for (;;) pause();
      },
      .on_scan_cancel = [] { toTest->send("cancelled"); },
  };
  if (!connect_misc_service(callbacks, nullptr)) return 1;
  parent.ready();
  parent.waitForEnd();
  return 0;
}

class WholeDevice : public testing::Test {
 protected:
  void SetUp() override { start(); }
  void TearDown() override {
    command("quit");
    EXPECT_EQ(device_->wait(), 0) << "exit code of vesk-device";
  }

  void killAndStart() {
    device_->kill();
    start();
  }

  void command(const std::string& line) { EXPECT_TRUE(device_->channel().send(line + "\n")); }

 private:
  void start() {
    device_ = std::make_unique<ChildProcess>("device", std::vector{directory_.path()});
    constexpr vesk_misc_callbacks kCallbacks{
        kIgnore, kIgnore, [](const char*) {}, kIgnore, kIgnore, kIgnore, kIgnore,
        {},      kIgnore, [](int) {},         kIgnore};
    ASSERT_TRUE(connect_call_service(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr));
    ASSERT_TRUE(connect_database_service(nullptr));
    ASSERT_TRUE(connect_misc_service(kCallbacks, nullptr));
    ASSERT_TRUE(connect_relay_service());
    ASSERT_TRUE(connect_external_key_service());
  }

  const vesk::test::TemporaryDirectory directory_;
  std::unique_ptr<ChildProcess> device_;
};

TEST_F(WholeDevice, KeepsItsDatabase) {
  sim::ContactRecord contact{};
  sim::copyText(contact.name, "Dana Novak");
  sim::copyText(contact.note, std::string(sizeof(contact.note) - 1, 'n'));
  const int id = binder_phonebook_contact_create(2, &contact);
  EXPECT_EQ(id, 5);
  const int sms = binder_send_sms(1, "300", "echo");
  EXPECT_EQ(sms, 3);
  EXPECT_EQ(binder_get_sms_count(1), 2);
  binder_set_sms_read_done(sms + 1);
  sim::MemoRecord memo{};
  sim::copyText(memo.text, "Buy milk");
  EXPECT_EQ(binder_add_memo(&memo), 2);
  sim::DoorAccessRecord access{};
  access.enabled = 1;
  access.door = 3;
  sim::copyText(access.credential, "5555");
  EXPECT_EQ(binder_add_door_access(&access), 4);

  EXPECT_EQ(binder_make_call(1, "300"), 1);
  waitUntil("the machine answers", [] { return binder_get_call_have_ivr(); });
  binder_close_call(1);
  killAndStart();

  sim::ContactRecord found{};
  ASSERT_EQ(binder_phonebook_contact_search(0, "novak"), 1);
  EXPECT_EQ(binder_phonebook_contact_retrieve(1, 0, &found), id);
  contact.id = id;
  EXPECT_EQ(std::memcmp(&found, &contact, sizeof(contact)), 0);
  int32_t groups[1] = {};
  EXPECT_EQ(binder_phonebook_get_contact_groupid(id, 1, groups), 1);
  EXPECT_EQ(groups[0], 2);
  EXPECT_EQ(binder_get_sms_count(0), 4);
  EXPECT_EQ(binder_get_sms_count(1), 1);
  EXPECT_EQ(binder_get_memo_num(), 2);
  sim::CallLogRecord call{};
  EXPECT_EQ(binder_get_clog_info_by_id(0, &call), 1);
  EXPECT_EQ(sim::textOf(call.name), "Echo Test");
  EXPECT_GT(call.seconds, 0);
  uint32_t voiceMail[2] = {};
  binder_get_vsms_count(1, voiceMail);
  EXPECT_EQ(voiceMail[0] + voiceMail[1], 3u);
  EXPECT_EQ(binderCheckDoorAccessInfo("5555", 3, &access), 0);
  EXPECT_EQ(access.granted, 1);
  EXPECT_EQ(binderCheckDoorAccessInfo("5555", 1, &access), 0);
  EXPECT_EQ(access.granted, 0);
  sim::MemoRecord none{.id = 77, .due = 0, .done = 0, .reserved = 0, .text = {}};
  EXPECT_EQ(binder_get_memo_info_by_index(2, &none), -1);
  EXPECT_EQ(none.id, 77) << "refused, so untouched";
}

TEST_F(WholeDevice, KeepsWhatWasCommittedOfItsRelays) {
  const auto setTime = [](int32_t onMs) {
    const sim::RelayTimeRecord time{.device = 1, .output = 1, .delayMs = 0, .onMs = onMs};
    return binder_set_relay_do_time(reinterpret_cast<const char*>(&time));
  };
  const auto onMs = [] {
    sim::RelayOutputsRecord outputs{};
    EXPECT_EQ(binder_get_relay_do_channels(1, &outputs), 0);
    return outputs.outputs[0].onMs;
  };
  EXPECT_EQ(setTime(400'000), -1) << "outside of the bracket";
  EXPECT_EQ(binder_begin_relay_do_save(1), 0);
  EXPECT_EQ(setTime(400'000), 0);
  EXPECT_EQ(onMs(), 3000);
  EXPECT_EQ(binder_commit_relay_do_save(1), 0);
  EXPECT_EQ(binder_begin_relay_do_save(1), 0);
  EXPECT_EQ(setTime(5), 0);
  killAndStart();
  EXPECT_EQ(onMs(), 400'000);
  EXPECT_EQ(binder_get_relay_config_editable(), 1);
  EXPECT_EQ(binder_commit_relay_do_save(1), -1);

  const sim::RelayActRecord on{.device = 1, .output = 1, .act = sim::RelayAct::kOn};
  EXPECT_EQ(binder_relay_set_act(reinterpret_cast<const char*>(&on)), 0);
  EXPECT_EQ(binder_get_relay_do_state(1, 1), 1);
  const sim::ScheduledRelayActRecord off{
      .act = {.device = 1, .output = 1, .act = sim::RelayAct::kOff}, .afterMs = 100, .reserved = 0};
  EXPECT_EQ(binder_relay_schedule_act(reinterpret_cast<const char*>(&off)), 0);
  waitUntil("the output goes off", [] { return binder_get_relay_do_state(1, 1) == 0; });
  EXPECT_EQ(binder_relay_get_act(1), 0);
  sim::RelayInfoRecord info{};
  EXPECT_EQ(binder_get_relay_dev_mac(&info), 0);
  EXPECT_EQ(info.outputs, sim::kRelayOutputs);
}

TEST_F(WholeDevice, KeepsItsKeyModules) {
  const sim::AddKeyRecord key{.module = 1, .key = 0, .type = 1, .line = 2, .label = "Door", .value = "240"};
  EXPECT_EQ(binder_add_btk_config(reinterpret_cast<const char*>(&key)), 0);
  sim::KeyStateRecord state{.selector = 2, .module = 1, .key = 4, .state = 9, .text = "busy"};
  EXPECT_EQ(binder_set_or_get_singleState_config(&state), 0);
  killAndStart();
  sim::ModuleKeysRecord keys{};
  EXPECT_EQ(binder_get_exk_config(1, &keys), 0);
  EXPECT_EQ(sim::textOf(keys.key[3].label), "Door");
  EXPECT_EQ(keys.key[3].line, 2);
  state = {.selector = VESK_SINGLE_STATE_GET, .module = 1, .key = 4, .state = 0, .text = {}};
  EXPECT_EQ(binder_set_or_get_singleState_config(&state), 0);
  EXPECT_EQ(state.state, 9);
  EXPECT_EQ(sim::textOf(state.text), "busy");
  binder_reset_exkdev_default_config(1, 0);
  EXPECT_EQ(binder_get_exk_config(1, &keys), 0);
  EXPECT_EQ(keys.key[3].type, 0);
}

TEST_F(WholeDevice, TellsEachListenerOfTheMiscEvents) {
  ChildProcess first("miscListener");
  ChildProcess second("miscListener");
  ChildProcess hanging("miscListener", {"hang"});
  const auto expectAll = [&](const std::vector<std::string>& events) {
    for (ChildProcess* listener : {&first, &second}) {
      for (const std::string& event : events) EXPECT_EQ(listener->channel().receive(), event);
    }
  };
  command("ring -7");
  expectAll({"ring -7"});
  EXPECT_EQ(hanging.channel().receive(), "hangs");
  command("scan-cancel");
  binder_notify_lcd_screen_shot_ready();
  binder_notify_lcd_screen_shot_ready();
  command("ring 8");
  // The commands and the call come from two sides.
  for (ChildProcess* listener : {&first, &second}) {
    std::multiset<std::string> events;
    for (int i = 0; i < 3; ++i) events.insert(listener->channel().receive());
    EXPECT_EQ(events, (std::multiset<std::string>{"cancelled", "ring 8", "screenshot"}));
  }

  EXPECT_EQ(binder_local_ate_start(0), 0);
  expectAll({"started", "Display", "lcd", "lcd", "lcd", "Touch screen", "touch"});
  EXPECT_EQ(binder_ate_touch_screen_result(1, 3), 0);
  expectAll({"no touch", "Touch screen failed", "Restart", "reboot", "Failed", "stopped"});
  sim::TestInfoRecord info{};
  EXPECT_EQ(binder_get_ate_info_config(&info), 0);
  EXPECT_EQ(info.passed, 2);
  EXPECT_EQ(info.failed, 1);
  hanging.kill();
}

TEST_F(WholeDevice, PlaysRecordingsAndTellsOfMulticast) {
  vesk_records* files = vesk_records_create(VESK_UDISK_RECORD_FILE_SIZE);
  EXPECT_EQ(binder_get_udisk_record_files(vesk_records_array(files)), 0);
  ASSERT_EQ(vesk_records_count(files), 3u);
  const auto recording = *static_cast<const sim::RecordingRecord*>(vesk_records_element(files, 2));
  EXPECT_EQ(recording.seconds, 60);
  EXPECT_EQ(binder_play_rec_file_start(recording.file), 0);
  binder_play_rec_file_pause();
  EXPECT_EQ(binder_get_play_rec_file_state(), 2);
  binder_play_rec_file_resume();
  waitUntil("it is over", [] { return binder_get_play_rec_file_state() == 0; });
  EXPECT_EQ(binder_play_rec_file_start("nothing.wav"), -1);

  sim::UdiskCapacityRecord capacity{};
  EXPECT_EQ(binder_get_udisk_capacity(&capacity), 0);
  EXPECT_EQ(capacity.usedMiB + capacity.freeMiB, capacity.totalMiB);
  command("udisk out");
  waitUntil("the disk is out", [] { return binder_get_udisk_status() == 0; });
  EXPECT_EQ(binder_get_udisk_capacity(&capacity), -1);
  vesk_records_clear(files);
  EXPECT_EQ(binder_get_udisk_record_files(vesk_records_array(files)), 0);
  EXPECT_EQ(vesk_records_count(files), 0u);
  vesk_records_free(files);

  char action[16] = "";
  EXPECT_EQ(binder_has_mqtt_multicast_info(), 1);
  EXPECT_EQ(binder_get_mqtt_multicast_action(action, sizeof(action)), 0);
  EXPECT_STREQ(action, "page-all");
  command("multicast");
  waitUntil("there is no multicast", [] { return binder_has_mqtt_multicast_info() == 0; });
  EXPECT_EQ(binder_get_mqtt_multicast_action(action, sizeof(action)), -1);
  EXPECT_STREQ(action, "");
}

}  // namespace
