#include "config/Encode.h"

#include <cstddef>
#include <cstdint>

namespace sim {

std::string toBase64(std::string_view bytes) {
  static constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const auto byteAt = [&](size_t place) {
      return place < bytes.size() ? uint32_t{static_cast<unsigned char>(bytes[place])} : 0;
    };
    const uint32_t bits = byteAt(i) << 16 | byteAt(i + 1) << 8 | byteAt(i + 2);
    text += kDigits[bits >> 18];
    text += kDigits[bits >> 12 & 63];
    text += i + 1 < bytes.size() ? kDigits[bits >> 6 & 63] : '=';
    text += i + 2 < bytes.size() ? kDigits[bits & 63] : '=';
  }
  return text;
}

std::string percentEncode(std::string_view text) {
  static constexpr std::string_view kUnreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  static constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (kUnreserved.find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      encoded += {'%', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return encoded;
}

}  // namespace sim
