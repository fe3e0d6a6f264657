#pragma once

#include <com/qv/ICallService.h>

#include <chrono>

#include "call/EventDispatcher.h"
#include "common/Service.h"
#include "phone/Phone.h"

namespace sim {

/** The methods that forward to the method of Phone with the same name. */
class PhoneMethods : public com::qv::BnCallService {
 public:
  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using ICallEventListener = com::qv::ICallEventListener;
  using Status = android::binder::Status;

  RealTime<Phone>& phone() { return phone_; }

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/CallService.def>
#undef METHOD

 protected:
  PhoneMethods(double speed, Phone::Sink sink) : phone_(speed, std::move(sink)) {}

  /** Declared before phone_, which publishes events until it is destroyed. */
  EventDispatcher dispatcher_;
  RealTime<Phone> phone_;
};

/** The call service of the simulated device. On refusal, methods that return an integer return -1;
 * methods without a result throw EX_ILLEGAL_STATE with a message. */
class CallService : public PhoneMethods {
 public:
  /** `trace` is called with each event, under the phone's lock. */
  CallService(double speed, const Phone::Sink& trace);

  /** As EventDispatcher::corrupt(). */
  void corruptEvents(std::function<int32_t(EventType)> extraBytes) {
    dispatcher_.corrupt(std::move(extraBytes));
  }

  /** Stops all events; waits for the listeners' current calls until the timeout. */
  void stopEvents(std::chrono::milliseconds timeout) { dispatcher_.stop(timeout); }

  Status setVideoDisplayArea(int32_t chan, const CommonParcelable& areaA,
                             const CommonParcelable& areaB) override;
  Status registerCallEventListener(const android::sp<ICallEventListener>& listener) override;
  Status getSnapshotInfoByIndex(int32_t chan, int32_t index, CommonParcelable* info) override;
};

}  // namespace sim
