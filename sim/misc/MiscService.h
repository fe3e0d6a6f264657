#pragma once

#include <com/qv/IMiscService.h>

#include <chrono>
#include <functional>
#include <string>

#include "common/Service.h"
#include "events/Dispatcher.h"
#include "misc/MiscDevice.h"

namespace sim {

/**
 * The methods that forward to the method of MiscDevice with the same name. `trace` is called with a
 * line of text for each event, under the device's lock.
 */
class MiscMethods : public com::qv::BnMiscService {
 public:
  MiscMethods(double speed, const std::function<void(const std::string&)>& trace);

  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using IAteEventListener = com::qv::IAteEventListener;
  using IMiscEventListener = com::qv::IMiscEventListener;
  using Status = android::binder::Status;

  RealTime<MiscDevice>& device() { return device_; }

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/MiscService.def>
#undef METHOD

 protected:
  /** Declared before device_, which publishes events until it is destroyed. */
  Dispatcher<IAteEventListener> ateListeners_;
  Dispatcher<IMiscEventListener> miscListeners_;
  RealTime<MiscDevice> device_;
};

/** The misc service of the simulated device. On refusal, playRecFileStart() returns -1; methods
 * without a result, or with a record, throw EX_ILLEGAL_STATE with a message. */
class MiscService : public MiscMethods {
 public:
  using MiscMethods::MiscMethods;

  /** Stops all events; waits for the listeners' current calls until the timeout. */
  void stopEvents(std::chrono::milliseconds timeout);

  Status getAteDisplay(CommonParcelable* info) override;
  Status registerAteEventListener(const android::sp<IAteEventListener>& listener) override;
  Status registerMiscEventListener(const android::sp<IMiscEventListener>& listener) override;
  Status getUdiskCapacity(CommonParcelable* capacity) override;
  Status getUdiskRecordsFiles(std::vector<CommonParcelable>* files) override;
  Status getMqttMulticastInfo(CommonParcelable* info) override;
};

}  // namespace sim
