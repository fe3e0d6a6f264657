#pragma once

#include <stdarg.h>
#include <stddef.h>

#include <compare>
#include <string>
#include <string_view>

#include "utils/Errors.h"

namespace android {

class String16;

// A string of bytes, usually UTF-8. It may hold zero bytes: the length is kept apart, and comparison looks at
// all bytes.
class String8 {
 public:
  String8() = default;
  // A null pointer gives the empty string, here and below.
  explicit String8(const char* text);
  // Exactly `length` bytes, whatever they are.
  explicit String8(const char* bytes, size_t length);
  explicit String8(std::string_view bytes) : bytes_(bytes) {}
  // UTF-16 is converted to UTF-8; a surrogate without its partner becomes U+FFFD.
  explicit String8(const String16& text);
  explicit String8(const char16_t* text);
  explicit String8(const char16_t* text, size_t length);

  static String8 format(const char* format, ...) __attribute__((format(printf, 1, 2)));
  static String8 formatV(const char* format, va_list args) __attribute__((format(printf, 1, 0)));

  const char* c_str() const { return bytes_.c_str(); }
  const char* string() const { return bytes_.c_str(); }

  // The number of bytes, without the zero that c_str() ends with.
  size_t size() const { return bytes_.size(); }
  size_t length() const { return bytes_.size(); }
  size_t bytes() const { return bytes_.size(); }
  bool empty() const { return bytes_.empty(); }
  bool isEmpty() const { return bytes_.empty(); }

  // These return OK, or NO_MEMORY and leave the string as it was.
  status_t setTo(const String8& other);
  status_t setTo(const char* text);
  status_t setTo(const char* bytes, size_t length);
  status_t append(const String8& other);
  status_t append(const char* text);
  status_t append(const char* bytes, size_t length);
  status_t appendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
  status_t appendFormatV(const char* format, va_list args) __attribute__((format(printf, 2, 0)));

  void clear() { bytes_.clear(); }

  String8& operator+=(const String8& other) {
    append(other);
    return *this;
  }
  String8& operator+=(const char* text) {
    append(text);
    return *this;
  }
  friend String8 operator+(String8 a, const String8& b) { return a += b; }
  friend String8 operator+(String8 a, const char* b) { return a += b; }

  // Below 0, 0 or above 0, by unsigned bytes.
  int compare(const String8& other) const { return bytes_.compare(other.bytes_); }

  friend bool operator==(const String8&, const String8&) = default;
  friend std::strong_ordering operator<=>(const String8&, const String8&) = default;
  friend bool operator==(const String8& a, const char* b) { return a.bytes_ == b; }
  friend std::strong_ordering operator<=>(const String8& a, const char* b) { return a.bytes_ <=> b; }

  operator std::string_view() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace android
