#include "utils/String8.h"

#include <stdio.h>
#include <string.h>

#include <exception>

#include "utils/String16.h"
#include "utils/Unicode.h"

namespace android {

namespace {

std::string_view orEmpty(const char* text) { return text != nullptr ? text : ""; }

std::string toUtf8(std::u16string_view text) {
  std::string utf8;
  const ssize_t length = utf16_to_utf8_length(text.data(), text.size());
  if (length <= 0) return utf8;
  utf8.resize(static_cast<size_t>(length));
  // The zero goes where the string keeps its own.
  utf16_to_utf8(text.data(), text.size(), utf8.data(), utf8.size() + 1);
  return utf8;
}

}  // namespace

String8::String8(const char* text) : bytes_(orEmpty(text)) {}

String8::String8(const char* bytes, size_t length)
    : bytes_(bytes != nullptr ? bytes : "", bytes != nullptr ? length : 0) {}

String8::String8(const String16& text) : bytes_(toUtf8(text)) {}

String8::String8(const char16_t* text) : bytes_(toUtf8(text != nullptr ? text : u"")) {}

String8::String8(const char16_t* text, size_t length)
    : bytes_(text != nullptr ? toUtf8({text, length}) : std::string()) {}

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

status_t String8::setTo(const String8& other) { return setTo(other.bytes_.data(), other.bytes_.size()); }

status_t String8::setTo(const char* text) {
  const std::string_view view = orEmpty(text);
  return setTo(view.data(), view.size());
}

status_t String8::setTo(const char* bytes, size_t length) {
  try {
    bytes_.assign(bytes != nullptr ? bytes : "", bytes != nullptr ? length : 0);
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
}

status_t String8::append(const String8& other) { return append(other.bytes_.data(), other.bytes_.size()); }

status_t String8::append(const char* text) {
  const std::string_view view = orEmpty(text);
  return append(view.data(), view.size());
}

status_t String8::append(const char* bytes, size_t length) {
  if (bytes == nullptr) return OK;
  try {
    bytes_.append(bytes, length);
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
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
  const size_t before = bytes_.size();
  try {
    bytes_.resize(before + static_cast<size_t>(length));
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  vsnprintf(bytes_.data() + before, static_cast<size_t>(length) + 1, format, args);
  return OK;
}

}  // namespace android
