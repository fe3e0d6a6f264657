#include <com/qv/CommonParcelable.h>

#include <cstring>

#include "ipc/PlatformCompat.h"

namespace com::qv {

CommonParcelable::~CommonParcelable() = default;

android::status_t CommonParcelable::writeToParcel(android::Parcel* parcel) const {
  return parcel->writeString8(blob_);
}

android::status_t CommonParcelable::readFromParcel(const android::Parcel* parcel) {
  return readBlob(*parcel, &blob_);
}

bool CommonParcelable::copyTo(void* record, size_t size) const {
  if (blob_.length() != size) return false;
  if (size > 0) std::memcpy(record, bytesOf(blob_), size);
  return true;
}

}  // namespace com::qv
