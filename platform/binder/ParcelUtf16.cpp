#include <binder/Parcel.h>

#include <binder/IBinder.h>
#include <utils/Unicode.h>

#include "ParcelInline.h"

/* The UTF-16 texts of a parcel. */
namespace android {

namespace {

// The length and the terminating zero, padded.
constexpr size_t kMinString16Size = 8;

}  // namespace

status_t Parcel::writeInterfaceToken(const String16& interface) { return writeString16(interface); }

bool Parcel::enforceInterface(const String16& interface) const {
  size_t length;
  const char16_t* const token = readString16Inplace(&length);
  return token != nullptr && strzcmp16(token, length, interface.c_str(), interface.size()) == 0;
}

bool Parcel::checkInterface(IBinder* binder) const {
  return enforceInterface(binder->getInterfaceDescriptor());
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

status_t Parcel::writeString16Vector(const std::vector<String16>& val) {
  if (val.size() > kMaxSize) return BAD_VALUE;
  return writeWhole(this, [&] {
    status_t status = writeInt32(static_cast<int32_t>(val.size()));
    for (auto str = val.begin(); status == OK && str != val.end(); ++str) status = writeString16(*str);
    return status;
  });
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

}  // namespace android
