#pragma once

#include <binder/Binder.h>
#include <binder/Status.h>

#include "Fuzz.h"

namespace vesk::fuzz {

/** One of the interfaces, with whatever it takes to attack both of its ends. */
struct Interface {
  const android::String16& descriptor;
  uint32_t methods;
  /** A stub that looks at every argument it gets, and answers as `answers` says. */
  android::sp<android::BBinder> (*stub)();
  /** Calls the method of that code through a proxy for `remote`. */
  android::binder::Status (*call)(uint32_t code, const android::sp<android::IBinder>& remote,
                                  Input* arguments, const android::sp<android::IBinder>& object);
};

std::span<const Interface> interfaces();

/** What the stubs answer from now on, and how often one of their methods has been called. */
extern Input answers;
extern int calls;

}  // namespace vesk::fuzz
