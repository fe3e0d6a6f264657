#pragma once

#include <vesk/config.h>

#include "ScriptedTest.h"

/** The C functions of the config service; not connected at first. */
class ConfigFixture : public vesk::test::ScriptedTest {
 protected:
  using Wire = vesk::test::Wire;

  ConfigFixture() : ScriptedTest("com.qv.ConfigService", u"com.qv.IConfigService") {}
  /** Ends the connection, for the next test. */
  ~ConfigFixture() override { die(); }

  void connect() {
    connectWith([] { return connect_config_service(nullptr); });
  }
};
