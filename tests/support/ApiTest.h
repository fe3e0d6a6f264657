#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Result.h"
#include "ScriptedTest.h"

namespace vesk::test {

/** The out-value of every answer that has one. */
constexpr int kAnswer = 4711;

/** What a C function gives, and from which answer. */
struct Gives {
  bool value = false; /**< the answer holds a value */
  int size = -1;      /**< of the record in the answer; negative without one */
  Result success = std::nullopt;
  Result failed = std::nullopt; /**< by a call that failed or a record of another size */
  Result absent = std::nullopt; /**< without a connection */
  bool logs = false;
};

constexpr Gives kNothing{};
constexpr Gives kValue{.value = true, .success = kAnswer, .failed = -1, .absent = -1};
constexpr Gives record(int size) { return {.size = size, .success = 0, .failed = -1, .absent = -1}; }

/** A C function, called with certain arguments. */
struct ApiRow {
  std::string_view text;
  Result (*call)(void* out);
  uint32_t code;
  Wire arguments;
  Gives gives;

  std::string function() const { return std::string(text.substr(0, text.find('('))); }
};

/** API_ROW(binder_do(1, out), code, arguments, gives): `out` is a buffer with room for every record. */
#define API_ROW(call, code, arguments, gives)                                                                \
  vesk::test::ApiRow {                                                                                       \
#call, [](void* out) { return vesk::test::resultOf([&] { static_cast<void>(out); return call; }); }, code, \
        arguments, gives \
  }

/** `size` bytes, all values among them. */
inline std::string pattern(int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(i * 7);
  return bytes;
}

/** The C functions of one service, which are called row by row. */
class ApiTest : public ScriptedTest {
 protected:
  /** `tag` is the one under which the functions log, if they do. */
  ApiTest(const char* name, const char16_t* descriptor, const char* tag, std::span<const ApiRow> rows)
      : ScriptedTest(name, descriptor), tag_(tag), rows_(rows) {}

  static constexpr size_t kRoom = 4600;
  static inline const std::string kUntouched = std::string(kRoom, '#');

  template <class Connect>
  void connectWith(Connect connect) {
    ScriptedTest::connectWith(connect);
    EXPECT_EQ(log_.take(), connectLine("done. "));
  }

  /** Has another service of the same name die, and tries to connect. */
  template <class Connect>
  void failToConnectWith(Connect connect) {
    ScriptedService(name_).kill();
    setenv("BINDER_LOOKUP_MS", "0", 1);
    EXPECT_FALSE(connect());
    unsetenv("BINDER_LOOKUP_MS");
    EXPECT_EQ(log_.take(), connectLine("failed!!! "));
  }

  /**
   * A connection that is told of no death: it stays when its service dies, and calls on it fail, until
   * another connect succeeds. `fetch` calls a function that takes a record of `size` bytes.
   */
  template <class Connect>
  void expectConnectionOutlivesService(Connect connect, int (*fetch)(void* out), int size) {
    const std::string sent = pattern(size);
    const auto fetches = [&] {
      answer(Wire().record(sent));
      out_ = kUntouched;
      EXPECT_EQ(fetch(out_.data()), 0);
      EXPECT_EQ(out_, sent + kUntouched.substr(sent.size()));
    };
    const auto fails = [&] {
      out_ = kUntouched;
      EXPECT_EQ(fetch(out_.data()), -1);
      EXPECT_EQ(out_, kUntouched);
    };
    connectWith(connect);
    fetches();
    service_->dieOverNextRequest();
    fails();
    service_->kill();
    fails();
    service_.emplace(name_);
    fails();
    EXPECT_EQ(log_.take(), std::vector<LogLine>()) << "nothing of the death";
    ASSERT_TRUE(connect());
    fetches();
  }

  /** What a function has to log, `count` times, if its record has not its size. */
  std::vector<LogLine> sizeErrors(const std::string& function, size_t count = 1) const {
    return std::vector<LogLine>(count, {ANDROID_LOG_ERROR, tag_, function + ": param size error!"});
  }

  void expectNothingWithoutConnection() {
    for (const ApiRow& row : rows_) EXPECT_EQ(row.call(out_.data()), row.gives.absent) << row.text;
    EXPECT_EQ(out_, kUntouched);
    EXPECT_EQ(log_.take(), std::vector<LogLine>());
  }

  /** Every function makes its one call; together they make `codes` different ones. */
  void expectCallsAndAnswers(size_t codes) {
    std::set<uint32_t> seen;
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      const std::string sent = pattern(row.gives.size);
      answer(outValues(row.gives, sent));
      out_ = kUntouched;
      EXPECT_EQ(row.call(out_.data()), row.gives.success);
      EXPECT_EQ(out_, sent + kUntouched.substr(sent.size()));
      expectRequest(row.code, row.arguments);
      seen.insert(row.code);
    }
    EXPECT_EQ(seen.size(), codes);
    EXPECT_EQ(log_.take(), std::vector<LogLine>());
  }

  /** No answer, an exception, half an answer, records one byte off: nothing is taken of any of them. */
  void expectFailures() {
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      size_t failures = 0;
      const auto expectFailure = [&](const char* what) {
        EXPECT_EQ(row.call(out_.data()), row.gives.failed) << what;
        EXPECT_TRUE(service_->take().has_value()) << what;
        ++failures;
      };
      const std::string good = pattern(row.gives.size);
      answerNothing();
      expectFailure("no answer");
      answerException(outValues(row.gives, good));
      expectFailure("exception");
      answer(Wire());
      expectFailure("half an answer");
      if (row.gives.size >= 0) {
        for (const std::string& record : {std::string(), good.substr(1), good + "!"}) {
          answer(outValues(row.gives, record));
          expectFailure("record of another size");
        }
      }
      EXPECT_EQ(log_.take(), sizeErrors(row.function(), row.gives.logs ? failures : 0));
    }
    EXPECT_EQ(out_, kUntouched);
  }

  /** The service dies over a request, which fails like any other; the connection goes with it. */
  void expectDeathEndsCallAndConnection() {
    const auto row = std::ranges::find_if(rows_, [](const ApiRow& each) { return each.gives.size >= 0; });
    service_->dieOverNextRequest();
    EXPECT_EQ(row->call(out_.data()), row->gives.failed) << row->text;
    EXPECT_EQ(die(), std::vector<LogLine>{deathLine()});
    expectNothingWithoutConnection();
  }

  std::string out_ = kUntouched;

 private:
  static Wire outValues(const Gives& gives, const std::string& record) {
    Wire values;
    if (gives.value) values.i32(kAnswer);
    if (gives.size >= 0) values.record(record);
    return values;
  }

  std::vector<LogLine> connectLine(const std::string& outcome) const {
    return {{ANDROID_LOG_INFO, tag_, "Connect " + std::string(name_) + " " + outcome}};
  }

  const char* const tag_;
  const std::span<const ApiRow> rows_;
};

}  // namespace vesk::test
