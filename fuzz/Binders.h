#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include "Fuzz.h"

namespace vesk::fuzz {

/** Keeps the log from the terminal and looks at every byte of it; has this process meet others in a directory
 * of its own. Once. */
void setUp();

/**
 * Makes `bytes` the contents of a parcel, as they come from another process. Wherever a binder's place is,
 * its reserved bytes choose what stands there: an object that this process has, one of `objects`, a dead one,
 * or nothing.
 */
void fill(android::Parcel* parcel, Bytes bytes, std::span<const android::sp<android::IBinder>> objects = {});

inline Bytes bytesOf(const android::Parcel& parcel) { return {parcel.data(), parcel.dataSize()}; }

}  // namespace vesk::fuzz
