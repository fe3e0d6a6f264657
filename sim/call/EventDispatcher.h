#pragma once

#include <com/qv/ICallEventListener.h>

#include "events/Dispatcher.h"
#include "phone/Event.h"

namespace sim {

/** Hands the phone's events to the listeners. */
class EventDispatcher : public Dispatcher<com::qv::ICallEventListener> {
 public:
  using Dispatcher::Dispatcher;

  void publish(const Event& event);
};

}  // namespace sim
