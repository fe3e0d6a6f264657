#include "call/CallService.h"

#include "call/CallRecords.h"

namespace sim {

using android::binder::Status;

#define METHOD(code, name, ...) SIM_FORWARD(PhoneMethods, phone_, name __VA_OPT__(, ) __VA_ARGS__)
#include <com/qv/CallService.def>
#undef METHOD

CallService::CallService(double speed, const Phone::Sink& trace)
    : PhoneMethods(speed, [this, trace](Time time, const Event& event) {
        trace(time, event);
        dispatcher_.publish(event);
      }) {}

Status CallService::setVideoDisplayArea(int32_t chan, const CommonParcelable& areaA,
                                        const CommonParcelable& areaB) {
  constexpr size_t kAreaSize = 16;
  if (areaA.blob().length() != kAreaSize || areaB.blob().length() != kAreaSize) {
    return refuse("A video area is a record of 16 bytes");
  }
  return forward(phone_, [&](Phone& phone) { return phone.setVideoDisplayArea(chan); });
}

Status CallService::registerCallEventListener(const android::sp<ICallEventListener>& listener) {
  return dispatcher_.subscribeCaller(listener);
}

Status CallService::getSnapshotInfoByIndex(int32_t chan, int32_t index, CommonParcelable* info) {
  const auto snapshot = phone_.use([&](Phone& phone) { return phone.snapshot(chan, index); });
  if (!snapshot) return refuse("There is no such snapshot");
  *info = toRecord(*snapshot);
  return Status::ok();
}

}  // namespace sim
