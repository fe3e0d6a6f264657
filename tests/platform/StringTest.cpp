#include <gtest/gtest.h>
#include <utils/Errors.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <array>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Fuzz.h"

using android::String16;
using android::String8;

namespace {

// Compares the conversions from UTF-8 and UTF-16, also into a buffer of `room` units, with the
// reference converters of the fuzzer.
void convert(size_t room, const std::string& bytes) {
  std::string input(1, static_cast<char>(room));
  input += bytes;
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
}

void convert(size_t room, const std::u16string& units) {
  convert(room, std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)));
}

void append(std::u16string* text, uint32_t character) {
  if (character >= 0x10000) {
    *text += static_cast<char16_t>(0xD800 + (character - 0x10000) / 0x400);
    character = 0xDC00 + character % 0x400;
  }
  *text += static_cast<char16_t>(character);
}

TEST(Unicode, EveryCharacterAndSurrogate) {
  for (uint32_t c = 0; c <= 0x10FFFF;) {
    std::u16string text;
    while (text.size() < 100 && c <= 0x10FFFF) append(&text, c++);
    convert(c, text);
  }
}

// All strings of up to three of these bytes, and all of four bytes that begin with the lead byte of
// a four-byte character. Each byte is the first or last of a range.
TEST(Unicode, BytesAtEveryEdge) {
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
        convert(byte % 8, grown.back());
      }
    }
    shorter = std::move(grown);
  }
}

TEST(Unicode, UnitsAtEveryEdge) {
  const std::u16string edges = {0,      0x7F,   0x80,   0x7FF,  0x800,  0xD7FF, 0xD800,
                                0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFD, 0xFFFF};
  for (const char16_t a : edges) {
    for (const char16_t b : edges) {
      for (const char16_t c : edges) convert(c % 16, std::u16string({a, b, c}));
    }
  }
}

// Mostly ASCII, so that runs of eight bytes, which are copied at once, begin at every offset. One
// unit is replaced.
TEST(Unicode, LongMixedTexts) {
  std::mt19937 random(1);
  const auto below = [&](size_t limit) { return static_cast<uint32_t>(random() % limit); };
  for (int round = 0; round < 10000; ++round) {
    std::u16string text;
    for (size_t characters = 1 + below(40); characters > 0; --characters) {
      append(&text, below(below(8) != 0 ? 0x80 : 0x110000));
    }
    convert(below(256), text);
    text[below(text.size())] = static_cast<char16_t>(0xD800 + below(0x800));
    convert(below(256), text);
  }
}

TEST(String8, ZeroBytesAndOrder) {
  const String8 record("a\0b\0", 4);
  EXPECT_EQ(record.length(), 4u);
  EXPECT_EQ(memcmp(record.c_str(), "a\0b\0", 5), 0);
  EXPECT_NE(record, String8("a\0c\0", 4));
  EXPECT_NE(record, "a");
  EXPECT_LT(String8("a\0b", 3), record);
  EXPECT_LT(String8("z"), String8("\xC3\xA9"));
  EXPECT_GT(String8("\xC3\xA9").compare(String8("z")), 0);
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

TEST(String8, CopiesOnSeveralThreads) {
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

TEST(String8, FormatsTextOfAnyLength) {
  const std::string longText(5000, 'x');
  EXPECT_EQ(String8::format("%d:%s.", 7, longText.c_str()), ("7:" + longText + ".").c_str());
  String8 text("line ");
  EXPECT_EQ(text.appendFormat("%d", 3), android::OK);
  EXPECT_EQ(text.appendFormat("%s", ""), android::OK);
  EXPECT_EQ(text + "!", "line 3!");
}

TEST(Strings, NullAndMalformedUtf8AreEmpty) {
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
  for (const size_t tooLong : {size_t{PTRDIFF_MAX}, SIZE_MAX - both.size() + 1, SIZE_MAX}) {
    EXPECT_EQ(text.setTo(first.c_str(), tooLong), android::NO_MEMORY);
    EXPECT_EQ(text.append(first.c_str(), tooLong), android::NO_MEMORY);
    EXPECT_EQ(text, both);
  }
}

TEST(Strings, AssignAndAppend) {
  expectAssigned<String8>(String8("ab"), String8("c"), String8("abc"));
  expectAssigned<String16>(String16(u"ab"), String16(u"c"), String16(u"abc"));
}

TEST(Errors, Names) {
  const std::pair<android::status_t, const char*> kRows[] = {
      {android::OK, "OK"},
      {android::DEAD_OBJECT, "DEAD_OBJECT"},
      {-5, "Input/output error (-5)"},
      {12345, "Unknown status 12345"},
      {INT32_MIN + 3, "Unknown status -2147483645"},
  };
  for (const auto& [status, name] : kRows) EXPECT_EQ(android::statusToString(status), name);
}

}  // namespace
