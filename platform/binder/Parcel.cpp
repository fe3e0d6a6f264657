#include <binder/Parcel.h>

#include <string.h>

#include <algorithm>
#include <utility>

#include "../utils/SharedBytes.h"
#include "ParcelAccess.h"
#include "ParcelInline.h"

namespace android {

using transport::FlatBinder;

namespace {

// A string that shares the parcel's contents keeps all of them alive, so neither large contents nor
// short texts are shared. A list of 100 records is below the limit; sharing it saves 100
// allocations.
constexpr size_t kMaxSharedCapacity = 64 * 1024;
constexpr size_t kMinSharedText = 64;

}  // namespace

Parcel::Parcel() : data_(inline_) {}

Parcel::~Parcel() { freeData(); }

void Parcel::setDataPosition(size_t pos) const { position_ = std::min(pos, size_); }

status_t Parcel::setDataSize(size_t size) {
  if (size > size_) {
    if (!reserve(size)) return NO_MEMORY;
    memset(data_ + size_, 0, size - size_);
  } else {
    dropObjects(size, size_);
  }
  size_ = size;
  position_ = std::min(position_, size_);
  return OK;
}

bool Parcel::isShared() const { return !isInline() && !SharedBytes::at(data_)->hasOneReference(); }

bool Parcel::reserve(size_t size) { return (size <= capacity_ && !isShared()) || reallocate(size); }

status_t Parcel::setDataCapacity(size_t size) { return reserve(size) ? OK : NO_MEMORY; }

status_t Parcel::setData(const uint8_t* buffer, size_t len) {
  if (!reserve(len)) return NO_MEMORY;
  objects_.clear();
  copyBytes(data_, buffer, len);
  size_ = len;
  position_ = 0;
  return OK;
}

void Parcel::freeData() {
  objects_.clear();
  releaseData();
  data_ = inline_;
  size_ = 0;
  capacity_ = kInlineCapacity;
  position_ = 0;
}

bool Parcel::reallocate(size_t size) {
  if (size > kMaxSize) return false;
  const size_t capacity = std::max(size, capacity_);
  SharedBytes* larger = nullptr;
  if (allocating([&] { larger = SharedBytes::make(capacity); }) != OK) return false;
  memcpy(larger->bytes(), data_, size_);
  releaseData();
  data_ = larger->bytes();
  capacity_ = capacity;
  return true;
}

void Parcel::releaseData() {
  if (!isInline()) SharedBytes::at(data_)->release();
}

void Parcel::clear(size_t from, size_t to) {
  if (from < size_) {
    dropObjects(from, to);
  } else {
    memset(data_ + size_, 0, from - size_);
  }
}

void Parcel::dropObjects(size_t from, size_t to) {
  std::erase_if(objects_, [&](const Object& object) {
    return object.offset < to && object.offset + sizeof(FlatBinder) > from;
  });
}

status_t Parcel::write(const void* data, size_t len) {
  uint8_t* const to = claim(len);
  if (to == nullptr) return NO_MEMORY;
  copyBytes(to, data, len);
  return OK;
}

status_t Parcel::writeInt32(int32_t val) { return writeValue(val); }
status_t Parcel::writeUint32(uint32_t val) { return writeValue(val); }
status_t Parcel::writeInt64(int64_t val) { return writeValue(val); }
status_t Parcel::writeUint64(uint64_t val) { return writeValue(val); }
status_t Parcel::writeBool(bool val) { return writeValue(int32_t{val}); }

status_t Parcel::writeString8(const String8& str) {
  const size_t length = str.length();
  if (length >= kMaxSize) return BAD_VALUE;
  uint8_t* to = claim(sizeof(int32_t) + length + 1);
  if (to == nullptr) return NO_MEMORY;
  to = store(to, static_cast<int32_t>(length));
  memcpy(to, str.c_str(), length + 1);
  return OK;
}

status_t Parcel::writeInt32Vector(const std::vector<int32_t>& val) {
  if (val.size() > kMaxSize) return BAD_VALUE;
  uint8_t* to = claim(sizeof(int32_t) * (1 + val.size()));
  if (to == nullptr) return NO_MEMORY;
  to = store(to, static_cast<int32_t>(val.size()));
  copyBytes(to, val.data(), sizeof(int32_t) * val.size());
  return OK;
}

status_t Parcel::writeParcelable(const Parcelable& parcelable) {
  return writeWhole(this, [&] {
    const status_t status = writeValue(int32_t{1});
    return status == OK ? parcelable.writeToParcel(this) : status;
  });
}

status_t Parcel::writeStrongBinder(const sp<IBinder>& val) {
  FlatBinder flat;
  flat.present = val != nullptr ? 1 : 0;
  return writeWhole(this, [&] {
    uint8_t* const to = claim(sizeof(flat));
    if (to == nullptr) return status_t{NO_MEMORY};
    store(to, flat);
    if (val == nullptr) return status_t{OK};
    const uint32_t offset = static_cast<uint32_t>(to - data_);
    return allocating([&] {
      const auto next = std::ranges::upper_bound(objects_, offset, {}, &Object::offset);
      objects_.insert(next, Object{offset, val});
    });
  });
}

status_t Parcel::read(void* outData, size_t len) const {
  const void* const from = readInplace(len);
  if (from == nullptr) return NOT_ENOUGH_DATA;
  copyBytes(outData, from, len);
  return OK;
}

const void* Parcel::readInplace(size_t len) const {
  if (len > kMaxSize || padded(len) > dataAvail()) return nullptr;
  return data_ + std::exchange(position_, position_ + padded(len));
}

int32_t Parcel::readInt32() const { return readOr<int32_t>(*this, &Parcel::readInt32); }
status_t Parcel::readInt32(int32_t* pArg) const { return readValue(pArg); }
uint32_t Parcel::readUint32() const { return readOr<uint32_t>(*this, &Parcel::readUint32); }
status_t Parcel::readUint32(uint32_t* pArg) const { return readValue(pArg); }
int64_t Parcel::readInt64() const { return readOr<int64_t>(*this, &Parcel::readInt64); }
status_t Parcel::readInt64(int64_t* pArg) const { return readValue(pArg); }
uint64_t Parcel::readUint64() const { return readOr<uint64_t>(*this, &Parcel::readUint64); }
status_t Parcel::readUint64(uint64_t* pArg) const { return readValue(pArg); }
bool Parcel::readBool() const { return readOr<bool>(*this, &Parcel::readBool); }

status_t Parcel::readBool(bool* pArg) const {
  int32_t value;
  const status_t status = readInt32(&value);
  if (status == OK) *pArg = value != 0;
  return status;
}

String8 Parcel::readString8() const { return readOr<String8>(*this, &Parcel::readString8); }

status_t Parcel::readString8(String8* pArg) const {
  const size_t start = position_;
  // Up to platform 10 an empty String8 is its length alone; later ones add a zero word.
  if (dataAvail() >= sizeof(int32_t) && load<int32_t>(data_ + start) == 0 &&
      (dataAvail() < 2 * sizeof(int32_t) || load<int32_t>(data_ + start + sizeof(int32_t)) != 0)) {
    position_ += sizeof(int32_t);
    pArg->clear();
    return OK;
  }
  const char* text;
  size_t length;
  status_t status = readTextInplace(&text, &length);
  if (status != OK) return status;
  if (!isInline() && length >= kMinSharedText && capacity_ <= kMaxSharedCapacity) {
    SharedBytes* const shared = SharedBytes::at(data_);
    shared->addReference();
    *pArg = String8(text, length, shared);
    return OK;
  }
  status = pArg->setTo(text, length);
  if (status != OK) position_ = start;
  return status;
}

status_t Parcel::readInt32Vector(std::vector<int32_t>* val) const {
  return readWhole(*this, [&] {
    size_t count;
    if (const status_t status = readCount(*this, sizeof(int32_t), &count); status != OK) return status;
    const status_t status = allocating([&] { val->resize(count); });
    return status == OK ? read(val->data(), count * sizeof(int32_t)) : status;
  });
}

status_t Parcel::readParcelable(Parcelable* parcelable) const {
  return readWhole(*this, [&] {
    int32_t marker;
    if (const status_t status = readValue(&marker); status != OK) return status;
    return marker != 0 ? parcelable->readFromParcel(this) : status_t{UNEXPECTED_NULL};
  });
}

sp<IBinder> Parcel::readStrongBinder() const { return readOr<sp<IBinder>>(*this, &Parcel::readStrongBinder); }

status_t Parcel::readStrongBinder(sp<IBinder>* val) const {
  return readWhole(*this, [&] {
    const size_t offset = position_;
    FlatBinder flat;
    if (const status_t status = read(&flat, sizeof(flat)); status != OK) return status;
    if (flat.type != FlatBinder::kType) return status_t{BAD_TYPE};
    const auto object = std::ranges::lower_bound(objects_, offset, {}, &Object::offset);
    const bool listed = object != objects_.end() && object->offset == offset;
    if (listed != (flat.present != 0)) return status_t{BAD_TYPE};
    *val = listed ? object->binder : nullptr;
    return status_t{OK};
  });
}

namespace transport {

uint8_t* ParcelAccess::prepare(Parcel* parcel, size_t size) {
  // Without contents to keep, another buffer needs no copy.
  if (size > parcel->capacity_ || parcel->isShared()) parcel->freeData();
  parcel->objects_.clear();
  parcel->size_ = 0;
  parcel->position_ = 0;
  if (!parcel->reserve(size)) return nullptr;
  parcel->size_ = size;
  return parcel->data_;
}

bool ParcelAccess::hasFlatBinder(const Parcel& parcel, size_t offset) {
  if (offset != padded(offset) || offset > parcel.size_ || parcel.size_ - offset < sizeof(FlatBinder))
    return false;
  const FlatBinder flat = load<FlatBinder>(parcel.data_ + offset);
  return flat.type == FlatBinder::kType && flat.present != 0;
}

}  // namespace transport

}  // namespace android
