/* Compares the converters between UTF-8 and UTF-16 with simple reference converters. */
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Unicode.h>

#include <optional>
#include <vector>

#include "Fuzz.h"

namespace {

using vesk::fuzz::Bytes;

constexpr char32_t kReplacement = 0xfffd;

/** Empty if the text is malformed. Decodes each sequence first and then checks its value. */
std::optional<std::u32string> decodeUtf8(Bytes text) {
  std::u32string characters;
  for (size_t i = 0; i < text.size();) {
    size_t more = 0;
    char32_t value = text[i];
    while (more < 7 && (text[i] & (0x80 >> more)) != 0) ++more;
    // At first the number of leading ones: 0 for ASCII, 1 for a continuation byte.
    if (more == 1 || more > 4) return std::nullopt;
    if (more > 0) value = text[i] & ((0x80u >> more) - 1);
    more = more > 0 ? more - 1 : 0;
    for (size_t k = 1; k <= more; ++k) {
      if (i + k >= text.size() || text[i + k] / 64 != 2) return std::nullopt;
      value = value * 64 + text[i + k] % 64;
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (value < kLeast[more] || value > 0x10ffff) return std::nullopt;
    if (value >= 0xd800 && value <= 0xdfff) return std::nullopt;
    characters += value;
    i += more + 1;
  }
  return characters;
}

std::u32string decodeUtf16(std::u16string_view text) {
  std::u32string characters;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool isHigh = text[i] / 0x400 == 0xd800 / 0x400;
    const bool isLow = text[i] / 0x400 == 0xdc00 / 0x400;
    if (isHigh && i + 1 < text.size() && text[i + 1] / 0x400 == 0xdc00 / 0x400) {
      characters += char32_t{0x10000} + (text[i] % 0x400) * 0x400u + text[i + 1] % 0x400;
      ++i;
    } else {
      characters += isHigh || isLow ? kReplacement : char32_t{text[i]};
    }
  }
  return characters;
}

std::u16string utf16Of(char32_t character) {
  if (character < 0x10000) return {static_cast<char16_t>(character)};
  character -= 0x10000;
  return {static_cast<char16_t>(0xd800 + character / 0x400),
          static_cast<char16_t>(0xdc00 + character % 0x400)};
}

std::string utf8Of(char32_t character) {
  if (character < 0x80) return {static_cast<char>(character)};
  std::string reversed;
  char32_t room = 0x40;  // Values below this fit into the remaining bits of the lead byte.
  char32_t mark = 0x80;
  while (character >= room || reversed.empty()) {
    reversed += static_cast<char>(0x80 + character % 64);
    character /= 64;
    room = reversed.size() == 1 ? 0x20 : room / 2;
    mark = mark / 2 + 0x80;
  }
  reversed += static_cast<char>(mark + character);
  return {reversed.rbegin(), reversed.rend()};
}

/** As many whole characters as fit in `room` units. */
template <class String>
String cut(const std::u32string& characters, String (*encode)(char32_t), size_t room) {
  String text;
  for (const char32_t character : characters) {
    const String next = encode(character);
    if (text.size() + next.size() > room) break;
    text += next;
  }
  return text;
}

void fromUtf8(Bytes text, size_t room) {
  const std::optional<std::u32string> characters = decodeUtf8(text);
  const ssize_t length = utf8_to_utf16_length(text.data(), text.size());
  const android::String16 converted(reinterpret_cast<const char*>(text.data()), text.size());
  if (!characters) {
    FUZZ_CHECK(length == -1);
    FUZZ_CHECK(converted.empty());
    return;
  }
  const std::u16string expected = cut(*characters, utf16Of, SIZE_MAX);
  FUZZ_CHECK(length == static_cast<ssize_t>(expected.size()));
  FUZZ_CHECK(std::u16string_view(converted) == expected);
  for (const size_t size : {expected.size() + 1, std::min(room, expected.size())}) {
    std::vector<char16_t> exactly(size + 1, u'?');
    char16_t* const end = utf8_to_utf16(text.data(), text.size(), exactly.data(), size);
    FUZZ_CHECK(exactly[size] == u'?');
    if (size == 0) {
      FUZZ_CHECK(end == exactly.data());
      continue;
    }
    const std::u16string fits = cut(*characters, utf16Of, size - 1);
    FUZZ_CHECK(std::u16string(exactly.data(), end) == fits);
    FUZZ_CHECK(*end == 0);
    std::fill(exactly.begin(), exactly.end(), u'?');
    char16_t* const last = utf8_to_utf16_no_null_terminator(text.data(), text.size(), exactly.data(), size);
    FUZZ_CHECK(std::u16string(exactly.data(), last) == cut(*characters, utf16Of, size));
    FUZZ_CHECK(exactly[size] == u'?');
  }
}

void fromUtf16(Bytes bytes, size_t room) {
  std::u16string text(bytes.size() / 2, u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * 2);
  // Without the terminating zero of a std::u16string.
  const std::vector<char16_t> units(text.begin(), text.end());
  const std::u32string characters = decodeUtf16(text);
  const std::string expected = cut(characters, utf8Of, SIZE_MAX);
  FUZZ_CHECK(utf16_to_utf8_length(units.data(), units.size()) == static_cast<ssize_t>(expected.size()));
  FUZZ_CHECK(std::string_view(android::String8(units.data(), units.size())) == expected);
  for (const size_t size : {expected.size() + 1, std::min(room, expected.size())}) {
    std::vector<char> exactly(size + 1, '?');
    utf16_to_utf8(units.data(), units.size(), exactly.data(), size);
    FUZZ_CHECK(exactly[size] == '?');
    if (size == 0) continue;
    const std::string fits = cut(characters, utf8Of, size - 1);
    FUZZ_CHECK(std::string(exactly.data(), fits.size()) == fits);
    FUZZ_CHECK(exactly[fits.size()] == '\0');
  }
  const Bytes encoded(reinterpret_cast<const uint8_t*>(expected.data()), expected.size());
  FUZZ_CHECK(decodeUtf8(encoded) == characters);
  fromUtf8(encoded, room);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vesk::fuzz::Input input({data, size});
  const size_t room = input.byte();
  const std::vector<uint8_t> text = [&] {
    const Bytes rest = input.rest();
    return std::vector<uint8_t>(rest.begin(), rest.end());
  }();
  fromUtf8(text, room);
  fromUtf16(text, room);
  return 0;
}
