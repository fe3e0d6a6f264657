#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/Parcel.h>

/* What platforms before 8.0 have under another name, or in another form. */
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

/** Reads a blob. The older form reports no error; the blob is empty then, which no receiver takes for a
 * record. */
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
