#include "utils/String16.h"

#include <exception>

#include "utils/String8.h"
#include "utils/Unicode.h"

namespace android {

namespace {

std::u16string toUtf16(std::string_view text) {
  std::u16string utf16;
  const uint8_t* const bytes = reinterpret_cast<const uint8_t*>(text.data());
  const ssize_t length = utf8_to_utf16_length(bytes, text.size());
  if (length <= 0) return utf16;
  utf16.resize(static_cast<size_t>(length));
  utf8_to_utf16_no_null_terminator(bytes, text.size(), utf16.data(), utf16.size());
  return utf16;
}

std::u16string_view orEmpty(const char16_t* text) { return text != nullptr ? text : u""; }

}  // namespace

String16::String16(const char16_t* text) : units_(orEmpty(text)) {}

String16::String16(const char16_t* units, size_t length)
    : units_(units != nullptr ? units : u"", units != nullptr ? length : 0) {}

String16::String16(const String8& text) : units_(toUtf16(text)) {}

String16::String16(const char* text) : units_(toUtf16(text != nullptr ? text : "")) {}

String16::String16(const char* text, size_t length)
    : units_(text != nullptr ? toUtf16({text, length}) : std::u16string()) {}

status_t String16::setTo(const String16& other) { return setTo(other.units_.data(), other.units_.size()); }

status_t String16::setTo(const char16_t* text) {
  const std::u16string_view view = orEmpty(text);
  return setTo(view.data(), view.size());
}

status_t String16::setTo(const char16_t* units, size_t length) {
  try {
    units_.assign(units != nullptr ? units : u"", units != nullptr ? length : 0);
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
}

status_t String16::append(const String16& other) { return append(other.units_.data(), other.units_.size()); }

status_t String16::append(const char16_t* units, size_t length) {
  if (units == nullptr) return OK;
  try {
    units_.append(units, length);
  } catch (const std::exception&) {
    return NO_MEMORY;
  }
  return OK;
}

}  // namespace android
