#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "ScriptedService.h"
#include "Wire.h"

namespace vesk::test {

inline const Wire kOk = Wire().i32(0);

/** Tests the C functions of one service with a ScriptedService. Starts without a connection. */
class ScriptedTest : public testing::Test {
 protected:
  ScriptedTest(const char* name, const char16_t* descriptor) : name_(name), descriptor_(descriptor) {}

  /** Starts the service and connects. */
  template <class Connect>
  void connectWith(Connect connect) {
    service_.emplace(name_);
    ASSERT_TRUE(connect());
  }

  void answer(const Wire& outValues) { service_->answer(Wire(kOk).append(outValues)); }

  /** Replies with an exception, followed by out-values that must not be read. */
  void answerException(const Wire& outValues) {
    service_->answer(Wire().i32(-8).text(u"busy").i32(0).i32(17).append(outValues));
  }

  /** The transaction itself fails. */
  void answerNothing() { service_->answer(Wire(), android::FAILED_TRANSACTION); }

  /** Expects exactly this request since the previous check. */
  void expectRequest(uint32_t code, const Wire& arguments) {
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, code);
    EXPECT_EQ(request->flags, 0u);
    EXPECT_EQ(request->bytes, requestWith(arguments));
  }

  std::string requestWith(const Wire& arguments) const {
    return Wire().text(descriptor_).append(arguments).bytes();
  }

  /** Kills the service, if it runs, which ends a connection with death notification. Returns the
   * log lines up to the one that reports the death. */
  std::vector<LogLine> die() {
    if (!service_.has_value()) return {};
    service_->kill();
    service_.reset();
    return log_.takeUntil(deathLine());
  }

  LogLine deathLine() const { return {ANDROID_LOG_INFO, "CallClient", std::string(name_) + " is died. "}; }

  const char* const name_;
  const std::u16string descriptor_;
  LogCapture log_;
  std::optional<ScriptedService> service_;
};

}  // namespace vesk::test
