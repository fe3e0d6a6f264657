#pragma once

#include <com/qv/detail/Platform.h>

#include <binder/Parcelable.h>
#include <com/qv/Export.h>
#include <utils/String8.h>

namespace com::qv {

/**
 * The bytes of a C record of fixed size, the payload type of all interfaces. The type of the record
 * is not sent: receivers check the length. On the wire it is one String8.
 */
class COM_QV_EXPORT CommonParcelable : public android::Parcelable {
 public:
  /** An empty record. */
  CommonParcelable() = default;
  /** Copies the `size` bytes of a record, zeros included. */
  CommonParcelable(const void* record, size_t size) : blob_(static_cast<const char*>(record), size) {}
  CommonParcelable(const CommonParcelable&) = default;
  CommonParcelable(CommonParcelable&&) = default;
  CommonParcelable& operator=(const CommonParcelable&) = default;
  CommonParcelable& operator=(CommonParcelable&&) = default;
  ~CommonParcelable() override;

  /** Writes the record; returns OK or the error of the parcel. */
  android::status_t writeToParcel(android::Parcel* parcel) const override;
  /** Reads a record of any length; returns OK or the error of the parcel. */
  android::status_t readFromParcel(const android::Parcel* parcel) override;

  /** Returns the bytes of the record. */
  const android::String8& blob() const { return blob_; }

  /**
   * Copies the record to `record` if it has exactly `size` bytes.
   *
   * @return false if it has another size; `record` is then untouched
   */
  bool copyTo(void* record, size_t size) const;

 private:
  android::String8 blob_;
};

}  // namespace com::qv
