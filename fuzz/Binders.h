#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include "Fuzz.h"

namespace vesk::fuzz {

/** Replaces the logger by one that only reads its messages, and sets a private BINDER_RUNTIME_DIR.
 * Later calls do nothing. */
void setUp();

/**
 * Fills a parcel with `bytes`, as if received from another process. In each flattened binder the
 * reserved bytes select the object: one of `objects`, another local one, a dead remote one, or
 * none.
 */
void fill(android::Parcel* parcel, Bytes bytes, std::span<const android::sp<android::IBinder>> objects = {});

inline Bytes bytesOf(const android::Parcel& parcel) { return {parcel.data(), parcel.dataSize()}; }

}  // namespace vesk::fuzz
