// Conversions between UTF-8 and UTF-16, and a comparison of UTF-16.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

extern "C" {

// Compares by UTF-16 unit: below 0, 0 or above 0.
int strzcmp16(const char16_t* a, size_t aLength, const char16_t* b, size_t bLength);

// The number of UTF-16 units of the UTF-8 text, or -1 if the text is malformed: a truncated
// character, a stray continuation byte, an overlong form, a surrogate, or a value above U+10FFFF.
ssize_t utf8_to_utf16_length(const uint8_t* src, size_t srcLength);

// Converts well-formed UTF-8 (see utf8_to_utf16_length) and ends it with a zero unit. `dst` holds
// dstLength units, including the zero; characters that do not fit are omitted. Returns the address
// of the zero.
char16_t* utf8_to_utf16(const uint8_t* src, size_t srcLength, char16_t* dst, size_t dstLength);
// The same without the zero unit. Returns the address after the last unit.
char16_t* utf8_to_utf16_no_null_terminator(const uint8_t* src, size_t srcLength, char16_t* dst,
                                           size_t dstLength);

// The number of UTF-8 bytes of the UTF-16 text, without a zero. An unpaired surrogate counts as
// U+FFFD. -1 if the number does not fit in ssize_t.
ssize_t utf16_to_utf8_length(const char16_t* src, size_t srcLength);

// Converts UTF-16 and ends it with a zero byte. `dst` holds dstLength bytes, including the zero;
// characters that do not fit are omitted. An unpaired surrogate becomes U+FFFD.
void utf16_to_utf8(const char16_t* src, size_t srcLength, char* dst, size_t dstLength);

}  // extern "C"
