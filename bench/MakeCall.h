#pragma once

#include <com/qv/ICallService.h>

#include <string>

#include "Scales.h"

namespace vesk::bench {

/* The call that is compared with everything: two small arguments, one number back. */

constexpr int kLine = 1;
constexpr const char* kNumber = "2001";

class CallService : public com::qv::DefaultCallService {
 public:
  android::binder::Status makeCall(int32_t line, const std::string&, int32_t* result) override {
    *result = line;
    return android::binder::Status::ok();
  }
};

inline Exchange weighMakeCall() {
  int32_t result;
  return weigh<com::qv::BpCallService, CallService>(
      [&](auto* proxy) { proxy->makeCall(kLine, kNumber, &result); });
}

}  // namespace vesk::bench
