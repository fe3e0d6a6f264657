#pragma once

#include <stddef.h>

#include <compare>
#include <string>
#include <string_view>

#include "utils/Errors.h"

namespace android {

class String8;

// A string of UTF-16 units, which may be zeros and unpaired surrogates. Comparisons include all
// units.
class String16 {
 public:
  String16() = default;
  // A null pointer gives the empty string, here and below.
  explicit String16(const char16_t* text);
  explicit String16(const char16_t* units, size_t length);
  explicit String16(std::u16string_view units) : units_(units) {}
  // UTF-8 is converted to UTF-16; malformed UTF-8 gives the empty string.
  explicit String16(const String8& text);
  explicit String16(const char* text);
  explicit String16(const char* text, size_t length);

  const char16_t* c_str() const { return units_.c_str(); }
  const char16_t* string() const { return units_.c_str(); }

  // The number of units, without the zero that c_str() ends with.
  size_t size() const { return units_.size(); }
  bool empty() const { return units_.empty(); }

  // OK, or NO_MEMORY with the string unchanged.
  status_t setTo(const String16& other);
  status_t setTo(const char16_t* text);
  status_t setTo(const char16_t* units, size_t length);
  status_t append(const String16& other);
  status_t append(const char16_t* units, size_t length);

  String16& operator+=(const String16& other) {
    append(other);
    return *this;
  }
  friend String16 operator+(String16 a, const String16& b) { return a += b; }

  bool startsWith(const String16& prefix) const { return units_.starts_with(prefix.units_); }

  // Below 0, 0 or above 0, by unit.
  int compare(const String16& other) const { return units_.compare(other.units_); }

  friend bool operator==(const String16&, const String16&) = default;
  friend std::strong_ordering operator<=>(const String16&, const String16&) = default;
  friend bool operator==(const String16& a, const char16_t* b) { return a.units_ == b; }
  friend std::strong_ordering operator<=>(const String16& a, const char16_t* b) { return a.units_ <=> b; }

  operator std::u16string_view() const { return units_; }

 private:
  std::u16string units_;
};

}  // namespace android
