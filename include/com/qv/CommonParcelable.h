#pragma once

#include <cstddef>

#include <binder/Parcelable.h>
#include <com/qv/Export.h>
#include <utils/String8.h>

namespace com::qv {

/**
 * The one payload type of every interface: a fixed-size C record, carried byte for byte. Receivers know a
 * record by its length. On the wire it is the blob as a String8 and nothing else.
 */
class COM_QV_EXPORT CommonParcelable : public android::Parcelable {
 public:
  CommonParcelable() = default;
  /** Copies `size` bytes, zeros included. */
  CommonParcelable(const void* record, size_t size) : blob_(static_cast<const char*>(record), size) {}
  CommonParcelable(const CommonParcelable&) = default;
  CommonParcelable(CommonParcelable&&) = default;
  CommonParcelable& operator=(const CommonParcelable&) = default;
  CommonParcelable& operator=(CommonParcelable&&) = default;
  ~CommonParcelable() override;

  android::status_t writeToParcel(android::Parcel* parcel) const override;
  android::status_t readFromParcel(const android::Parcel* parcel) override;

  const android::String8& blob() const { return blob_; }

  /** Copies the record to `record` if it is exactly `size` bytes long; otherwise leaves that alone and gives
   * false. */
  bool copyTo(void* record, size_t size) const;

 private:
  android::String8 blob_;
};

}  // namespace com::qv
