#pragma once

#include <com/qv/ICallService.h>

#include <string>

#include "FrameSizes.h"

namespace vesk::bench {

/* The short call of all comparisons: two small arguments and a number as the result. */

constexpr int kLine = 1;
constexpr const char* kNumber = "2001";

class CallService : public com::qv::DefaultCallService {
 public:
  android::binder::Status makeCall(int32_t line, const std::string&, int32_t* result) override {
    *result = line;
    return android::binder::Status::ok();
  }
};

inline FrameSizes makeCallSizes() {
  int32_t result;
  return frameSizes<com::qv::BpCallService, CallService>(
      [&](auto* proxy) { proxy->makeCall(kLine, kNumber, &result); });
}

}  // namespace vesk::bench
