#pragma once

#include <binder/Status.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
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

/** The buffer that rows receive into, and how much room they say it has unless the text of a row says
 * otherwise. */
constexpr int kBufferSize = 4600;

/** What a C function gives, and from which answer. */
struct Expected {
  enum Text { kNone, kCut, kWhole };

  bool value = false; /**< the answer holds a value */
  int size = -1;      /**< of the record in the answer; negative without one */
  Result success = std::nullopt;
  Result failed = std::nullopt; /**< by a call that failed or a record of another size */
  Result absent = std::nullopt; /**< without a connection */
  bool logsFailure = false;     /**< of what the record's size is wrong */
  bool logsRecord = false;      /**< what is in it */
  Text text = kNone;            /**< in the answer, and what becomes of it in a buffer that is too small */
};

constexpr Expected kNothing{};
constexpr Expected integer(int absent, int failed) {
  return {.value = true, .success = kAnswer, .failed = failed, .absent = absent};
}
constexpr Expected kValue = integer(-1, -1);
constexpr Expected kZeroUnlessAnswered = integer(0, 0);
constexpr Expected flag(int absent) { return {.value = true, .success = 1, .failed = 0, .absent = absent}; }
constexpr Expected kFlag = flag(0);
constexpr Expected record(int size) { return {.size = size, .success = 0, .failed = -1, .absent = -1}; }
constexpr Expected loggedRecord(int size) {
  return {.size = size, .success = 0, .failed = -1, .absent = -1, .logsRecord = true};
}
/** A call that failed gives an empty text. */
constexpr Expected text(Expected::Text rule, Result result, Result absent) {
  return {.success = result, .failed = result, .absent = absent, .text = rule};
}

/** The buffer of a row, for functions that take it as one type or another. */
struct Out {
  char* bytes;
  template <class T>
  operator T*() const {
    return reinterpret_cast<T*>(bytes);
  }
};

/** A C function, called with certain arguments. */
struct ApiRow {
  std::string_view text;
  Result (*call)(Out out, int room);
  uint32_t code;
  Wire arguments;
  Expected gives;
  /** What the simulated device makes of it. */
  enum Service { kTaken, kRefused } service = kTaken;

  std::string function() const { return std::string(text.substr(0, text.find('('))); }
};

constexpr ApiRow::Service kRefused = ApiRow::kRefused;

/** API_ROW(binder_do(1, out, room), code, arguments, gives[, kRefused]): `out` is a buffer with that much
 * room. */
#define API_ROW(call, code, arguments, ...)                                                               \
  vesk::test::ApiRow {                                                                                    \
#call, []([[maybe_unused]] vesk::test::Out out,                                                       \
              [[maybe_unused]] int room) { return vesk::test::resultOf([&] { return call; }); }, code,    \
                                                                                              arguments,  \
                                                                                              __VA_ARGS__ \
  }

/** `size` bytes, all values among them. */
inline std::string pattern(int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(i * 7);
  return bytes;
}

/** What rows send as a record, cut to its size: numbers that mean something wherever they stand, and short
 * texts. */
inline const std::string kSentBytes = [] {
  std::string bytes;
  for (int i = 0; i < 4544; ++i) bytes += static_cast<char>(i < 32 ? i % 4 == 0 : i % 41 * 6);
  return bytes;
}();
inline const char* const kSent = kSentBytes.data();
inline Wire sent(size_t size) { return Wire().record(kSentBytes.substr(0, size)); }

/** Passes calls on to a service of this process, and keeps the status of the last answer. */
class PassingBinder : public android::BBinder {
 public:
  explicit PassingBinder(const android::sp<android::BBinder>& service) : service_(service) {}

  android::binder::Status status;

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    const android::status_t result = service_->transact(code, data, reply, flags);
    status.readFromParcel(*reply);
    reply->setDataPosition(0);
    return result;
  }

 private:
  const android::sp<android::BBinder> service_;
};

/** The C functions of one service, which are called row by row. */
class ApiTest : public ScriptedTest {
 protected:
  /** `tag` is the one under which the functions log, if they do. */
  ApiTest(const char* name, const char16_t* descriptor, const char* tag, std::span<const ApiRow> rows)
      : ScriptedTest(name, descriptor), tag_(tag), rows_(rows) {}

  static inline const std::string kUntouched = std::string(kBufferSize, '#');
  /** What is in the buffer once a row has put something there. */
  static std::string withPrefix(const std::string& start) { return start + kUntouched.substr(start.size()); }

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

  Result call(const ApiRow& row, int room = kBufferSize) { return row.call({out_.data()}, room); }

  void expectNothingWithoutConnection() {
    out_ = kUntouched;
    for (const ApiRow& row : rows_) EXPECT_EQ(call(row), row.gives.absent) << row.text;
    EXPECT_EQ(out_, kUntouched);
    EXPECT_EQ(log_.take(), std::vector<LogLine>());
  }

  /** Every function makes its one call; together they make `codes` different ones. */
  void expectCallsAndAnswers(size_t codes) {
    std::set<uint32_t> seen;
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      const std::string bytes = pattern(row.gives.size);
      answer(outValues(row.gives, bytes));
      out_ = kUntouched;
      EXPECT_EQ(call(row), row.gives.success);
      EXPECT_EQ(out_, withPrefix(row.gives.text == Expected::kNone ? bytes : std::string("text\0", 5)));
      expectRequest(row.code, row.arguments);
      EXPECT_EQ(log_.take().size(), row.gives.logsRecord ? 1u : 0u);
      seen.insert(row.code);
    }
    EXPECT_EQ(seen.size(), codes);
  }

  /** No answer, an exception, half an answer, records one byte off: nothing is taken of any of them. */
  void expectFailures() {
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      size_t failures = 0;
      const std::string untouched = row.gives.text == Expected::kNone ? kUntouched : withPrefix({'\0'});
      const auto expectFailure = [&](const char* what) {
        out_ = kUntouched;
        EXPECT_EQ(call(row), row.gives.failed) << what;
        EXPECT_EQ(out_, untouched) << what;
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
      EXPECT_EQ(log_.take(), sizeErrors(row.function(), row.gives.logsFailure ? failures : 0));
    }
  }

  /** A text is cut to the room that the caller has, or is not given at all. */
  void expectTextsKeepToTheirRoom() {
    answer(Wire().text(u"12345678"));
    for (const ApiRow& row : rows_) {
      if (row.gives.text == Expected::kNone) continue;
      SCOPED_TRACE(row.text);
      for (const int room : {INT_MIN, -1, 0, 1, 8, 9, kBufferSize}) {
        out_ = kUntouched;
        const bool isGiven = room > 8 || row.gives.text == Expected::kCut;
        EXPECT_EQ(call(row, room), isGiven ? row.gives.success : Result(-1)) << room;
        const std::string text = std::string("12345678").substr(0, static_cast<size_t>(room) - 1) + '\0';
        EXPECT_EQ(out_, isGiven && room > 0 ? withPrefix(text) : kUntouched) << room;
      }
    }
  }

  /**
   * The simulated device's service takes the calls of all rows, in their order, but those that say otherwise,
   * and answers with records of the right sizes and with values that are no refusals.
   */
  template <class Connect>
  void expectServedBy(const android::sp<android::BBinder>& device, Connect connect) {
    const android::sp<PassingBinder> passing = new PassingBinder(device);
    ASSERT_EQ(android::defaultServiceManager()->addService(android::String16(name_), passing), android::OK);
    ASSERT_TRUE(connect());
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      out_ = kUntouched;
      const Result result = call(row);
      const bool tells = row.gives.success != row.gives.failed;
      const bool isTaken = passing->status.isOk() && (!tells || result.value_or(0) >= 0);
      EXPECT_EQ(isTaken, row.service == ApiRow::kTaken) << passing->status.toString8().c_str();
      const size_t size = isTaken ? static_cast<size_t>(std::max(row.gives.size, 0)) : 0;
      if (row.gives.text == Expected::kNone) {
        EXPECT_EQ(out_.substr(size), kUntouched.substr(size));
      }
      EXPECT_EQ(out_.substr(0, size) == kUntouched.substr(0, size), size == 0);
    }
    log_.take();
  }

  /** The service dies over a request, which fails like any other; the connection goes with it. */
  void expectDeathEndsCallAndConnection() {
    const auto row = std::ranges::find_if(rows_, [](const ApiRow& each) { return each.gives.size >= 0; });
    service_->dieOverNextRequest();
    EXPECT_EQ(call(*row), row->gives.failed) << row->text;
    EXPECT_EQ(die(), std::vector<LogLine>{deathLine()});
    expectNothingWithoutConnection();
  }

  std::string out_ = kUntouched;

 private:
  static Wire outValues(const Expected& gives, const std::string& record) {
    Wire values;
    if (gives.value) values.i32(kAnswer);
    if (gives.size >= 0) values.record(record);
    if (gives.text != Expected::kNone) values.text(u"text");
    return values;
  }

  std::vector<LogLine> connectLine(const std::string& outcome) const {
    return {{ANDROID_LOG_INFO, tag_, "Connect " + std::string(name_) + " " + outcome}};
  }

  const char* const tag_;
  const std::span<const ApiRow> rows_;
};

}  // namespace vesk::test
