#pragma once

#include <string.h>

#include <algorithm>
#include <bit>
#include <exception>
#include <limits>

#include <binder/Parcel.h>

/* Shared by the sources of Parcel. */
namespace android {

namespace parcel {

static_assert(std::endian::native == std::endian::little, "the wire is little-endian");

// Positions and offsets fit in an int32 and can be added without overflow.
constexpr size_t kMaxSize = std::numeric_limits<int32_t>::max();

// Contents beyond the inline buffer are mostly lists, which keep growing.
constexpr size_t kFirstHeapCapacity = 4096;

// For lengths up to kMaxSize.
constexpr size_t padded(size_t length) { return (length + 3) & ~size_t{3}; }

template <typename T>
T load(const void* from) {
  T value;
  memcpy(&value, from, sizeof(value));
  return value;
}

template <typename T>
uint8_t* store(uint8_t* to, const T& value) {
  memcpy(to, &value, sizeof(value));
  return to + sizeof(value);
}

// memcpy that accepts null pointers for a length of 0.
inline void copyBytes(void* to, const void* from, size_t length) {
  if (length > 0) memcpy(to, from, length);
}

template <typename T>
T readOr(const Parcel& parcel, status_t (Parcel::*read)(T*) const, T value = T()) {
  (parcel.*read)(&value);
  return value;
}

// Runs a read of several steps and goes back to where it began if one fails.
template <typename Steps>
status_t readWhole(const Parcel& parcel, Steps steps) {
  const size_t start = parcel.dataPosition();
  const status_t status = steps();
  if (status != OK) parcel.setDataPosition(start);
  return status;
}

// Runs a write of several steps and reverts it if one fails.
template <typename Steps>
status_t writeWhole(Parcel* parcel, Steps steps) {
  const size_t start = parcel->dataPosition();
  const size_t size = parcel->dataSize();
  const status_t status = steps();
  if (status != OK) {
    parcel->setDataSize(size);
    parcel->setDataPosition(start);
  }
  return status;
}

// Runs steps in which a container of the standard library allocates.
template <typename Steps>
status_t allocating(Steps steps) {
  try {
    steps();
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
}

// The count of a vector whose elements take at least minElementSize bytes each.
inline status_t readCount(const Parcel& parcel, size_t minElementSize, size_t* count) {
  int32_t stated;
  if (const status_t status = parcel.readInt32(&stated); status != OK) return status;
  if (stated < 0) return UNEXPECTED_NULL;
  *count = static_cast<size_t>(stated);
  return *count <= parcel.dataAvail() / minElementSize ? OK : NOT_ENOUGH_DATA;
}

}  // namespace parcel

using namespace parcel;

inline uint8_t* Parcel::claim(size_t len) {
  // Contents that were set as raw bytes may end unaligned.
  const size_t start = padded(position_);
  if (start > kMaxSize || len > kMaxSize - start) return nullptr;
  const size_t end = start + padded(len);
  if (end > capacity_ || (!isInline() && isShared())) [[unlikely]] {
    const size_t more = end > capacity_ ? std::max(kFirstHeapCapacity, std::min(2 * capacity_, kMaxSize)) : 0;
    if (!reserve(std::max(end, more))) return nullptr;
  }
  if (start != size_) clear(start, end);
  // Zeroes the padding, which is in the last word.
  if (len % 4 != 0) store(data_ + end - sizeof(uint32_t), uint32_t{0});
  position_ = end;
  size_ = std::max(size_, end);
  return data_ + start;
}

template <typename T>
inline status_t Parcel::writeValue(T value) {
  uint8_t* const to = claim(sizeof(value));
  if (to == nullptr) return NO_MEMORY;
  store(to, value);
  return OK;
}

template <typename T>
inline status_t Parcel::readValue(T* value) const {
  static_assert(sizeof(T) == padded(sizeof(T)));
  if (sizeof(T) > dataAvail()) return NOT_ENOUGH_DATA;
  *value = load<T>(data_ + position_);
  position_ += sizeof(T);
  return OK;
}

template <typename Unit>
inline status_t Parcel::readTextInplace(const Unit** text, size_t* length) const {
  size_t rest = dataAvail();
  if (rest < sizeof(int32_t)) return NOT_ENOUGH_DATA;
  rest -= sizeof(int32_t);
  const uint8_t* const found = data_ + position_;
  const int32_t stated = load<int32_t>(found);
  if (stated < 0) return UNEXPECTED_NULL;
  const size_t count = static_cast<size_t>(stated);
  if (count > rest / sizeof(Unit)) return NOT_ENOUGH_DATA;
  const size_t size = padded((count + 1) * sizeof(Unit));
  if (size > rest) return NOT_ENOUGH_DATA;
  const void* const there = found + sizeof(int32_t);
  // Only after setDataPosition.
  if (reinterpret_cast<uintptr_t>(there) % alignof(Unit) != 0) return BAD_TYPE;
  const Unit* const units = static_cast<const Unit*>(there);
  if (units[count] != 0) return BAD_TYPE;
  *text = units;
  *length = count;
  position_ += sizeof(int32_t) + size;
  return OK;
}

}  // namespace android
