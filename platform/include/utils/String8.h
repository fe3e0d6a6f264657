#pragma once

#include <stdarg.h>
#include <stddef.h>

#include <compare>
#include <string_view>
#include <utility>

#include "utils/Errors.h"

namespace android {

class SharedBytes;
class String16;

// A string of bytes, usually UTF-8, which may be zeros. Comparisons include all bytes. Copies share
// their bytes until one of them changes; different threads may use different copies.
class String8 {
 public:
  String8() = default;
  String8(const String8& other);
  String8(String8&& other) noexcept { swap(other); }
  // A null pointer gives the empty string, here and below.
  explicit String8(const char* text);
  // Exactly `length` bytes, zeros included.
  explicit String8(const char* bytes, size_t length);
  explicit String8(std::string_view bytes) : String8(bytes.data(), bytes.size()) {}
  // UTF-16 is converted to UTF-8; an unpaired surrogate becomes U+FFFD.
  explicit String8(const String16& text);
  explicit String8(const char16_t* text);
  explicit String8(const char16_t* text, size_t length);
  String8& operator=(const String8& other) {
    String8(other).swap(*this);
    return *this;
  }
  String8& operator=(String8&& other) noexcept {
    swap(other);
    return *this;
  }
  ~String8();

  static String8 format(const char* format, ...) __attribute__((format(printf, 1, 2)));
  static String8 formatV(const char* format, va_list args) __attribute__((format(printf, 1, 0)));

  const char* c_str() const { return data_; }
  const char* string() const { return data_; }

  // The number of bytes, without the zero that c_str() ends with.
  size_t size() const { return size_; }
  size_t length() const { return size_; }
  size_t bytes() const { return size_; }
  bool empty() const { return size_ == 0; }
  bool isEmpty() const { return size_ == 0; }

  // OK, or NO_MEMORY with the string unchanged.
  status_t setTo(const String8& other);
  status_t setTo(const char* text);
  status_t setTo(const char* bytes, size_t length);
  status_t append(const String8& other);
  status_t append(const char* text);
  status_t append(const char* bytes, size_t length);
  status_t appendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
  status_t appendFormatV(const char* format, va_list args) __attribute__((format(printf, 2, 0)));

  void clear() { *this = String8(); }

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
  int compare(const String8& other) const { return view().compare(other.view()); }

  friend bool operator==(const String8& a, const String8& b) { return a.view() == b.view(); }
  friend std::strong_ordering operator<=>(const String8& a, const String8& b) {
    return a.view() <=> b.view();
  }
  friend bool operator==(const String8& a, const char* b) { return a.view() == b; }
  friend std::strong_ordering operator<=>(const String8& a, const char* b) { return a.view() <=> b; }

  operator std::string_view() const { return view(); }

 private:
  friend class Parcel;

  // Takes over a reference to the owner. A string that begins within the owner's bytes is a part of
  // a parcel; its copies don't share them, so that they don't keep the parcel's contents alive.
  String8(const char* data, size_t size, SharedBytes* owner) : data_(data), size_(size), owner_(owner) {}
  // A string of that length, whose bytes the caller fills.
  static String8 blank(size_t length, char** bytes);
  static String8 fromUtf16(std::u16string_view text);

  std::string_view view() const { return {data_, size_}; }
  void swap(String8& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(owner_, other.owner_);
  }

  // Zero-terminated; a constant if there is no owner.
  const char* data_ = "";
  size_t size_ = 0;
  SharedBytes* owner_ = nullptr;
};

}  // namespace android
