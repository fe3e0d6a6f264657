#pragma once

#include <binder/Binder.h>
#include <binder/Status.h>

#include "Fuzz.h"

namespace vesk::fuzz {

/** One of the interfaces, with its stub and its proxy. */
struct Interface {
  const android::String16& descriptor;
  uint32_t methods;
  /** Makes a stub that reads every argument and takes its results from `answers`. */
  android::sp<android::BBinder> (*stub)();
  /** Calls the method of that code through a proxy for `remote`. */
  android::binder::Status (*call)(uint32_t code, const android::sp<android::IBinder>& remote,
                                  Input* arguments, const android::sp<android::IBinder>& object);
};

std::span<const Interface> interfaces();

/** The results of the stubs' methods, and the number of calls to these. */
extern Input answers;
extern int calls;

}  // namespace vesk::fuzz
