#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <com/qv/CommonParcelable.h>
#include <utils/String16.h>

/* The wire form of each argument type: one pair of functions. A failed `read` leaves the value
 * untouched. */
namespace com::qv {

using android::Parcel;
using android::status_t;

inline status_t write(Parcel* parcel, int32_t value) { return parcel->writeInt32(value); }
inline status_t read(const Parcel& parcel, int32_t* value) { return parcel.readInt32(value); }

inline status_t write(Parcel* parcel, bool value) { return parcel->writeBool(value); }
inline status_t read(const Parcel& parcel, bool* value) {
  // Reads into a temporary: a failed read may modify its output.
  bool received = false;
  const status_t status = parcel.readBool(&received);
  if (status == android::OK) *value = received;
  return status;
}

inline status_t write(Parcel* parcel, const std::string& value) { return parcel->writeUtf8AsUtf16(value); }
inline status_t read(const Parcel& parcel, std::string* value) { return parcel.readUtf8FromUtf16(value); }

inline status_t write(Parcel* parcel, const std::vector<int32_t>& value) {
  return parcel->writeInt32Vector(value);
}
status_t read(const Parcel& parcel, std::vector<int32_t>* value);

inline status_t write(Parcel* parcel, const std::vector<android::String16>& value) {
  return parcel->writeString16Vector(value);
}
status_t read(const Parcel& parcel, std::vector<android::String16>* value);

inline status_t write(Parcel* parcel, const CommonParcelable& value) {
  return parcel->writeParcelable(value);
}
status_t read(const Parcel& parcel, CommonParcelable* value);

/* An int32 count, then each element as a CommonParcelable. */
status_t write(Parcel* parcel, const std::vector<CommonParcelable>& value);
status_t read(const Parcel& parcel, std::vector<CommonParcelable>* value);

template <class Interface>
status_t write(Parcel* parcel, const android::sp<Interface>& value) {
  return parcel->writeStrongBinder(android::IInterface::asBinder(value));
}
template <class Interface>
status_t read(const Parcel& parcel, android::sp<Interface>* value) {
  android::sp<android::IBinder> binder;
  if (const status_t status = parcel.readStrongBinder(&binder); status != android::OK) return status;
  android::sp<Interface> received = Interface::asInterface(binder);
  if (binder != nullptr && received == nullptr) return android::UNKNOWN_ERROR;
  *value = std::move(received);
  return android::OK;
}

}  // namespace com::qv
