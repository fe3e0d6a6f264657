#include "call/EventDispatcher.h"

#include <string>
#include <tuple>
#include <variant>

#include "call/CallRecords.h"
#include "common/Records.h"
#include "events/Deliver.h"

namespace sim {

namespace {

using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;

/** The arguments of a listener's method. */
struct Arguments {
  int32_t extraBytes;

  template <typename Info>
  CommonParcelable record(const Info& info) const {
    const CommonParcelable whole = toRecord(info);
    const std::string bytes = resized({whole.blob().c_str(), whole.blob().length()}, extraBytes);
    return {bytes.data(), bytes.size()};
  }

  std::tuple<> operator()(std::monostate) const { return {}; }
  std::tuple<int32_t> operator()(int32_t value) const { return {value}; }
  std::tuple<std::string> operator()(const std::string& text) const { return {text}; }
  std::tuple<int32_t, int32_t> operator()(const KeyInfo& key) const { return {key.code, key.status}; }
  std::tuple<int32_t, std::vector<int32_t>> operator()(const ConferenceInfo& info) const {
    return {info.conference, info.members};
  }
  std::tuple<CommonParcelable> operator()(const CallInfo& info) const { return record(info); }
  std::tuple<CommonParcelable> operator()(const AutoRedialInfo& info) const { return record(info); }
  std::tuple<CommonParcelable, bool> operator()(const CompletionInfo& info) const {
    return {record(info), info.free};
  }
};

Status send(ICallEventListener& listener, const Event& event, const Arguments& arguments) {
  const auto call = [&](auto method) {
    return std::visit([&](const auto& payload) { return deliver(listener, method, arguments(payload)); },
                      event.payload);
  };
  switch (event.type) {
#define METHOD(code, name, ...) \
  case EventType::name:         \
    return call(&ICallEventListener::name);
#include <com/qv/CallEventListener.def>
#undef METHOD
  }
  return Status::ok();
}

bool hasRecord(const Event& event) {
  return std::holds_alternative<CallInfo>(event.payload) ||
         std::holds_alternative<AutoRedialInfo>(event.payload) ||
         std::holds_alternative<CompletionInfo>(event.payload);
}

}  // namespace

void EventDispatcher::publish(const Event& event) {
  const Arguments arguments{extraBytes_ && hasRecord(event) ? extraBytes_(event.type) : 0};
  Dispatcher::publish([=](ICallEventListener& listener) { return send(listener, event, arguments); });
}

}  // namespace sim
