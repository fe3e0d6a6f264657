#pragma once

#include <gtest/gtest.h>
#include <vesk/config.h>

#include "RecordingService.h"

/** A config service that writes down what it is asked; not connected at first. */
class ConfigFixture : public testing::Test {
 protected:
  using Wire = vesk::test::Wire;

  ~ConfigFixture() override { service_->die(); }

  void connect() {
    service_->registerAs("com.qv.ConfigService");
    ASSERT_TRUE(connect_config_service(nullptr));
  }

  void answer(const Wire& outValues) { service_->answer = Wire().i32(0).append(outValues); }

  /** Answers with an exception, and behind it what nobody may take. */
  void answerException(const Wire& outValues) {
    service_->answer = Wire().i32(-8).text(u"busy").i32(0).i32(17).append(outValues);
  }

  /** The only request since the last look has to be this one. */
  void expectRequest(uint32_t code, const Wire& arguments) {
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, code);
    EXPECT_EQ(request->flags, 0u);
    EXPECT_EQ(request->bytes, Wire().text(u"com.qv.IConfigService").append(arguments).bytes());
  }

  const android::sp<vesk::test::RecordingService> service_ = new vesk::test::RecordingService;
};
