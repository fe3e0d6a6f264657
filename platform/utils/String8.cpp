#include "utils/String8.h"

#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <exception>

#include "SharedBytes.h"
#include "utils/String16.h"
#include "utils/Unicode.h"

namespace android {

namespace {

std::string_view orEmpty(const char* text) { return text != nullptr ? text : ""; }

// Assigns the result of `make`, or leaves the string unchanged.
template <typename Make>
status_t assign(String8* string, Make make) {
  try {
    *string = make();
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
}

}  // namespace

String8::String8(const String8& other) : data_(other.data_), size_(other.size_), owner_(other.owner_) {
  if (owner_ == nullptr) return;
  if (reinterpret_cast<uint8_t*>(const_cast<char*>(data_)) == owner_->bytes()) {
    owner_->addReference();
  } else {
    owner_ = nullptr;
    *this = String8(other.data_, other.size_);
  }
}

String8::~String8() {
  if (owner_ != nullptr) owner_->release();
}

String8::String8(const char* text) : String8(orEmpty(text)) {}

String8::String8(const char* bytes, size_t length) {
  if (bytes == nullptr || length == 0) return;
  char* own;
  *this = blank(length, &own);
  memcpy(own, bytes, length);
}

String8::String8(const String16& text) : String8(fromUtf16(text)) {}

String8::String8(const char16_t* text) : String8(fromUtf16(text != nullptr ? text : u"")) {}

String8::String8(const char16_t* text, size_t length)
    : String8(text != nullptr ? fromUtf16({text, length}) : String8()) {}

String8 String8::blank(size_t length, char** bytes) {
  SharedBytes* const owner = SharedBytes::make(std::min(length, SIZE_MAX - 1) + 1);
  *bytes = reinterpret_cast<char*>(owner->bytes());
  (*bytes)[length] = '\0';
  return String8(*bytes, length, owner);
}

String8 String8::fromUtf16(std::u16string_view text) {
  const ssize_t length = utf16_to_utf8_length(text.data(), text.size());
  if (length <= 0) return String8();
  char* bytes;
  String8 utf8 = blank(static_cast<size_t>(length), &bytes);
  utf16_to_utf8(text.data(), text.size(), bytes, utf8.size() + 1);
  return utf8;
}

String8 String8::format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  String8 result = formatV(format, args);
  va_end(args);
  return result;
}

String8 String8::formatV(const char* format, va_list args) {
  String8 result;
  result.appendFormatV(format, args);
  return result;
}

status_t String8::setTo(const String8& other) {
  return assign(this, [&] { return other; });
}

status_t String8::setTo(const char* text) {
  const std::string_view view = orEmpty(text);
  return setTo(view.data(), view.size());
}

status_t String8::setTo(const char* bytes, size_t length) {
  return assign(this, [&] { return String8(bytes, length); });
}

status_t String8::append(const String8& other) { return append(other.data_, other.size_); }

status_t String8::append(const char* text) {
  const std::string_view view = orEmpty(text);
  return append(view.data(), view.size());
}

status_t String8::append(const char* bytes, size_t length) {
  if (bytes == nullptr || length == 0) return OK;
  if (length > SIZE_MAX - size_) return NO_MEMORY;
  return assign(this, [&] {
    char* both;
    String8 joined = blank(size_ + length, &both);
    memcpy(both, data_, size_);
    memcpy(both + size_, bytes, length);
    return joined;
  });
}

status_t String8::appendFormat(const char* format, ...) {
  va_list args;
  va_start(args, format);
  const status_t result = appendFormatV(format, args);
  va_end(args);
  return result;
}

status_t String8::appendFormatV(const char* format, va_list args) {
  va_list measured;
  va_copy(measured, args);
  const int length = vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length < 0) return BAD_VALUE;
  const size_t added = static_cast<size_t>(length);
  if (added == 0) return OK;
  return assign(this, [&] {
    char* both;
    String8 joined = blank(size_ + added, &both);
    memcpy(both, data_, size_);
    vsnprintf(both + size_, added + 1, format, args);
    return joined;
  });
}

}  // namespace android
