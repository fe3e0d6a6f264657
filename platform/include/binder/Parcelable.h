#pragma once

#include <utils/Errors.h>

namespace android {

class Parcel;

/** A value with a form of its own in a parcel. */
class Parcelable {
 public:
  virtual ~Parcelable() = default;
  Parcelable() = default;
  Parcelable(const Parcelable&) = default;
  Parcelable& operator=(const Parcelable&) = default;

  virtual status_t writeToParcel(Parcel* parcel) const = 0;
  virtual status_t readFromParcel(const Parcel* parcel) = 0;
};

}  // namespace android
