#pragma once

#include <com/qv/ICallEventListener.h>

#include "events/Dispatcher.h"
#include "phone/Event.h"

namespace sim {

/** Hands the phone's events to the listeners. */
class EventDispatcher : public Dispatcher<com::qv::ICallEventListener> {
 public:
  using Dispatcher::Dispatcher;

  /** `moreBytes` tells, for each event that has a record, how many bytes too long that is to be. Before the
   * first event. */
  void corrupt(std::function<int32_t(EventType)> moreBytes) { moreBytes_ = std::move(moreBytes); }

  void publish(const Event& event);

 private:
  std::function<int32_t(EventType)> moreBytes_;
};

}  // namespace sim
