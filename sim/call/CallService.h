#pragma once

#include <com/qv/ICallService.h>

#include <chrono>

#include "call/EventDispatcher.h"
#include "clock/RealTime.h"
#include "phone/Phone.h"

namespace sim {

/**
 * The call service of the simulated device. What the phone refuses is answered with EX_ILLEGAL_STATE and a
 * message where a method has no result, and with -1 where it has one.
 */
class CallService : public com::qv::BnCallService {
 public:
  // The rows name them so.
  using CommonParcelable = com::qv::CommonParcelable;
  using ICallEventListener = com::qv::ICallEventListener;

  /** `trace` is told of each event, under the phone's lock. */
  CallService(double speed, const Phone::Sink& trace);

  RealTime<Phone>& phone() { return phone_; }

  /** As EventDispatcher::corrupt(). */
  void distortEvents(std::function<int32_t(EventType)> moreBytes) {
    dispatcher_.corrupt(std::move(moreBytes));
  }

  /** No more events; waits until no listener is being called, or the time is over. */
  void stopEvents(std::chrono::milliseconds patience) { dispatcher_.stop(patience); }

#define METHOD(code, name, ...) android::binder::Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/CallService.def>
#undef METHOD

 private:
  template <typename... Params, typename... Args>
  android::binder::Status tell(Phone::Refusal (Phone::*method)(Params...), const Args&... args);
  template <typename Result, typename Method, typename... Args>
  android::binder::Status ask(Result* result, Method method, const Args&... args);

  EventDispatcher dispatcher_;
  RealTime<Phone> phone_;
};

}  // namespace sim
