#include "ipc/Marshal.h"

namespace com::qv {

status_t write(Parcel* parcel, const std::vector<CommonParcelable>& value) {
  if (value.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) return android::BAD_VALUE;
  status_t status = parcel->writeInt32(static_cast<int32_t>(value.size()));
  for (auto element = value.begin(); status == android::OK && element != value.end(); ++element) {
    status = write(parcel, *element);
  }
  return status;
}

status_t read(const Parcel& parcel, std::vector<CommonParcelable>* value) {
  // A presence marker is the least that an element takes: a count beyond that must not size the vector.
  constexpr size_t kLeastElementSize = sizeof(int32_t);

  int32_t count = 0;
  if (const status_t status = parcel.readInt32(&count); status != android::OK) return status;
  if (count < 0) return android::UNEXPECTED_NULL;
  if (static_cast<size_t>(count) > parcel.dataAvail() / kLeastElementSize) return android::NOT_ENOUGH_DATA;

  value->resize(static_cast<size_t>(count));
  for (CommonParcelable& element : *value) {
    if (const status_t status = read(parcel, &element); status != android::OK) return status;
  }
  return android::OK;
}

}  // namespace com::qv
