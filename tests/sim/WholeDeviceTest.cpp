#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vesk/vesk_client.h>

#include <csignal>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "RunProgram.h"
#include "TemporaryDirectory.h"
#include "WaitUntil.h"
#include "common/Records.h"
#include "database/DatabaseRecords.h"
#include "externalkey/KeyModuleRecords.h"
#include "misc/MiscRecords.h"
#include "relay/RelayRecords.h"

/* All services of a vesk-device process through the C API, also after a kill and a restart with the
 * same state. */

namespace {

using vesk::test::Channel;
using vesk::test::ChildProcess;
using vesk::test::waitUntil;

CHILD_ROLE(device) {
  // Makes a write beyond the size limit fail instead of ending the process.
  std::signal(SIGXFSZ, SIG_IGN);
  parent.ready();
  return vesk::test::become({VESK_DEVICE, "--speed", "50", "--state", args[0].c_str()});
}

Channel* toTest = nullptr;

constexpr auto kIgnore = [] {};

/**
 * Reports each event of the misc service to the test; with an argument it hangs in the first ring.
 */
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

  /** Limits the size of the device's files. */
  void limitFiles(rlim_t size) const {
    const rlimit limit{size, RLIM_INFINITY};
    ASSERT_EQ(::prlimit(device_->pid(), RLIMIT_FSIZE, &limit, nullptr), 0);
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
    ASSERT_TRUE(connect_config_service(nullptr));
    ASSERT_TRUE(connect_database_service(nullptr));
    ASSERT_TRUE(connect_misc_service(kCallbacks, nullptr));
    ASSERT_TRUE(connect_relay_service());
    ASSERT_TRUE(connect_external_key_service());
  }

  const vesk::test::TemporaryDirectory directory_;
  std::unique_ptr<ChildProcess> device_;
};

std::string config(const char* key) {
  char value[64] = "nothing";
  EXPECT_EQ(binder_get_config("section", key, "", value, sizeof(value)), 0);
  return value;
}

TEST_F(WholeDevice, SavedStatePersists) {
  EXPECT_EQ(binder_set_config("section", "key", "", "saved"), 0);
  EXPECT_EQ(binder_save_config(), 0);
  EXPECT_EQ(binder_set_config("section", "key", "", "not saved"), 0);
  sim::ContactRecord contact{};
  sim::copyText(contact.name, "Dana Novak");
  const int id = binder_phonebook_contact_create(2, &contact);
  EXPECT_EQ(id, 5);
  EXPECT_EQ(binder_make_call(1, "300"), 1);
  waitUntil("the machine answers", [] { return binder_get_call_have_ivr(); });
  binder_close_call(1);
  const auto setTime = [](int32_t onMs) {
    const sim::RelayTimeRecord time{.device = 1, .output = 1, .delayMs = 0, .onMs = onMs};
    return binder_set_relay_do_time(reinterpret_cast<const char*>(&time));
  };
  EXPECT_EQ(binder_begin_relay_do_save(1), 0);
  EXPECT_EQ(setTime(400'000), 0);
  EXPECT_EQ(binder_commit_relay_do_save(1), 0);
  EXPECT_EQ(binder_begin_relay_do_save(1), 0);
  EXPECT_EQ(setTime(5), 0);
  sim::KeyStateRecord state{.selector = 2, .module = 1, .key = 4, .state = 9, .text = "busy"};
  EXPECT_EQ(binder_set_or_get_singleState_config(&state), 0);
  killAndStart();

  EXPECT_EQ(config("key"), "saved");
  EXPECT_EQ(binder_factory_reset(0), 0);
  EXPECT_EQ(config("key"), "");
  sim::ContactRecord found{};
  EXPECT_EQ(binder_phonebook_contact_retrieve(0, id, &found), id);
  EXPECT_EQ(sim::textOf(found.name), "Dana Novak");
  sim::CallLogRecord call{};
  EXPECT_EQ(binder_get_clog_info_by_id(0, &call), 1);
  EXPECT_EQ(sim::textOf(call.name), "Echo Test");
  EXPECT_GT(call.seconds, 0);
  sim::RelayOutputsRecord outputs{};
  EXPECT_EQ(binder_get_relay_do_channels(1, &outputs), 0);
  EXPECT_EQ(outputs.outputs[0].onMs, 400'000);
  EXPECT_EQ(binder_commit_relay_do_save(1), -1) << "the bracket ended with the process";
  const sim::RelayActRecord on{.device = 1, .output = 2, .act = sim::RelayAct::kOn};
  EXPECT_EQ(binder_relay_set_act(reinterpret_cast<const char*>(&on)), 0);
  EXPECT_EQ(binder_get_relay_do_state(1, 2), 1);
  EXPECT_EQ(binder_get_relay_do_state(1, 1), 0);
  EXPECT_EQ(binder_relay_get_act(2), 1);
  state = {.selector = VESK_SINGLE_STATE_GET, .module = 1, .key = 4, .state = 0, .text = {}};
  EXPECT_EQ(binder_set_or_get_singleState_config(&state), 0);
  EXPECT_EQ(state.state, 9);
}

TEST(State, OfAnotherProgramIsRefused) {
  const vesk::test::TemporaryDirectory directory;
  std::ofstream(directory.path() + "/device.db") << "not ours";
  ChildProcess device("device", {directory.path()});
  EXPECT_EQ(device.wait(), 1);
}

TEST_F(WholeDevice, RunsWhileTheDiskIsFull) {
  const auto save = [](const char* value) {
    EXPECT_EQ(binder_set_config("section", "key", "", value), 0);
    return binder_save_config();
  };
  sim::ContactRecord contact{};
  sim::copyText(contact.name, "Dana Novak");
  EXPECT_EQ(save("before"), 0);
  const int contacts = binder_phonebook_contact_create(2, &contact);
  EXPECT_GT(contacts, 0);
  limitFiles(0);
  EXPECT_EQ(save("meanwhile"), -1);
  EXPECT_EQ(binder_phonebook_contact_create(2, &contact), -1);
  EXPECT_EQ(config("key"), "meanwhile") << "the value in memory";
  EXPECT_EQ(binder_make_call(1, "200"), 1);
  limitFiles(RLIM_INFINITY);
  EXPECT_EQ(binder_phonebook_contact_create(2, &contact), contacts + 1);
  killAndStart();
  EXPECT_EQ(config("key"), "before");
  EXPECT_EQ(binder_phonebook_contact_create(2, &contact), contacts + 2);
}

TEST_F(WholeDevice, EachListenerReceivesMiscEvents) {
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
  // Commands and calls are not ordered.
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

}  // namespace
