#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/Parcel.h>

/* Adapts to names and forms of platforms before 8.0. */
namespace com::qv {

/** The text of a String8, zero-terminated. */
template <typename String>
const char* bytesOf(const String& string) {
  if constexpr (requires { string.c_str(); }) {
    return string.c_str();
  } else {
    return string.string();
  }
}

/** Reads a blob. The older form reports no error but returns an empty blob, which no receiver
 * accepts as a record. */
template <typename Parcel, typename String>
android::status_t readBlob(const Parcel& parcel, String* blob) {
  if constexpr (requires { parcel.readString8(blob); }) {
    return parcel.readString8(blob);
  } else {
    *blob = parcel.readString8();
    return android::OK;
  }
}

}  // namespace com::qv
