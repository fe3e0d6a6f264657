#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vesk::test {

/** Builds the bytes of a parcel by hand, so that tests are independent of the marshalling code. */
class Wire {
 public:
  Wire() = default;
  explicit Wire(std::string bytes) : bytes_(std::move(bytes)) {}

  Wire& i32(int32_t value) { return raw(&value, sizeof(value)); }

  /** A String16: units, a terminating zero, padded. */
  Wire& text(std::u16string_view units) {
    i32(static_cast<int32_t>(units.size()));
    raw(units.data(), units.size() * sizeof(char16_t));
    return zeros(sizeof(char16_t));
  }

  /** A String8: bytes, a terminating zero, padded. */
  Wire& blob(std::string_view bytes) {
    i32(static_cast<int32_t>(bytes.size()));
    raw(bytes.data(), bytes.size());
    return zeros(1);
  }

  /** A CommonParcelable: presence marker and blob. */
  Wire& record(std::string_view bytes) { return i32(1).blob(bytes); }

  Wire& append(const Wire& other) { return raw(other.bytes_.data(), other.bytes_.size()); }

  const std::string& bytes() const { return bytes_; }

 private:
  Wire& raw(const void* data, size_t size) {
    bytes_.append(static_cast<const char*>(data), size);
    return *this;
  }

  Wire& zeros(size_t count) {
    bytes_.append(count, '\0');
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
    return *this;
  }

  std::string bytes_;
};

}  // namespace vesk::test
