#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/Status.h>
#include <vesk/misc.h>

#include "ipc/Synchronized.h"

namespace com::qv {

/* Used until the first connection is complete, since the service may raise an event before. */
inline constexpr vesk_misc_notice_callback kIgnore = [] {};
inline constexpr vesk_misc_callbacks kNoCallbacks{
    kIgnore, kIgnore, [](const char*) {}, kIgnore, kIgnore, kIgnore, kIgnore,
    {},      kIgnore, [](int) {},         kIgnore};

/** The callbacks of the current connection. */
inline constinit Synchronized<vesk_misc_callbacks> miscCallbacks{kNoCallbacks};

/** Calls the application's callback. There is no test for null: the application has to give a
 * function for each event. */
template <class... Parameters, class... Arguments>
android::binder::Status notify(void (*vesk_misc_callbacks::*callback)(Parameters...),
                               Arguments... arguments) {
  miscCallbacks.get(callback)(arguments...);
  return android::binder::Status::ok();
}

}  // namespace com::qv
