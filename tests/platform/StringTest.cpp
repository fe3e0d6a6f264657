#include <gtest/gtest.h>
#include <utils/Errors.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Unicode.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

using android::String16;
using android::String8;

namespace {

// The reference: one character at a time, straight from the definitions.

std::string encodeUtf8(char32_t c) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
  if (c <= 0x7F) return {static_cast<char>(c)};
  if (c <= 0x7FF) return {static_cast<char>(0xC0 | c >> 6), tail(0)};
  if (c <= 0xFFFF) return {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

std::u16string encodeUtf16(char32_t c) {
  if (c <= 0xFFFF) return {static_cast<char16_t>(c)};
  return {static_cast<char16_t>(0xD800 + (c - 0x10000) / 0x400),
          static_cast<char16_t>(0xDC00 + (c - 0x10000) % 0x400)};
}

bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Nothing if the text is malformed. Whether a character has its shortest form is seen by encoding it again.
std::optional<std::u16string> referenceUtf16(const std::string& utf8) {
  std::u16string result;
  for (size_t at = 0; at < utf8.size();) {
    const unsigned lead = static_cast<unsigned char>(utf8[at]);
    const size_t length = lead < 0x80       ? 1
                          : lead >> 5 == 6  ? 2
                          : lead >> 4 == 14 ? 3
                          : lead >> 3 == 30 ? 4
                                            : 0;
    if (length == 0 || utf8.size() - at < length) return std::nullopt;
    char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
    for (size_t i = 1; i < length; ++i) c = c * 64 + (static_cast<unsigned char>(utf8[at + i]) & 0x3F);
    if (isSurrogate(c) || c > 0x10FFFF || encodeUtf8(c) != utf8.substr(at, length)) return std::nullopt;
    result += encodeUtf16(c);
    at += length;
  }
  return result;
}

std::string referenceUtf8(const std::u16string& utf16) {
  std::string result;
  for (size_t at = 0; at < utf16.size(); ++at) {
    char32_t c = utf16[at];
    if (isSurrogate(c)) {
      const char32_t next = at + 1 < utf16.size() ? utf16[at + 1] : u'\0';
      const bool pair = c < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF;
      c = pair ? 0x10000 + (c - 0xD800) * 0x400 + (next - 0xDC00) : 0xFFFD;
      if (pair) ++at;
    }
    result += encodeUtf8(c);
  }
  return result;
}

const uint8_t* bytesOf(const std::string& text) { return reinterpret_cast<const uint8_t*>(text.data()); }

// Converts into a buffer of exactly the right size with marks on both sides. Behind the text stands what
// would go on with a character that it cuts off.
void expectUtf16(const std::string& utf8) {
  const std::optional<std::u16string> expected = referenceUtf16(utf8);
  const std::string longer = utf8 + "\x80\x80\x80";
  const ssize_t length = utf8_to_utf16_length(bytesOf(longer), utf8.size());
  if (!expected) {
    ASSERT_EQ(length, -1) << testing::PrintToString(utf8);
    return;
  }
  ASSERT_EQ(length, static_cast<ssize_t>(expected->size())) << testing::PrintToString(utf8);
  constexpr char16_t kMark = 0xABCD;
  std::u16string buffer(expected->size() + 3, kMark);
  const char16_t* const end =
      utf8_to_utf16(bytesOf(longer), utf8.size(), buffer.data() + 1, expected->size() + 1);
  ASSERT_EQ(end, buffer.data() + 1 + expected->size());
  ASSERT_EQ(buffer, kMark + *expected + u'\0' + kMark) << testing::PrintToString(utf8);
}

void expectUtf8(const std::u16string& utf16) {
  const std::string expected = referenceUtf8(utf16);
  const std::u16string longer = utf16 + char16_t{0xDC00};
  ASSERT_EQ(utf16_to_utf8_length(longer.data(), utf16.size()), static_cast<ssize_t>(expected.size()));
  constexpr char kMark = '#';
  std::string buffer(expected.size() + 3, kMark);
  utf16_to_utf8(longer.data(), utf16.size(), buffer.data() + 1, expected.size() + 1);
  ASSERT_EQ(buffer, kMark + expected + '\0' + kMark);
}

TEST(Unicode, EveryCodePointBothWays) {
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (isSurrogate(c)) continue;
    const std::string utf8 = encodeUtf8(c);
    const std::u16string utf16 = encodeUtf16(c);
    SCOPED_TRACE(static_cast<uint32_t>(c));
    char16_t units[3];
    char bytes[5];
    ASSERT_EQ(utf8_to_utf16_length(bytesOf(utf8), utf8.size()), static_cast<ssize_t>(utf16.size()));
    const size_t made = static_cast<size_t>(utf8_to_utf16(bytesOf(utf8), utf8.size(), units, 3) - units);
    ASSERT_EQ(std::u16string_view(units, made), utf16);
    ASSERT_EQ(utf16_to_utf8_length(utf16.data(), utf16.size()), static_cast<ssize_t>(utf8.size()));
    utf16_to_utf8(utf16.data(), utf16.size(), bytes, sizeof(bytes));
    ASSERT_EQ(std::string_view(bytes, utf8.size()), utf8);
  }
}

// Every string of up to three of these bytes, and of four that begin like a character of four: each byte lies
// at an edge of what may stand somewhere.
TEST(Unicode, Utf8AtEveryEdge) {
  constexpr auto kEdges = std::to_array<unsigned char>({0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0,
                                                        0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF,
                                                        0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF7, 0xF8, 0xFF});
  std::vector<std::string> shorter = {""};
  for (size_t length = 1; length <= 4; ++length) {
    std::vector<std::string> grown;
    for (const std::string& prefix : shorter) {
      if (length == 4 && static_cast<unsigned char>(prefix[0]) < 0xF0) continue;
      for (const unsigned char byte : kEdges) {
        grown.push_back(prefix + static_cast<char>(byte));
        ASSERT_NO_FATAL_FAILURE(expectUtf16(grown.back()));
      }
    }
    shorter = std::move(grown);
  }
}

TEST(Unicode, Utf16AtEveryEdge) {
  const std::u16string edges = {0,      0x7F,   0x80,   0x7FF,  0x800,  0xD7FF, 0xD800,
                                0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFD, 0xFFFF};
  for (const char16_t a : edges) {
    for (const char16_t b : edges) {
      for (const char16_t c : edges) {
        for (size_t length = 0; length <= 3; ++length) {
          ASSERT_NO_FATAL_FAILURE(expectUtf8(std::u16string({a, b, c}, 0, length)));
        }
      }
    }
  }
}

// Mostly ASCII, of all lengths and alignments, so that the runs that are copied several bytes at a time begin
// and end everywhere; some with one byte or unit broken.
TEST(Unicode, LongMixedTexts) {
  std::mt19937 random(1);
  const auto below = [&](size_t limit) { return random() % limit; };
  for (int round = 0; round < 20000; ++round) {
    std::string utf8;
    for (size_t characters = below(40); characters > 0; --characters) {
      utf8 += encodeUtf8(below(8) != 0 ? static_cast<char32_t>(below(0x80))
                                       : static_cast<char32_t>(below(0xD800)));
      if (below(16) == 0) utf8 += encodeUtf8(static_cast<char32_t>(0x10000 + below(0x100000)));
    }
    std::u16string utf16 = *referenceUtf16(utf8);
    ASSERT_NO_FATAL_FAILURE(expectUtf16(utf8));
    ASSERT_NO_FATAL_FAILURE(expectUtf8(utf16));
    if (utf8.empty()) continue;
    utf8[below(utf8.size())] = static_cast<char>(below(0x100));
    utf16[below(utf16.size())] = static_cast<char16_t>(0xD800 + below(0x800));
    ASSERT_NO_FATAL_FAILURE(expectUtf16(utf8));
    ASSERT_NO_FATAL_FAILURE(expectUtf8(utf16));
  }
}

TEST(Unicode, WhatDoesNotFitIsLeftOutByWholeCharacters) {
  const std::u16string utf16 = u"aé€😀b";
  const std::string utf8 = "aé€😀b";
  const std::vector<std::string> cutUtf8 = {"",    "",    "a",   "a",   "aé",   "aé", "aé",
                                            "aé€", "aé€", "aé€", "aé€", "aé€😀", utf8};
  for (size_t room = 1; room < cutUtf8.size(); ++room) {
    std::string buffer(room + 1, '#');
    utf16_to_utf8(utf16.data(), utf16.size(), buffer.data(), room);
    EXPECT_STREQ(buffer.c_str(), cutUtf8[room].c_str()) << room;
    EXPECT_EQ(buffer[room], '#');
  }
  const std::vector<std::u16string> cutUtf16 = {u"", u"", u"a", u"aé", u"aé€", u"aé€", u"aé€😀", utf16};
  for (size_t room = 1; room < cutUtf16.size(); ++room) {
    std::u16string buffer(room + 1, u'#');
    utf8_to_utf16(bytesOf(utf8), utf8.size(), buffer.data(), room);
    EXPECT_EQ(buffer.substr(0, buffer.find(u'\0')), cutUtf16[room]) << room;
    EXPECT_EQ(buffer[room], u'#');
  }
}

TEST(String8, HoldsZeroBytes) {
  const String8 record("a\0b\0", 4);
  EXPECT_EQ(record.length(), 4u);
  EXPECT_EQ(memcmp(record.c_str(), "a\0b\0", 5), 0);
  EXPECT_NE(record, String8("a\0c\0", 4));
  EXPECT_NE(record, "a");
  EXPECT_LT(String8("a\0b", 3), record);
}

TEST(String8, CopiesShareTheirBytesUntilOneChanges) {
  const struct {
    const char* expected;
    void (*change)(String8*);
  } rows[] = {
      {"ab", [](String8* s) { *s = *&*s; }},
      {"ab", [](String8* s) { s->setTo(*s); }},
      {"b", [](String8* s) { s->setTo(s->c_str() + 1); }},
      {"abab", [](String8* s) { s->append(*s); }},
      {"abb", [](String8* s) { *s += s->c_str() + 1; }},
      {"ab", [](String8* s) { *s += String8(); }},
      {"abab1", [](String8* s) { s->appendFormat("%s%d", s->c_str(), 1); }},
      {"", [](String8* s) { s->clear(); }},
      {"c", [](String8* s) { *s = String8("c"); }},
      {"ab", [](String8* s) { *s = String8(std::move(*s)); }},
  };
  for (const auto& row : rows) {
    const String8 original("ab");
    String8 copy = original;
    EXPECT_EQ(copy.c_str(), original.c_str());
    row.change(&copy);
    EXPECT_EQ(copy, row.expected);
    EXPECT_EQ(original, "ab");
    String8 alone("ab");
    row.change(&alone);
    EXPECT_EQ(alone, row.expected);
  }
}

TEST(String8, CopiesComeAndGoOnAnyThread) {
  for (int round = 0; round < 200; ++round) {
    std::vector<std::thread> threads;
    {
      const String8 original("ab");
      for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = original]() mutable {
          String8 other = copy;
          copy += "c";
          EXPECT_EQ(other + "c", copy);
        });
      }
    }
    for (std::thread& thread : threads) thread.join();
  }
}

TEST(String8, OrdersByUnsignedBytes) {
  EXPECT_LT(String8("z"), String8("\xC3\xA9"));
  EXPECT_GT(String8("\xC3\xA9").compare(String8("z")), 0);
}

TEST(String8, FormatsTextOfAnyLength) {
  const std::string longText(5000, 'x');
  EXPECT_EQ(String8::format("%d:%s.", 7, longText.c_str()), ("7:" + longText + ".").c_str());
  String8 text("line ");
  EXPECT_EQ(text.appendFormat("%d", 3), android::OK);
  EXPECT_EQ(text + "!", "line 3!");
}

TEST(Strings, NullIsEmptyAndMalformedUtf8Too) {
  const char* const null8 = nullptr;
  const char16_t* const null16 = nullptr;
  EXPECT_TRUE(String8(null8).empty());
  EXPECT_TRUE(String8(null8, 0).empty());
  EXPECT_TRUE(String8(null16).empty());
  EXPECT_TRUE(String16(null8).empty());
  EXPECT_TRUE(String16(null16).empty());
  EXPECT_TRUE(String16("ab\xC3").empty());
  String16 text(u"old");
  EXPECT_EQ(text.setTo(null16), android::OK);
  EXPECT_TRUE(text.empty());
}

TEST(Strings, ConvertIntoOneAnother) {
  const String8 narrow("€ 5\0 and 😀", 16);
  const String16 wide(narrow);
  EXPECT_EQ(wide, String16(u"€ 5\0 and 😀", 12));
  EXPECT_EQ(String8(wide), narrow);
  EXPECT_EQ(String8(u"\xDC00", 1), "\uFFFD");
  EXPECT_TRUE(wide.startsWith(String16("€ ")));
  EXPECT_FALSE(wide.startsWith(String16("€5")));
  EXPECT_LT(String16("a"), String16(u"a\0", 2));
}

template <typename String>
void expectAssigned(const String& first, const String& second, const String& both) {
  String text(both);
  EXPECT_EQ(text.setTo(first), android::OK);
  EXPECT_EQ(text.append(second), android::OK);
  EXPECT_EQ(text, both);
  EXPECT_EQ(text.append(nullptr, 3), android::OK);
  EXPECT_EQ(text, both);
  // No machine has so much.
  const size_t tooLong = PTRDIFF_MAX;
  EXPECT_EQ(text.setTo(first.c_str(), tooLong), android::NO_MEMORY);
  EXPECT_EQ(text.append(first.c_str(), tooLong), android::NO_MEMORY);
  EXPECT_EQ(text, both);
}

TEST(Strings, TakeWhatIsAssignedOrStayAsTheyAre) {
  expectAssigned<String8>(String8("ab"), String8("c"), String8("abc"));
  expectAssigned<String16>(String16(u"ab"), String16(u"c"), String16(u"abc"));
}

TEST(Errors, HaveTheirPlatformValuesAndNames) {
  const std::pair<android::status_t, const char*> kRows[] = {
      {0, "OK"},
      {INT32_MIN, "UNKNOWN_ERROR"},
      {INT32_MIN + 1, "BAD_TYPE"},
      {INT32_MIN + 2, "FAILED_TRANSACTION"},
      {INT32_MIN + 7, "FDS_NOT_ALLOWED"},
      {INT32_MIN + 8, "UNEXPECTED_NULL"},
      {-1, "PERMISSION_DENIED"},
      {-2, "NAME_NOT_FOUND"},
      {-11, "WOULD_BLOCK"},
      {-12, "NO_MEMORY"},
      {-17, "ALREADY_EXISTS"},
      {-19, "NO_INIT"},
      {-22, "BAD_VALUE"},
      {-32, "DEAD_OBJECT"},
      {-38, "INVALID_OPERATION"},
      {-61, "NOT_ENOUGH_DATA"},
      {-74, "UNKNOWN_TRANSACTION"},
      {-75, "BAD_INDEX"},
      {-110, "TIMED_OUT"},
      {-5, "Input/output error (-5)"},
      {12345, "Unknown status 12345"},
      {INT32_MIN + 3, "Unknown status -2147483645"},
  };
  for (const auto& [status, name] : kRows) EXPECT_EQ(android::statusToString(status), name);
}

}  // namespace
