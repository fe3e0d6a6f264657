#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/Status.h>
#include <vesk/misc.h>

#include "ipc/Synchronized.h"

namespace com::qv {

/** What the application wants to be told of, as of the current connection. */
extern Synchronized<vesk_misc_callbacks>& miscCallbacks;

/** Calls the application's callback; the end of every event. It is not tested for null: the contract is that
 * the application gives a function for every event. */
template <class... Parameters, class... Arguments>
android::binder::Status notify(void (*vesk_misc_callbacks::*callback)(Parameters...),
                               Arguments... arguments) {
  miscCallbacks.get(callback)(arguments...);
  return android::binder::Status::ok();
}

}  // namespace com::qv
