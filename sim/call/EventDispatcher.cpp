#include "call/EventDispatcher.h"

#include <variant>

#include "call/CallRecords.h"

namespace sim {

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;

template <typename Payload>
const Payload& payload(const Event& event) {
  return std::get<Payload>(event.payload);
}

/** The record of whichever payload is one. */
struct ToRecord {
  CommonParcelable operator()(const CallInfo& info) const { return toRecord(info); }
  CommonParcelable operator()(const AutoRedialInfo& info) const { return toRecord(info); }
  template <typename Other>
  CommonParcelable operator()(const Other&) const {
    return {};
  }
};

/* One for each list of parameters that a listener's methods have. */

Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(), const Event&) {
  return (listener.*method)();
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(int32_t), const Event& event) {
  return (listener.*method)(payload<int32_t>(event));
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const CommonParcelable&),
            const Event& event) {
  return (listener.*method)(std::visit(ToRecord{}, event.payload));
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const CommonParcelable&, bool),
            const Event& event) {
  const auto& info = payload<CompletionInfo>(event);
  return (listener.*method)(toRecord(info), info.free);
}
Status send(ICallEventListener& listener,
            Status (ICallEventListener::*method)(int32_t, const std::vector<int32_t>&), const Event& event) {
  const auto& info = payload<ConferenceInfo>(event);
  return (listener.*method)(info.conference, info.members);
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(int32_t, int32_t),
            const Event& event) {
  const auto& key = payload<KeyInfo>(event);
  return (listener.*method)(key.code, key.status);
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const std::string&),
            const Event& event) {
  return (listener.*method)(payload<std::string>(event));
}

Status send(ICallEventListener& listener, const Event& event) {
  switch (event.type) {
#define METHOD(code, name, ...) \
  case EventType::name:         \
    return send(listener, &ICallEventListener::name, event);
#include <com/qv/CallEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

}  // namespace

void EventDispatcher::publish(const Event& event) {
  Dispatcher::publish([event](ICallEventListener& listener) { return send(listener, event); });
}

}  // namespace sim
