#include "call/EventDispatcher.h"

#include <algorithm>
#include <string>
#include <variant>

#include "call/CallRecords.h"

namespace sim {

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;

struct Delivery {
  Event event;
  int32_t moreBytes;
};

template <typename Payload>
const Payload& payload(const Delivery& delivery) {
  return std::get<Payload>(delivery.event.payload);
}

/** The record of whichever payload is one. */
struct ToRecord {
  CommonParcelable operator()(const CallInfo& info) const { return toRecord(info); }
  CommonParcelable operator()(const AutoRedialInfo& info) const { return toRecord(info); }
  CommonParcelable operator()(const CompletionInfo& info) const { return toRecord(info); }
  template <typename Other>
  CommonParcelable operator()(const Other&) const {
    return {};
  }
};

CommonParcelable record(const Delivery& delivery) {
  CommonParcelable whole = std::visit(ToRecord{}, delivery.event.payload);
  if (delivery.moreBytes == 0) return whole;
  std::string bytes(whole.blob().c_str(), whole.blob().length());
  bytes.resize(
      static_cast<size_t>(std::max<int64_t>(static_cast<int64_t>(bytes.size()) + delivery.moreBytes, 0)));
  return {bytes.data(), bytes.size()};
}

bool hasRecord(const Event& event) {
  return std::holds_alternative<CallInfo>(event.payload) ||
         std::holds_alternative<AutoRedialInfo>(event.payload) ||
         std::holds_alternative<CompletionInfo>(event.payload);
}

/* One for each list of parameters that a listener's methods have. */

Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(), const Delivery&) {
  return (listener.*method)();
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(int32_t),
            const Delivery& delivery) {
  return (listener.*method)(payload<int32_t>(delivery));
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const CommonParcelable&),
            const Delivery& delivery) {
  return (listener.*method)(record(delivery));
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const CommonParcelable&, bool),
            const Delivery& delivery) {
  return (listener.*method)(record(delivery), payload<CompletionInfo>(delivery).free);
}
Status send(ICallEventListener& listener,
            Status (ICallEventListener::*method)(int32_t, const std::vector<int32_t>&),
            const Delivery& delivery) {
  const auto& info = payload<ConferenceInfo>(delivery);
  return (listener.*method)(info.conference, info.members);
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(int32_t, int32_t),
            const Delivery& delivery) {
  const auto& key = payload<KeyInfo>(delivery);
  return (listener.*method)(key.code, key.status);
}
Status send(ICallEventListener& listener, Status (ICallEventListener::*method)(const std::string&),
            const Delivery& delivery) {
  return (listener.*method)(payload<std::string>(delivery));
}

Status send(ICallEventListener& listener, const Delivery& delivery) {
  switch (delivery.event.type) {
#define METHOD(code, name, ...) \
  case EventType::name:         \
    return send(listener, &ICallEventListener::name, delivery);
#include <com/qv/CallEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

}  // namespace

void EventDispatcher::publish(const Event& event) {
  const Delivery delivery{event, moreBytes_ && hasRecord(event) ? moreBytes_(event.type) : 0};
  Dispatcher::publish([delivery](ICallEventListener& listener) { return send(listener, delivery); });
}

}  // namespace sim
