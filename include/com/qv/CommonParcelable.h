#pragma once

#include <com/qv/detail/Platform.h>

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
  /** A record of no bytes. */
  CommonParcelable() = default;
  /**
   * Copies a record, zeros included.
   *
   * @param record its first byte
   * @param size   how many bytes it has
   */
  CommonParcelable(const void* record, size_t size) : blob_(static_cast<const char*>(record), size) {}
  CommonParcelable(const CommonParcelable&) = default;
  CommonParcelable(CommonParcelable&&) = default;
  CommonParcelable& operator=(const CommonParcelable&) = default;
  CommonParcelable& operator=(CommonParcelable&&) = default;
  ~CommonParcelable() override;

  /**
   * Writes the record, as the interfaces' proxies and stubs do.
   *
   * @param parcel where to
   * @return OK, or why the parcel doesn't take it
   */
  android::status_t writeToParcel(android::Parcel* parcel) const override;
  /**
   * Reads a record of any length.
   *
   * @param parcel where from
   * @return OK; another value if there is no record
   */
  android::status_t readFromParcel(const android::Parcel* parcel) override;

  /** @return the record's bytes */
  const android::String8& blob() const { return blob_; }

  /**
   * Copies the record out if it is of the size that is expected.
   *
   * @param[out] record receives `size` bytes; untouched on failure
   * @param      size   how long the record has to be
   * @return false if it is of another length
   */
  bool copyTo(void* record, size_t size) const;

 private:
  android::String8 blob_;
};

}  // namespace com::qv
