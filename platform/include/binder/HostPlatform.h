#pragma once

#include <binder/IBinder.h>

namespace android::host {

/*
 * What only the host platform can do; the platform has nothing of the kind. For simulations and tests.
 */

/**
 * Has an object of this process die as if it had been alone in a process of its own: every other process that
 * holds it gets its obituary, their calls to it fail with DEAD_OBJECT, and the name under which it is
 * registered counts as absent. Calls that are under way still run to their end. The object itself lives on,
 * and is a new one to the others when it is registered, or sent, again. Does nothing to a proxy.
 *
 * @param object an object of this process; others in it are not told
 */
void killObject(const sp<IBinder>& object);

}  // namespace android::host
