#include "ipc/Text.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

namespace com::qv {
namespace {

constexpr size_t kBufferSize = 8;
const std::string kUntouched(kBufferSize, '#');

TEST(TextTest, EachRuleKeepsToItsBoundAndGivesItsResult) {
  const auto cut = [](char* buffer, int size) { return Truncate{buffer, size}; };
  const auto whole = [](char* buffer, int size) { return AllOrNothing{buffer, size}; };
  const auto bounded = [](char* buffer, int size) { return TruncateZeroFill{buffer, size, -2}; };
  const auto store = [](auto rule) {
    return [rule](char* buffer, int size, const std::string& text) { return rule(buffer, size).store(text); };
  };
  const struct {
    const char* rule;
    std::function<int(char*, int, const std::string&)> store;
    const char* text;
    int size;
    int result;
    std::string buffer;
  } rows[] = {
      {"cut", store(cut), "abc", INT_MIN, 0, kUntouched},
      {"cut", store(cut), "abc", -1, 0, kUntouched},
      {"cut", store(cut), "abc", 0, 0, kUntouched},
      {"cut", store(cut), "abc", 1, 0, {"\0#######", kBufferSize}},
      {"cut", store(cut), "abc", 3, 0, {"ab\0#####", kBufferSize}},
      {"cut", store(cut), "abc", 4, 0, {"abc\0####", kBufferSize}},
      {"cut", store(cut), "abc", 8, 0, {"abc\0####", kBufferSize}},
      {"cut", store(cut), "", 4, 0, {"\0#######", kBufferSize}},
      {"cut", store(cut), "%s", 8, 0, {"%s\0#####", kBufferSize}},

      {"whole", store(whole), "abc", INT_MIN, -1, kUntouched},
      {"whole", store(whole), "abc", 0, -1, kUntouched},
      {"whole", store(whole), "abc", 1, -1, kUntouched},
      {"whole", store(whole), "abc", 3, -1, kUntouched},
      {"whole", store(whole), "abc", 4, 0, {"abc\0####", kBufferSize}},
      {"whole", store(whole), "", 0, -1, kUntouched},
      {"whole", store(whole), "", 1, 0, {"\0#######", kBufferSize}},

      {"bounded", store(bounded), "abc", INT_MIN, 0, kUntouched},
      {"bounded", store(bounded), "abc", 0, 0, kUntouched},
      {"bounded", store(bounded), "abc", 1, 0, {"\0#######", kBufferSize}},
      {"bounded", store(bounded), "abc", 3, 0, {"ab\0#####", kBufferSize}},
      {"bounded", store(bounded), "abc", 4, 0, {"abc\0####", kBufferSize}},
      {"bounded", store(bounded), "abc", 6, 0, {"abc\0\0\0##", kBufferSize}},
      {"bounded", store(bounded), "", 4, -2, kUntouched},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.rule << " \"" << row.text << "\" in " << row.size);
    std::string buffer = kUntouched;
    EXPECT_EQ(row.store(buffer.data(), row.size, row.text), row.result);
    EXPECT_EQ(buffer, row.buffer);
  }
}

TEST(TextTest, UnboundedTakesWhateverTheTextNeeds) {
  std::string buffer = kUntouched;
  EXPECT_EQ(Unchecked{buffer.data()}.store("1234567"), 0);
  EXPECT_EQ(buffer, std::string("1234567\0", kBufferSize));
}

}  // namespace
}  // namespace com::qv
