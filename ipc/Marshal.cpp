#include "ipc/Marshal.h"

#include <algorithm>
#include <limits>
#include <utility>

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
  // The least that an element takes in a parcel. A count may promise more than there is, and is not to be
  // trusted with memory.
  constexpr size_t kMarkerSize = sizeof(int32_t);

  int32_t count = 0;
  if (const status_t status = parcel.readInt32(&count); status != android::OK) return status;
  if (count < 0) return android::UNEXPECTED_NULL;

  std::vector<CommonParcelable> elements;
  elements.reserve(std::min(static_cast<size_t>(count), parcel.dataAvail() / kMarkerSize));
  for (int32_t i = 0; i < count; ++i) {
    if (const status_t status = read(parcel, &elements.emplace_back()); status != android::OK) return status;
  }
  *value = std::move(elements);
  return android::OK;
}

}  // namespace com::qv
