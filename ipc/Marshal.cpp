#include "ipc/Marshal.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace com::qv {

namespace {

/** Reads into a temporary: a failed read may modify its output. */
template <class T>
status_t readViaTemporary(const Parcel& parcel, status_t (Parcel::*readInto)(T*) const, T* value) {
  T received;
  const status_t status = (parcel.*readInto)(&received);
  if (status == android::OK) *value = std::move(received);
  return status;
}

}  // namespace

status_t read(const Parcel& parcel, std::vector<int32_t>* value) {
  return readViaTemporary(parcel, &Parcel::readInt32Vector, value);
}

status_t read(const Parcel& parcel, std::vector<android::String16>* value) {
  return readViaTemporary(parcel, &Parcel::readString16Vector, value);
}

status_t read(const Parcel& parcel, CommonParcelable* value) {
  CommonParcelable received;
  const status_t status = parcel.readParcelable(&received);
  if (status == android::OK) *value = std::move(received);
  return status;
}

status_t write(Parcel* parcel, const std::vector<CommonParcelable>& value) {
  if (value.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) return android::BAD_VALUE;
  // Reserves the memory of the whole list at once: its count, each element's marker, length, bytes
  // and zeros. A failure shows in the writes below.
  size_t room = sizeof(int32_t);
  for (const CommonParcelable& element : value) room += 3 * sizeof(int32_t) + element.blob().length();
  static_cast<void>(parcel->setDataCapacity(parcel->dataSize() + room));

  status_t status = parcel->writeInt32(static_cast<int32_t>(value.size()));
  for (auto element = value.begin(); status == android::OK && element != value.end(); ++element) {
    status = write(parcel, *element);
  }
  return status;
}

status_t read(const Parcel& parcel, std::vector<CommonParcelable>* value) {
  // The smallest element. It bounds the reservation, since the count comes from the peer.
  constexpr size_t kMarkerSize = sizeof(int32_t);

  int32_t count = 0;
  if (const status_t status = parcel.readInt32(&count); status != android::OK) return status;
  if (count < 0) return android::UNEXPECTED_NULL;

  std::vector<CommonParcelable> elements;
  elements.reserve(std::min(static_cast<size_t>(count), parcel.dataAvail() / kMarkerSize));
  for (int32_t i = 0; i < count; ++i) {
    const status_t status = parcel.readParcelable(&elements.emplace_back());
    if (status != android::OK) return status;
  }
  *value = std::move(elements);
  return android::OK;
}

}  // namespace com::qv
