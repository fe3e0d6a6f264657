#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ServiceTesting.h"
#include "relay/RelayService.h"

namespace {

using sim::RelayAct;
using sim::Relays;
using sim::RelayType;
using vesk::test::openStore;

constexpr int32_t kDevice = Relays::kDevice;
constexpr int32_t kDoor = 1;
constexpr int32_t kLight = 3;
constexpr int32_t kDisabled = 5;

class RelaysTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(relays_.load(&error)) << error;
  }

  bool act(int32_t output, RelayAct act) { return relays_.act({kDevice, output, act}); }
  void wait(int32_t ms) { relays_.advanceTo(now_ += sim::Time(ms)); }
  const sim::RelayOutput& output(int32_t id) {
    shown_ = relays_.outputs();
    return shown_.outputs[id - 1];
  }

  const pid_t us_ = getpid();
  const std::shared_ptr<sim::Store> store_ = openStore();
  Relays relays_{store_};

 private:
  sim::Time now_{0};
  sim::RelayOutputsRecord shown_{};
};

TEST_F(RelaysTest, ActsNowAndLater) {
  EXPECT_TRUE(act(kDoor, RelayAct::kOn));
  EXPECT_EQ(relays_.isOn(kDoor), true);
  wait(2999);
  EXPECT_EQ(relays_.isOn(kDoor), true);
  EXPECT_TRUE(act(kDoor, RelayAct::kOn)) << "restarts the pulse";
  wait(2999);
  EXPECT_EQ(relays_.isOn(kDoor), true);
  wait(1);
  EXPECT_EQ(relays_.isOn(kDoor), false);

  EXPECT_TRUE(act(kLight, RelayAct::kToggle));
  wait(1'000'000);
  EXPECT_EQ(relays_.isOn(kLight), true);
  EXPECT_EQ(output(kLight).state, 1);
  EXPECT_TRUE(act(kLight, RelayAct::kToggle));
  EXPECT_EQ(relays_.isOn(kLight), false);
  EXPECT_EQ(relays_.lastAct(kLight), RelayAct::kToggle);

  EXPECT_TRUE(relays_.schedule({{kDevice, kLight, RelayAct::kPulse}, 500, 0}));
  wait(499);
  EXPECT_EQ(relays_.isOn(kLight), false);
  wait(1);
  EXPECT_EQ(relays_.isOn(kLight), true);
  wait(3000);
  EXPECT_EQ(relays_.isOn(kLight), false);
}

TEST_F(RelaysTest, InvalidActsAreRefused) {
  EXPECT_FALSE(act(kDisabled, RelayAct::kOn));
  EXPECT_FALSE(act(0, RelayAct::kOn));
  EXPECT_FALSE(act(9, RelayAct::kOn));
  EXPECT_FALSE(act(kDoor, RelayAct{4}));
  EXPECT_FALSE(relays_.act({2, kDoor, RelayAct::kOn}));
  EXPECT_FALSE(relays_.schedule({{kDevice, kDoor, RelayAct::kOn}, -1, 0}));
  EXPECT_EQ(relays_.isOn(9), std::nullopt);
  EXPECT_EQ(relays_.lastAct(0), std::nullopt);
  for (int i = 0; i < Relays::kMaxScheduled; ++i) {
    EXPECT_TRUE(relays_.schedule({{kDevice, kDoor, RelayAct::kOff}, 1000, 0}));
  }
  EXPECT_FALSE(relays_.schedule({{kDevice, kDoor, RelayAct::kOff}, 1000, 0}));
  wait(1000);
  EXPECT_TRUE(relays_.schedule({{kDevice, kDoor, RelayAct::kOff}, 1000, 0}));
}

TEST_F(RelaysTest, OutputsChangeOnCommit) {
  EXPECT_FALSE(relays_.setTime(us_, {kDevice, kDoor, 0, 100})) << "outside of the bracket";
  EXPECT_FALSE(relays_.commit(us_));

  ASSERT_TRUE(relays_.begin(us_));
  EXPECT_TRUE(relays_.setTime(us_, {kDevice, kDoor, 200, 100}));
  EXPECT_TRUE(relays_.setType(us_, {kDevice, kLight, RelayType::kPulse, "lamp"}));
  EXPECT_TRUE(relays_.setEnabled(us_, {kDevice, kDisabled, 1}));
  EXPECT_FALSE(relays_.setTime(us_, {kDevice, kDoor, -1, 100}));
  EXPECT_FALSE(relays_.setTime(us_, {kDevice, kDoor, 0, Relays::kMaxMs + 1}));
  EXPECT_FALSE(relays_.setType(us_, {kDevice, kDoor, RelayType{2}, {}}));
  EXPECT_FALSE(relays_.setEnabled(us_, {kDevice, 9, 1}));
  sim::RelayOutputRecord whole{
      .device = kDevice, .reserved = 0, .output = sim::with(&sim::RelayOutput::name, "Gate", output(4))};
  whole.output.state = 1;
  EXPECT_TRUE(relays_.setOutput(us_, whole));
  EXPECT_EQ(output(kDoor).onMs, 3000) << "not before the commit";
  EXPECT_EQ(output(kDisabled).enabled, 0);

  ASSERT_TRUE(relays_.commit(us_));
  EXPECT_FALSE(relays_.commit(us_));
  const auto expectChanged = [](const sim::RelayOutputsRecord& shown) {
    EXPECT_EQ(shown.outputs[kDoor - 1].delayMs, 200);
    EXPECT_EQ(shown.outputs[kDoor - 1].onMs, 100);
    EXPECT_EQ(shown.outputs[kLight - 1].type, RelayType::kPulse);
    EXPECT_EQ(sim::textOf(shown.outputs[kLight - 1].typeName), "lamp");
    EXPECT_EQ(shown.outputs[kDisabled - 1].enabled, 1);
    EXPECT_EQ(sim::textOf(shown.outputs[3].name), "Gate");
    EXPECT_EQ(shown.outputs[3].state, 0) << "only actions switch";
  };
  expectChanged(relays_.outputs());

  Relays restarted{store_};
  std::string error;
  ASSERT_TRUE(restarted.load(&error)) << error;
  expectChanged(restarted.outputs());

  EXPECT_TRUE(act(kDoor, RelayAct::kOn));
  EXPECT_EQ(relays_.isOn(kDoor), false);
  wait(200);
  EXPECT_EQ(relays_.isOn(kDoor), true);
  wait(100);
  EXPECT_EQ(relays_.isOn(kDoor), false);
}

TEST_F(RelaysTest, DisabledOutputStaysOff) {
  const auto commit = [&](auto change) {
    ASSERT_TRUE(relays_.begin(us_));
    EXPECT_TRUE(change());
    ASSERT_TRUE(relays_.commit(us_));
  };
  const auto enable = [&](int32_t enabled) { return relays_.setEnabled(us_, {kDevice, kLight, enabled}); };
  act(kLight, RelayAct::kOn);
  relays_.schedule({{kDevice, kLight, RelayAct::kOn}, 100, 0});
  commit([&] { return enable(0); });
  EXPECT_EQ(relays_.isOn(kLight), false);
  wait(100);
  EXPECT_EQ(relays_.isOn(kLight), false);

  // An action that waits for the output's delay does not outlive the disabling.
  commit([&] { return enable(1); });
  commit([&] { return relays_.setTime(us_, {kDevice, kLight, 1000, 3000}); });
  act(kLight, RelayAct::kOn);
  commit([&] { return enable(0); });
  commit([&] { return enable(1); });
  wait(1000);
  EXPECT_EQ(relays_.isOn(kLight), false);
}

TEST_F(RelaysTest, OneProcessAtATimeMayEdit) {
  const pid_t child = fork();
  if (child == 0) {
    pause();
    _exit(0);
  }
  ASSERT_TRUE(relays_.begin(child));
  EXPECT_TRUE(relays_.setTime(child, {kDevice, kDoor, 0, 100}));
  EXPECT_FALSE(relays_.isEditable(us_));
  EXPECT_FALSE(relays_.begin(us_));
  EXPECT_FALSE(relays_.setEnabled(us_, {kDevice, kDoor, 0}));
  EXPECT_FALSE(relays_.commit(us_));

  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(relays_.isEditable(us_));
  ASSERT_TRUE(relays_.begin(us_));
  ASSERT_TRUE(relays_.commit(us_));
  EXPECT_EQ(output(kDoor).onMs, 3000) << "a process died before its commit";

  ASSERT_TRUE(relays_.begin(us_));
  EXPECT_TRUE(relays_.setTime(us_, {kDevice, kDoor, 0, 100}));
  ASSERT_TRUE(relays_.begin(us_));
  ASSERT_TRUE(relays_.commit(us_));
  EXPECT_EQ(output(kDoor).onMs, 3000) << "a second begin discards the changes";
}

}  // namespace
