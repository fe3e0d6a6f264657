#pragma once

#include <com/qv/ICallEventListener.h>

#include "events/Dispatcher.h"
#include "phone/Event.h"

namespace sim {

/** Sends the phone's events to the listeners. */
class EventDispatcher : public Dispatcher<com::qv::ICallEventListener> {
 public:
  using Dispatcher::Dispatcher;

  /**
   * For each event with a record, `extraBytes` returns the number of bytes to add to the record; it
   * may be negative. To be called before the first event.
   */
  void corrupt(std::function<int32_t(EventType)> extraBytes) { extraBytes_ = std::move(extraBytes); }

  void publish(const Event& event);

 private:
  std::function<int32_t(EventType)> extraBytes_;
};

}  // namespace sim
