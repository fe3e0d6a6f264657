#include "utils/Unicode.h"

#include <string.h>

#include <algorithm>
#include <limits>

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstSupplementary = 0x10000;

bool isHighSurrogate(char32_t c) { return c >= 0xD800 && c < 0xDC00; }
bool isLowSurrogate(char32_t c) { return c >= 0xDC00 && c < 0xE000; }

// The number of ASCII bytes at the beginning, rounded down to a multiple of eight.
size_t asciiRun(const uint8_t* src, size_t length) {
  constexpr uint64_t kHighBits = 0x8080808080808080u;
  size_t run = 0;
  for (uint64_t word; length - run >= sizeof(word); run += sizeof(word)) {
    memcpy(&word, src + run, sizeof(word));
    if ((word & kHighBits) != 0) break;
  }
  return run;
}

// The number of bytes of the well-formed character that starts here, or 0 if it is malformed. The
// range of the second byte excludes overlong forms, surrogates and values above U+10FFFF.
size_t characterLength(const uint8_t* src, size_t available) {
  const uint8_t lead = src[0];
  if (lead < 0x80) return 1;
  const size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length == 0 || length > available) return 0;
  const uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (src[1] < low || src[1] > high) return 0;
  for (size_t i = 2; i < length; ++i) {
    if ((src[i] & 0xC0) != 0x80) return 0;
  }
  return length;
}

// Decodes one character of well-formed text.
char32_t takeUtf8(const uint8_t*& src) {
  const char32_t lead = *src++;
  if (lead < 0x80) return lead;
  const int more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  char32_t c = lead & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) c = c << 6 | (*src++ & 0x3F);
  return c;
}

char32_t takeUtf16(const char16_t*& src, const char16_t* end) {
  const char32_t unit = *src++;
  if (!isHighSurrogate(unit)) return isLowSurrogate(unit) ? kReplacement : unit;
  if (src == end || !isLowSurrogate(*src)) return kReplacement;
  return kFirstSupplementary + ((unit - 0xD800) << 10) + (char32_t{*src++} - 0xDC00);
}

size_t utf8Length(char32_t c) { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < kFirstSupplementary ? 3 : 4; }

}  // namespace

int strzcmp16(const char16_t* a, size_t aLength, const char16_t* b, size_t bLength) {
  const size_t common = std::min(aLength, bLength);
  for (size_t i = 0; i < common; ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return aLength < bLength ? -1 : aLength > bLength ? 1 : 0;
}

ssize_t utf8_to_utf16_length(const uint8_t* src, size_t srcLength) {
  size_t units = 0;
  for (size_t at = 0; at < srcLength;) {
    const size_t ascii = asciiRun(src + at, srcLength - at);
    at += ascii;
    units += ascii;
    if (at == srcLength) break;
    const size_t length = characterLength(src + at, srcLength - at);
    if (length == 0) return -1;
    at += length;
    units += length == 4 ? 2 : 1;
  }
  return static_cast<ssize_t>(units);
}

char16_t* utf8_to_utf16_no_null_terminator(const uint8_t* src, size_t srcLength, char16_t* dst,
                                           size_t dstLength) {
  const uint8_t* const end = src + srcLength;
  char16_t* const dstEnd = dst + dstLength;
  while (src < end && dst < dstEnd) {
    const size_t room = std::min(static_cast<size_t>(end - src), static_cast<size_t>(dstEnd - dst));
    const size_t ascii = asciiRun(src, room);
    dst = std::copy_n(src, ascii, dst);
    src += ascii;
    if (ascii == room) continue;
    const char32_t c = takeUtf8(src);
    if (c < kFirstSupplementary) {
      *dst++ = static_cast<char16_t>(c);
      continue;
    }
    if (dstEnd - dst < 2) break;
    *dst++ = static_cast<char16_t>(0xD800 + ((c - kFirstSupplementary) >> 10));
    *dst++ = static_cast<char16_t>(0xDC00 + (c & 0x3FF));
  }
  return dst;
}

char16_t* utf8_to_utf16(const uint8_t* src, size_t srcLength, char16_t* dst, size_t dstLength) {
  if (dstLength == 0) return dst;
  char16_t* const end = utf8_to_utf16_no_null_terminator(src, srcLength, dst, dstLength - 1);
  *end = 0;
  return end;
}

ssize_t utf16_to_utf8_length(const char16_t* src, size_t srcLength) {
  // A unit has at most three bytes: a pair has four.
  if (srcLength > static_cast<size_t>(std::numeric_limits<ssize_t>::max()) / 3) return -1;
  size_t bytes = 0;
  for (const char16_t* const end = src + srcLength; src < end;) bytes += utf8Length(takeUtf16(src, end));
  return static_cast<ssize_t>(bytes);
}

void utf16_to_utf8(const char16_t* src, size_t srcLength, char* dst, size_t dstLength) {
  if (dstLength == 0) return;
  char* const dstEnd = dst + dstLength - 1;
  for (const char16_t* const end = src + srcLength; src < end;) {
    const char32_t c = takeUtf16(src, end);
    const size_t length = utf8Length(c);
    if (length > static_cast<size_t>(dstEnd - dst)) break;
    if (length == 1) {
      *dst++ = static_cast<char>(c);
      continue;
    }
    // The lead byte begins with as many ones as the character has bytes.
    const unsigned lead = 0xF00u >> length;
    for (size_t left = length; left-- > 0;) {
      const char32_t bits = c >> (6 * left);
      *dst++ = static_cast<char>(left == length - 1 ? (lead & 0xFF) | bits : 0x80 | (bits & 0x3F));
    }
  }
  *dst = '\0';
}
