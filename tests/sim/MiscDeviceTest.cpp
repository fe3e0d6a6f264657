#include "misc/MiscDevice.h"

#include <gtest/gtest.h>

#include "ServiceTesting.h"
#include "misc/MiscService.h"

namespace {

using sim::MiscDevice;

class MiscDeviceTest : public testing::Test {
 protected:
  void wait(int32_t ms) { device_.advanceTo(now_ += sim::Time(ms)); }
  std::string events() { return std::exchange(events_, ""); }

  MiscDevice device_{{
      .ate = [this](const sim::AteEvent& event) { events_ += toString(event) + "\n"; },
      .misc = [this](const sim::MiscEvent& event) { events_ += toString(event) + "\n"; },
  }};

 private:
  sim::Time now_{0};
  std::string events_;
};

TEST_F(MiscDeviceTest, AllTestsRunInTurn) {
  EXPECT_TRUE(device_.localAteStart(4));
  EXPECT_TRUE(device_.localAteStart(-1));
  EXPECT_TRUE(device_.localAteStop(0));
  ASSERT_FALSE(device_.localAteStart(MiscDevice::kAll));
  EXPECT_TRUE(device_.localAteStart(MiscDevice::kDisplay)) << "a test is running";
  EXPECT_TRUE(device_.ateTouchScreenResult(MiscDevice::kPassed, 0)) << "another test is running";
  wait(1500);
  EXPECT_EQ(events(),
            "onlineAteStartedEvent\n"
            "updateContextEvent 'Display'\n"
            "lcdSwitchEvent\nlcdSwitchEvent\nlcdSwitchEvent\n"
            "updateContextEvent 'Touch screen'\n"
            "touchScreenStartEvent\n");
  EXPECT_FALSE(device_.ateTouchScreenResult(MiscDevice::kPassed, 0));
  EXPECT_EQ(events(),
            "touchScreenStopEvent\n"
            "updateContextEvent 'Touch screen passed'\n"
            "updateContextEvent 'Restart'\n"
            "systemRebootEvent\n"
            "updateContextEvent 'Passed'\n"
            "onlineAteStopedEvent\n");
  EXPECT_EQ(device_.testInfo().passed, 3);
  EXPECT_FALSE(device_.testInfo().running);
  wait(20'000);
  EXPECT_EQ(events(), "");
}

TEST_F(MiscDeviceTest, UntouchedScreenFails) {
  ASSERT_FALSE(device_.localAteStart(MiscDevice::kTouchScreen));
  wait(9999);
  EXPECT_TRUE(device_.testInfo().running);
  wait(1);
  EXPECT_EQ(device_.testInfo().failed, 1);
  EXPECT_EQ(device_.testInfo().text, "Failed");
  EXPECT_FALSE(device_.testInfo().running);
}

TEST_F(MiscDeviceTest, RunningTestIsStopped) {
  device_.localAteStart(MiscDevice::kTouchScreen);
  events();
  EXPECT_FALSE(device_.localAteStop(0));
  EXPECT_EQ(events(), "touchScreenStopEvent\nonlineAteStopedEvent\n");
  device_.localAteStart(MiscDevice::kAll);
  wait(600);
  events();
  EXPECT_FALSE(device_.localAteStop(0));
  wait(20'000);
  EXPECT_EQ(events(), "onlineAteStopedEvent\n");
}

TEST_F(MiscDeviceTest, RecordingIsPlayedPausedAndStopped) {
  EXPECT_EQ(device_.playRecFileStart("nothing.wav"), -1);
  EXPECT_TRUE(device_.playRecFilePause());
  EXPECT_TRUE(device_.playRecFileResume());
  ASSERT_EQ(device_.playRecFileStart("call-200.wav"), 0);
  wait(1500);
  EXPECT_TRUE(device_.playRecFileResume());
  EXPECT_FALSE(device_.playRecFilePause());
  wait(10'000);
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kPaused);
  EXPECT_FALSE(device_.playRecFileResume());
  wait(499);
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kPlaying);
  wait(1);
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kStopped);

  device_.playRecFileStart("call-200.wav");
  wait(1000);
  device_.playRecFileStart("call-201.wav");
  wait(2000);
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kPlaying) << "it has its own length";
  device_.playRecFileStop();
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kStopped);
  device_.playRecFileStart("doorbell.wav");
  device_.setUdisk(false);
  EXPECT_EQ(device_.getPlayRecFileState(), sim::kStopped);
  EXPECT_EQ(device_.playRecFileStart("doorbell.wav"), -1);
}

TEST_F(MiscDeviceTest, PresettingShowsLevels) {
  EXPECT_TRUE(device_.balcklightPresetLevel(7));
  device_.backlightStartPresetting();
  EXPECT_TRUE(device_.balcklightPresetLevel(0));
  EXPECT_TRUE(device_.balcklightPresetLevel(11));
  EXPECT_FALSE(device_.balcklightPresetLevel(7));
  EXPECT_EQ(device_.backlightLevel(), 7);
  device_.backlightStopPresetting();
  EXPECT_EQ(device_.backlightLevel(), 5);
}

TEST_F(MiscDeviceTest, ScreenshotRequestsAreAnswered) {
  device_.requestScreenshot();
  EXPECT_EQ(events(), "webscreenshot\n");
  device_.notifyLcdScreenShotReady();
  EXPECT_EQ(events(), "");
  device_.notifyLcdScreenShotReady();
  EXPECT_EQ(events(), "webscreenshot\n") << "no request was open";
}

}  // namespace
