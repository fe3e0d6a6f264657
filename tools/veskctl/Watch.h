#pragma once

#include <memory>
#include <vector>

#include "Events.h"
#include "Names.h"
#include "Output.h"

namespace veskctl {

/** Has SIGINT and SIGTERM end showEvents() instead of the process. Before any other thread is started. */
void holdSignals();

/**
 * Has the queue told of the listeners' events and of what becomes of their services, from a thread of its own
 * for each service, which connects anew when a service comes back.
 */
void watch(const std::vector<const Interface*>& listeners, const Settings& settings,
           const std::shared_ptr<EventQueue>& queue);

/** Prints what is queued, until a signal comes or nobody reads any more. */
int showEvents(EventQueue& queue, const Settings& settings);

}  // namespace veskctl
