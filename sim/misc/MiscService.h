#pragma once

#include <com/qv/IMiscService.h>

#include <chrono>
#include <functional>
#include <string>

#include "clock/RealTime.h"
#include "events/Dispatcher.h"
#include "misc/MiscDevice.h"

namespace sim {

/** The misc service of the simulated device. What the device refuses is answered with EX_ILLEGAL_STATE and a
 * message where a method has no result, or a record, and with -1 where it has a number. */
class MiscService : public com::qv::BnMiscService {
 public:
  // The rows name them so.
  using CommonParcelable = com::qv::CommonParcelable;
  using IAteEventListener = com::qv::IAteEventListener;
  using IMiscEventListener = com::qv::IMiscEventListener;
  using Status = android::binder::Status;

  /** `trace` is told of each event, in words, under the device's lock. */
  MiscService(double speed, const std::function<void(const std::string&)>& trace);

  RealTime<MiscDevice>& device() { return device_; }

  /** No more events; waits until no listener is being called, or the time is over. */
  void stopEvents(std::chrono::milliseconds patience);

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/MiscService.def>
#undef METHOD

 private:
  Dispatcher<IAteEventListener> ateListeners_;
  Dispatcher<IMiscEventListener> miscListeners_;
  RealTime<MiscDevice> device_;
};

}  // namespace sim
