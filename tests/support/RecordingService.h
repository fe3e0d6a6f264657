#pragma once

#include <binder/IServiceManager.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "RecordingBinder.h"

namespace vesk::test {

/** A RecordingBinder that stands for a whole service, in the process of its clients; the test decides on its
 * death. */
class RecordingService : public RecordingBinder {
 public:
  /** The service manager knows it by that name from now on. */
  void registerAs(const char* name) {
    EXPECT_EQ(android::defaultServiceManager()->addService(android::String16(name), this), android::OK);
  }

  android::status_t linkToDeath(const android::sp<DeathRecipient>& recipient, void*, uint32_t) override {
    recipients_.push_back(recipient);
    return android::OK;
  }

  /** Tells whoever wants to know. */
  void die() {
    for (const android::wp<DeathRecipient>& recipient : std::exchange(recipients_, {})) {
      const android::sp<DeathRecipient> strong = recipient.promote();
      if (strong != nullptr) strong->binderDied(this);
    }
  }

 private:
  std::vector<android::wp<DeathRecipient>> recipients_;
};

}  // namespace vesk::test
