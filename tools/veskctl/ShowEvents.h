#pragma once

#include "Events.h"
#include "Output.h"

namespace veskctl {

/** Blocks SIGINT and SIGTERM, which showEvents() then receives. To be called before any thread is
 * started. */
void blockSignals();

/** Prints the queued events until SIGINT or SIGTERM arrives, or the reader closes the output. */
int showEvents(EventQueue& queue, const Settings& settings);

}  // namespace veskctl
