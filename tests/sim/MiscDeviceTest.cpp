#include "misc/MiscDevice.h"

#include <gtest/gtest.h>

#include "ServiceTesting.h"
#include "misc/MiscService.h"

namespace {

using sim::MiscDevice;
using sim::PlayState;

class MiscDeviceTest : public testing::Test {
 protected:
  void wait(int32_t ms) { device_.advanceTo(now_ += sim::Time(ms)); }
  std::string told() { return std::exchange(told_, ""); }

  MiscDevice device_{{
      .ate = [this](const sim::AteEvent& event) { told_ += toString(event) + "\n"; },
      .misc = [this](const sim::MiscEvent& event) { told_ += toString(event) + "\n"; },
  }};

 private:
  sim::Time now_{0};
  std::string told_;
};

TEST_F(MiscDeviceTest, RunsAllTestsOneAfterTheOther) {
  EXPECT_FALSE(device_.startTest(4));
  EXPECT_FALSE(device_.startTest(-1));
  EXPECT_FALSE(device_.stopTest());
  ASSERT_TRUE(device_.startTest(MiscDevice::kAll));
  EXPECT_FALSE(device_.startTest(MiscDevice::kDisplay)) << "one runs";
  EXPECT_FALSE(device_.touchScreenResult(true)) << "not its turn";
  wait(1500);
  EXPECT_EQ(told(),
            "onlineAteStartedEvent\n"
            "updateContextEvent 'Display'\n"
            "lcdSwitchEvent\nlcdSwitchEvent\nlcdSwitchEvent\n"
            "updateContextEvent 'Touch screen'\n"
            "touchScreenStartEvent\n");
  EXPECT_TRUE(device_.touchScreenResult(true));
  EXPECT_EQ(told(),
            "touchScreenStopEvent\n"
            "updateContextEvent 'Touch screen passed'\n"
            "updateContextEvent 'Restart'\n"
            "systemRebootEvent\n"
            "updateContextEvent 'Passed'\n"
            "onlineAteStopedEvent\n");
  EXPECT_EQ(device_.testInfo().passed, 3);
  EXPECT_FALSE(device_.testInfo().running);
  wait(20'000);
  EXPECT_EQ(told(), "");
}

TEST_F(MiscDeviceTest, FailsAScreenThatNobodyTouches) {
  ASSERT_TRUE(device_.startTest(MiscDevice::kTouchScreen));
  wait(9999);
  EXPECT_TRUE(device_.testInfo().running);
  wait(1);
  EXPECT_EQ(device_.testInfo().failed, 1);
  EXPECT_EQ(device_.testInfo().text, "Failed");
  EXPECT_FALSE(device_.testInfo().running);
}

TEST_F(MiscDeviceTest, StopsATestInItsMiddle) {
  device_.startTest(MiscDevice::kTouchScreen);
  told();
  EXPECT_TRUE(device_.stopTest());
  EXPECT_EQ(told(), "touchScreenStopEvent\nonlineAteStopedEvent\n");
  device_.startTest(MiscDevice::kAll);
  wait(600);
  told();
  EXPECT_TRUE(device_.stopTest());
  wait(20'000);
  EXPECT_EQ(told(), "onlineAteStopedEvent\n");
}

TEST_F(MiscDeviceTest, PlaysARecordingToItsEnd) {
  EXPECT_FALSE(device_.play("nothing.wav"));
  EXPECT_FALSE(device_.pause());
  EXPECT_FALSE(device_.resume());
  ASSERT_TRUE(device_.play("call-200.wav"));
  wait(1500);
  EXPECT_FALSE(device_.resume());
  EXPECT_TRUE(device_.pause());
  wait(10'000);
  EXPECT_EQ(device_.playState(), PlayState::kPaused);
  EXPECT_TRUE(device_.resume());
  wait(499);
  EXPECT_EQ(device_.playState(), PlayState::kPlaying);
  wait(1);
  EXPECT_EQ(device_.playState(), PlayState::kStopped);

  device_.play("call-200.wav");
  wait(1000);
  device_.play("call-201.wav");
  wait(2000);
  EXPECT_EQ(device_.playState(), PlayState::kPlaying) << "it has its own length";
  device_.stopPlaying();
  EXPECT_EQ(device_.playState(), PlayState::kStopped);
  device_.play("doorbell.wav");
  device_.putUdisk(false);
  EXPECT_EQ(device_.playState(), PlayState::kStopped);
  EXPECT_FALSE(device_.play("doorbell.wav"));
}

TEST_F(MiscDeviceTest, ShowsBrightnessLevelsWhileTheyAreTried) {
  EXPECT_FALSE(device_.presetLevel(7));
  device_.startPresetting();
  EXPECT_FALSE(device_.presetLevel(0));
  EXPECT_FALSE(device_.presetLevel(11));
  EXPECT_TRUE(device_.presetLevel(7));
  EXPECT_EQ(device_.backlightLevel(), 7);
  device_.stopPresetting();
  EXPECT_EQ(device_.backlightLevel(), 5);
}

TEST_F(MiscDeviceTest, AsksForOneScreenshotAtATime) {
  device_.askForScreenshot();
  EXPECT_EQ(told(), "webscreenshot\n");
  device_.screenshotReady();
  EXPECT_EQ(told(), "");
  device_.screenshotReady();
  EXPECT_EQ(told(), "webscreenshot\n") << "nobody has asked for that one";
}

}  // namespace
