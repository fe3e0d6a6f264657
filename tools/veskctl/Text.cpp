#include "Text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace veskctl {

namespace {

/** The length of the printable UTF-8 character that the text begins with; 0 if there is none. */
size_t characterLength(std::string_view text) {
  const auto at = [text](size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
  const unsigned first = at(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7f ? 1 : 0;
  const size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return 0;
  unsigned code = first & (0xffu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xc0u) != 0x80) return 0;
    code = code << 6 | (at(i) & 0x3fu);
  }
  constexpr unsigned kLeast[] = {0, 0, 0xa0, 0x800, 0x10000};  // below 0xa0 are further control characters
  const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
  return code >= kLeast[length] && code <= 0x10ffff && !isSurrogate ? length : 0;
}

}  // namespace

std::string format(const char* pattern, ...) {
  va_list args;
  va_list again;
  va_start(args, pattern);
  va_copy(again, args);
  std::string text(static_cast<size_t>(std::max(std::vsnprintf(nullptr, 0, pattern, args), 0)), '\0');
  std::vsnprintf(text.data(), text.size() + 1, pattern, again);
  va_end(again);
  va_end(args);
  return text;
}

std::string quote(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const size_t length = characterLength(text);
    if (text[0] == '"' || text[0] == '\\') quoted += '\\';
    if (length > 0) {
      quoted += text.substr(0, length);
    } else if (text[0] == '\n') {
      quoted += "\\n";
    } else if (text[0] == '\t') {
      quoted += "\\t";
    } else {
      quoted += format("\\x%02x", static_cast<unsigned char>(text[0]));
    }
    text.remove_prefix(std::max<size_t>(length, 1));
  }
  return quoted + "\"";
}

std::string hex(std::string_view bytes, const char* separator) {
  std::string text;
  for (const char c : bytes) {
    if (!text.empty()) text += separator;
    text += format("%02x", static_cast<unsigned char>(c));
  }
  return text;
}

std::string hexDump(std::string_view bytes, std::string_view indent) {
  constexpr size_t kRow = 16;
  std::string text;
  std::string_view previous;
  bool repeats = false;
  for (size_t offset = 0; offset < bytes.size(); offset += kRow) {
    const std::string_view row = bytes.substr(offset, kRow);
    const bool isLast = offset + kRow >= bytes.size();
    if (row == previous && !isLast) {
      if (!std::exchange(repeats, true)) text += std::string(indent) + "*\n";
      continue;
    }
    repeats = false;
    previous = row;
    const std::string left = hex(row.substr(0, kRow / 2), " ");
    const std::string right = row.size() > kRow / 2 ? hex(row.substr(kRow / 2), " ") : "";
    std::string characters(row);
    std::ranges::replace_if(
        characters, [](char c) { return c < ' ' || c > '~'; }, '.');
    text += std::string(indent) + format("%04zx  %-23s  %-23s  |", offset, left.c_str(), right.c_str());
    text += characters + "|\n";
  }
  return text;
}

}  // namespace veskctl
