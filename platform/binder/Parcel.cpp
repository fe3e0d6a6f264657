#include <binder/Parcel.h>

#include <string.h>

#include <algorithm>
#include <bit>
#include <exception>
#include <limits>
#include <utility>

#include <utils/Unicode.h>

#include "../utils/SharedBytes.h"
#include "ParcelAccess.h"

namespace android {

using transport::FlatBinder;

namespace {

static_assert(std::endian::native == std::endian::little, "the wire is little-endian");

// Positions and offsets fit in an int32 and can be added without overflow.
constexpr size_t kMaxSize = std::numeric_limits<int32_t>::max();

// What is too much for the inline buffer is mostly a list, which goes on growing.
constexpr size_t kFirstHeapCapacity = 4096;

// A text that is shorter in relation to its parcel isn't worth keeping that for.
constexpr size_t kMaxCapacityPerByte = 1024;

// So many holds on a parcel's contents are counted at once.
constexpr uint32_t kHolds = 256;

// The least that a String16 takes: its length and the terminating zero, padded.
constexpr size_t kMinString16Size = 8;

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

// memcpy that takes a null pointer for no bytes.
void copyBytes(void* to, const void* from, size_t length) {
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

// Runs a write of several steps and takes back what was added if one fails.
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
status_t readCount(const Parcel& parcel, size_t minElementSize, size_t* count) {
  int32_t stated;
  if (const status_t status = parcel.readInt32(&stated); status != OK) return status;
  if (stated < 0) return UNEXPECTED_NULL;
  *count = static_cast<size_t>(stated);
  return *count <= parcel.dataAvail() / minElementSize ? OK : NOT_ENOUGH_DATA;
}

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
  letGoOfData();
  data_ = inline_;
  size_ = 0;
  capacity_ = kInlineCapacity;
  position_ = 0;
}

bool Parcel::move(size_t size) {
  if (size <= capacity_ && SharedBytes::at(data_)->hasNoneBut(1 + lendable_)) return true;
  if (size > kMaxSize) return false;
  const size_t capacity = std::max(size, capacity_);
  SharedBytes* moved = nullptr;
  if (allocating([&] { moved = SharedBytes::make(capacity); }) != OK) return false;
  memcpy(moved->bytes(), data_, size_);
  letGoOfData();
  data_ = moved->bytes();
  capacity_ = capacity;
  return true;
}

void Parcel::letGoOfData() {
  if (!isInline()) SharedBytes::at(data_)->letGo(1 + lendable_);
  lendable_ = 0;
}

SharedBytes* Parcel::lend() const {
  SharedBytes* const whole = SharedBytes::at(data_);
  if (lendable_ <= 1) {
    whole->hold(kHolds);
    lendable_ += kHolds;
  }
  --lendable_;
  return whole;
}

inline uint8_t* Parcel::claim(size_t len) {
  // Contents that were set as raw bytes may end off the four-byte grid.
  const size_t start = padded(position_);
  if (start > kMaxSize || len > kMaxSize - start) return nullptr;
  const size_t end = start + padded(len);
  if (end > capacity_ || lendable_ != 0) [[unlikely]] {
    const size_t more = end > capacity_ ? std::max(kFirstHeapCapacity, std::min(2 * capacity_, kMaxSize)) : 0;
    if (!reserve(std::max(end, more))) return nullptr;
  }
  if (start != size_) clear(start, end);
  // The padding is in the last word, whatever is written to the rest of it.
  if (len % 4 != 0) store(data_ + end - sizeof(uint32_t), uint32_t{0});
  position_ = end;
  size_ = std::max(size_, end);
  return data_ + start;
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

status_t Parcel::writeInterfaceToken(const String16& interface) { return writeString16(interface); }

bool Parcel::enforceInterface(const String16& interface) const {
  size_t length;
  const char16_t* const token = readString16Inplace(&length);
  return token != nullptr && strzcmp16(token, length, interface.c_str(), interface.size()) == 0;
}

bool Parcel::checkInterface(IBinder* binder) const {
  return enforceInterface(binder->getInterfaceDescriptor());
}

status_t Parcel::write(const void* data, size_t len) {
  uint8_t* const to = claim(len);
  if (to == nullptr) return NO_MEMORY;
  copyBytes(to, data, len);
  return OK;
}

template <typename T>
inline status_t Parcel::writeValue(T value) {
  uint8_t* const to = claim(sizeof(value));
  if (to == nullptr) return NO_MEMORY;
  store(to, value);
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

status_t Parcel::writeString16(const String16& str) { return writeString16(str.c_str(), str.size()); }

status_t Parcel::writeString16(const char16_t* str, size_t len) {
  if (str == nullptr) return writeInt32(-1);
  if (len >= kMaxSize / sizeof(char16_t)) return BAD_VALUE;
  uint8_t* to = claim(sizeof(int32_t) + (len + 1) * sizeof(char16_t));
  if (to == nullptr) return NO_MEMORY;
  to = store(to, static_cast<int32_t>(len));
  copyBytes(to, str, len * sizeof(char16_t));
  store(to + len * sizeof(char16_t), char16_t{0});
  return OK;
}

status_t Parcel::writeUtf8AsUtf16(const std::string& str) {
  const uint8_t* const text = reinterpret_cast<const uint8_t*>(str.data());
  const ssize_t length = utf8_to_utf16_length(text, str.size());
  if (length < 0) return BAD_VALUE;
  const size_t units = static_cast<size_t>(length);
  if (units >= kMaxSize / sizeof(char16_t)) return BAD_VALUE;
  uint8_t* to = claim(sizeof(int32_t) + (units + 1) * sizeof(char16_t));
  if (to == nullptr) return NO_MEMORY;
  to = store(to, static_cast<int32_t>(length));
  utf8_to_utf16(text, str.size(), reinterpret_cast<char16_t*>(to), units + 1);
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

status_t Parcel::writeString16Vector(const std::vector<String16>& val) {
  if (val.size() > kMaxSize) return BAD_VALUE;
  return writeWhole(this, [&] {
    status_t status = writeInt32(static_cast<int32_t>(val.size()));
    for (auto str = val.begin(); status == OK && str != val.end(); ++str) status = writeString16(*str);
    return status;
  });
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

template <typename T>
inline status_t Parcel::readValue(T* value) const {
  static_assert(sizeof(T) == padded(sizeof(T)));
  if (sizeof(T) > dataAvail()) return NOT_ENOUGH_DATA;
  *value = load<T>(data_ + position_);
  position_ += sizeof(T);
  return OK;
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
  // Only a position that was set by hand lies off the grid.
  if (reinterpret_cast<uintptr_t>(there) % alignof(Unit) != 0) return BAD_TYPE;
  const Unit* const units = static_cast<const Unit*>(there);
  if (units[count] != 0) return BAD_TYPE;
  *text = units;
  *length = count;
  position_ += sizeof(int32_t) + size;
  return OK;
}

String8 Parcel::readString8() const { return readOr<String8>(*this, &Parcel::readString8); }

status_t Parcel::readString8(String8* pArg) const {
  const size_t start = position_;
  const char* text;
  size_t length;
  status_t status = readTextInplace(&text, &length);
  if (status != OK) return status;
  if (!isInline() && length > capacity_ / kMaxCapacityPerByte) {
    *pArg = String8(text, length, lend());
    return OK;
  }
  status = pArg->setTo(text, length);
  if (status != OK) position_ = start;
  return status;
}

String16 Parcel::readString16() const { return readOr<String16>(*this, &Parcel::readString16); }

status_t Parcel::readString16(String16* pArg) const {
  return readWhole(*this, [&] {
    const char16_t* text;
    size_t length;
    const status_t status = readTextInplace(&text, &length);
    return status == OK ? pArg->setTo(text, length) : status;
  });
}

const char16_t* Parcel::readString16Inplace(size_t* outLen) const {
  const char16_t* text = nullptr;
  *outLen = 0;
  readTextInplace(&text, outLen);
  return text;
}

status_t Parcel::readUtf8FromUtf16(std::string* str) const {
  return readWhole(*this, [&] {
    const char16_t* text;
    size_t length;
    if (const status_t status = readTextInplace(&text, &length); status != OK) return status;
    const ssize_t bytes = utf16_to_utf8_length(text, length);
    if (bytes < 0) return status_t{NO_MEMORY};
    return allocating([&] {
      str->resize(static_cast<size_t>(bytes));
      utf16_to_utf8(text, length, str->data(), str->size() + 1);
    });
  });
}

status_t Parcel::readInt32Vector(std::vector<int32_t>* val) const {
  return readWhole(*this, [&] {
    size_t count;
    if (const status_t status = readCount(*this, sizeof(int32_t), &count); status != OK) return status;
    const status_t status = allocating([&] { val->resize(count); });
    return status == OK ? read(val->data(), count * sizeof(int32_t)) : status;
  });
}

status_t Parcel::readString16Vector(std::vector<String16>* val) const {
  return readWhole(*this, [&] {
    size_t count;
    if (const status_t status = readCount(*this, kMinString16Size, &count); status != OK) return status;
    std::vector<String16> strings;
    status_t status = allocating([&] { strings.resize(count); });
    for (auto str = strings.begin(); status == OK && str != strings.end(); ++str)
      status = readString16(&*str);
    if (status == OK) val->swap(strings);
    return status;
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
  if (size > parcel->capacity_ || parcel->lendable_ != 0) parcel->freeData();
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
