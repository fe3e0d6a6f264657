#include <gtest/gtest.h>
#include <vesk/vesk_client.h>

#include <fstream>
#include <string>

#include "ChildProcess.h"
#include "RunProgram.h"
#include "TemporaryDirectory.h"

/* vesk-device with a state directory, started again and again, seen through the C API. */

namespace {

using vesk::test::ChildProcess;
using vesk::test::TemporaryDirectory;

CHILD_ROLE(device) {
  parent.ready();
  return vesk::test::become({VESK_DEVICE, "--state", args[0].c_str()});
}

std::string config(const char* key) {
  char value[64] = "nothing";
  EXPECT_EQ(binder_get_config("section", key, "", value, sizeof(value)), 0);
  return value;
}

void quit(ChildProcess& device) {
  device.channel().send("quit\n");
  EXPECT_EQ(device.wait(), 0);
}

TEST(State, OfTheDeviceIsWhatWasSavedLast) {
  const TemporaryDirectory directory;
  const std::string screen(VESK_SCREENINFO_CONFIG_SIZE, 's');
  {
    ChildProcess device("device", {directory.path()});
    ASSERT_TRUE(connect_config_service(nullptr));
    EXPECT_EQ(config("saved"), "");
    EXPECT_EQ(binder_set_config("section", "saved", "", "1"), 0);
    EXPECT_EQ(binder_screeninfo_set_config(screen.data()), 0);
    EXPECT_EQ(binder_save_config(), 0);
    quit(device);
  }
  {
    ChildProcess device("device", {directory.path()});
    ASSERT_TRUE(connect_config_service(nullptr));
    EXPECT_EQ(config("saved"), "1");
    EXPECT_EQ(binder_set_config("section", "saved", "", "2"), 0);
    EXPECT_EQ(binder_save_config_handel(0), 0);
    EXPECT_EQ(binder_set_config("section", "saved", "", "3"), 0);
    EXPECT_EQ(config("saved"), "3");
    device.kill();
  }
  {
    ChildProcess device("device", {directory.path()});
    ASSERT_TRUE(connect_config_service(nullptr));
    EXPECT_EQ(config("saved"), "2");
    std::string record(VESK_SCREENINFO_CONFIG_SIZE, '-');
    EXPECT_EQ(binder_screeninfo_get_config(record.data()), 0);
    EXPECT_EQ(record, screen);
    EXPECT_EQ(binder_factory_reset(0), 0);
    EXPECT_EQ(config("saved"), "");
    quit(device);
  }
}

TEST(State, OfAnotherProgramEndsTheDevice) {
  const TemporaryDirectory directory;
  std::ofstream(directory.path() + "/device.db") << "not ours";
  ChildProcess device("device", {directory.path()});
  EXPECT_EQ(device.wait(), 1);
}

}  // namespace
