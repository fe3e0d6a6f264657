#pragma once

#include <binder/IBinder.h>

namespace android::host {

/* Functions of the host platform alone, for simulations and tests. The device's platform has none
 * of them. */

/**
 * Makes an object of this process die as if its process had died: the other processes that hold it
 * get a death notification, their calls to it fail with DEAD_OBJECT, and its registered name counts
 * as absent. Calls in progress complete. The object itself stays alive, and is a new object to the
 * others once it is registered or sent again. Does nothing to a proxy.
 *
 * @param object an object of this process; its holders within the process get no notification
 */
void killObject(const sp<IBinder>& object);

}  // namespace android::host
