#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <binder/Parcelable.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>
#include <utils/String8.h>

namespace android {

class IBinder;
class SharedBytes;

namespace transport {
class ParcelAccess;
}

/**
 * The contents of one transaction. Everything is little-endian and padded to four bytes.
 *
 * A failed read changes neither its target nor the position. Its status is NOT_ENOUGH_DATA if the
 * contents end too soon, UNEXPECTED_NULL for a null string, vector or parcelable, BAD_TYPE for a
 * value of another type. A failed write changes nothing; its status is NO_MEMORY if no other is
 * given. The first kInlineCapacity bytes need no allocation. A String8 that is read may share the
 * contents of a parcel of up to 64 KiB, which it keeps alive; its copies don't. Not for use by
 * several threads at once.
 */
class Parcel {
 public:
  static constexpr size_t kInlineCapacity = 512;

  Parcel();
  ~Parcel();
  Parcel(const Parcel&) = delete;
  Parcel& operator=(const Parcel&) = delete;

  const uint8_t* data() const { return data_; }
  size_t dataSize() const { return size_; }
  size_t dataCapacity() const { return capacity_; }
  size_t dataAvail() const { return size_ - position_; }
  size_t dataPosition() const { return position_; }
  /** Moves to `pos`, at most to the end. */
  void setDataPosition(size_t pos) const;
  status_t setDataSize(size_t size);
  status_t setDataCapacity(size_t size);
  /** Replaces the contents with raw bytes, without objects, and moves to the start. */
  status_t setData(const uint8_t* buffer, size_t len);
  void freeData();

  /** The token that opens a request: the descriptor as a String16. */
  status_t writeInterfaceToken(const String16& interface);
  /** Reads a token and compares it. The position is after the token then, even if it differs;
   * unchanged if there is none. */
  bool enforceInterface(const String16& interface) const;
  /** As enforceInterface, with the descriptor of `binder`. */
  bool checkInterface(IBinder* binder) const;

  /** Raw bytes, padded. */
  status_t write(const void* data, size_t len);
  status_t writeInt32(int32_t val);
  status_t writeUint32(uint32_t val);
  status_t writeInt64(int64_t val);
  status_t writeUint64(uint64_t val);
  /** int32 0 or 1. */
  status_t writeBool(bool val);
  /** int32 length in bytes, the bytes, a terminating zero, padded. */
  status_t writeString8(const String8& str);
  /** int32 length in units, the units, a terminating zero unit, padded. */
  status_t writeString16(const String16& str);
  status_t writeString16(const char16_t* str, size_t len);
  /** UTF-8 text as a String16. BAD_VALUE if it is malformed. */
  status_t writeUtf8AsUtf16(const std::string& str);
  /** int32 count, then the elements. BAD_VALUE if the count exceeds an int32. */
  status_t writeInt32Vector(const std::vector<int32_t>& val);
  status_t writeString16Vector(const std::vector<String16>& val);
  /** int32 1, then the parcelable. */
  status_t writeParcelable(const Parcelable& parcelable);
  /** A flat binder object of 24 bytes; null is allowed. The parcel keeps the object alive. */
  status_t writeStrongBinder(const sp<IBinder>& val);

  status_t read(void* outData, size_t len) const;
  /** The next `len` bytes in place, valid until the parcel changes; null if there are fewer.
   * Padding is skipped. */
  const void* readInplace(size_t len) const;
  int32_t readInt32() const;
  status_t readInt32(int32_t* pArg) const;
  uint32_t readUint32() const;
  status_t readUint32(uint32_t* pArg) const;
  int64_t readInt64() const;
  status_t readInt64(int64_t* pArg) const;
  uint64_t readUint64() const;
  status_t readUint64(uint64_t* pArg) const;
  bool readBool() const;
  /** Any int32 but 0 is true. */
  status_t readBool(bool* pArg) const;
  String8 readString8() const;
  status_t readString8(String8* pArg) const;
  String16 readString16() const;
  status_t readString16(String16* pArg) const;
  /** The next String16 in place, zero-terminated, valid until the parcel changes; null if there is
   * none. */
  const char16_t* readString16Inplace(size_t* outLen) const;
  /** A String16 as UTF-8; an unpaired surrogate becomes U+FFFD. */
  status_t readUtf8FromUtf16(std::string* str) const;
  status_t readInt32Vector(std::vector<int32_t>* val) const;
  status_t readString16Vector(std::vector<String16>* val) const;
  status_t readParcelable(Parcelable* parcelable) const;
  sp<IBinder> readStrongBinder() const;
  /** Null if null was written. BAD_TYPE if no object was written here, even if the bytes look like
   * one. */
  status_t readStrongBinder(sp<IBinder>* val) const;

 private:
  friend class transport::ParcelAccess;

  /** A binder in the contents: the offset of its flat form, and the object. */
  struct Object {
    uint32_t offset;
    sp<IBinder> binder;
  };

  /** Makes capacity for `size` bytes that no string shares; false if there is no memory for
   * them. */
  bool reserve(size_t size);
  bool reallocate(size_t size);
  void releaseData();
  bool isInline() const { return data_ == inline_; }
  /** Whether strings share the contents. */
  bool isShared() const;
  /** The address for the next `len` bytes, with the padding after them zeroed; null if there is no
   * memory for them. */
  uint8_t* claim(size_t len);
  /** Before a write between two offsets: drops the objects there, or zeroes the gap before the
   * first. */
  void clear(size_t from, size_t to);
  /** Removes the objects that lie, even in part, between two offsets. */
  void dropObjects(size_t from, size_t to);
  template <typename T>
  status_t writeValue(T value);
  template <typename T>
  status_t readValue(T* value) const;
  /** A text in place, with its terminating zero. */
  template <typename Unit>
  status_t readTextInplace(const Unit** text, size_t* length) const;

  /** The inline bytes, or those of a SharedBytes. */
  uint8_t* data_;
  size_t size_ = 0;
  size_t capacity_ = kInlineCapacity;
  mutable size_t position_ = 0;
  /** In order of offset. */
  std::vector<Object> objects_;
  alignas(8) uint8_t inline_[kInlineCapacity];
};

}  // namespace android
