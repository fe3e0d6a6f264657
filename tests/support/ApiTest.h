#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <stdexcept>

#include "ApiRow.h"
#include "ScriptedTest.h"

namespace vesk::test {

/** Forwards calls to a service of this process, and keeps the status of the last reply. */
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

/** The C functions of one service, called row by row. */
class ApiTest : public ScriptedTest {
 protected:
  /** `tag` is the log tag of the functions. */
  ApiTest(const char* name, const char16_t* descriptor, const char* tag, const MethodKinds& methods,
          const std::vector<ApiGroup>& groups)
      : ScriptedTest(name, descriptor), tag_(tag), methods_(methods) {
    for (const ApiGroup& group : groups) {
      for (const ApiRow& row : group.rows) {
        rows_.push_back(row);
        rows_.back().gives = group.gives;
        EXPECT_TRUE(rows_.back().fit(methodOf(row))) << row.function;
      }
    }
  }

  static inline const std::string kUntouched = std::string(kBufferSize, '#');
  /** The buffer with a row's text, truncated to its room. */
  static std::string withText(const ApiRow& row, int room) {
    const auto size = static_cast<size_t>(room);
    std::string text = std::string("12345678").substr(0, size - 1) + '\0';
    if (row.gives.text == Expected::kZeroFill) text.resize(size);
    return withPrefix(text);
  }
  /** The buffer with its first bytes replaced. */
  static std::string withPrefix(const std::string& start) { return start + kUntouched.substr(start.size()); }

  template <class Connect>
  void connectWith(Connect connect) {
    ScriptedTest::connectWith(connect);
    EXPECT_EQ(log_.take(),
              (std::vector<LogLine>{{ANDROID_LOG_INFO, tag_, "Connect " + std::string(name_) + " done. "}}));
  }

  /** A connection without death notification remains when its service dies: calls fail until the
   * next connect. */
  template <class Connect>
  void expectConnectionOutlivesService(Connect connect) {
    const auto results = [this] {
      std::vector<Result> all;
      for (const ApiRow& row : rows_) {
        answer(outValues(row, pattern(receivedSize(row))));
        Arguments given = arguments(row);
        all.push_back(row.call(given));
      }
      return all;
    };
    const auto expected = [this](Result Expected::*which) {
      std::vector<Result> all;
      for (const ApiRow& row : rows_) all.push_back(row.gives.*which);
      return all;
    };
    connectWith(connect);
    service_->kill();
    service_.emplace(name_);
    EXPECT_EQ(results(), expected(&Expected::failed));
    EXPECT_EQ(log_.take(), std::vector<LogLine>()) << "no line about the death";
    ASSERT_TRUE(connect());
    EXPECT_EQ(results(), expected(&Expected::success));
  }

  /** The line that a function logs for a record of another size, `count` times. */
  std::vector<LogLine> sizeErrors(const std::string& function, size_t count = 1) const {
    return std::vector<LogLine>(count, {ANDROID_LOG_ERROR, tag_, function + ": param size error!"});
  }

  Arguments arguments(const ApiRow& row, int round = 0) {
    return {.kinds = row.kinds, .round = round, .out = out_.data()};
  }

  /** Without a connection, nothing is logged, sent or written, and no pointer is dereferenced. */
  void expectNothingWithoutConnection() {
    out_ = kUntouched;
    for (const ApiRow& row : rows_) {
      Arguments bad{.kinds = row.kinds, .isBad = true};
      EXPECT_EQ(row.call(bad), row.gives.absent) << row.function;
    }
    EXPECT_EQ(log_.take(), std::vector<LogLine>());
  }

  /** Every function makes exactly one call. In total there are `codes` different calls. */
  void expectCallsAndAnswers(size_t codes) {
    std::set<uint32_t> seen;
    for (const ApiRow& row : rows_) {
      const std::string bytes = pattern(receivedSize(row));
      answer(outValues(row, bytes));
      for (int round = 0; round < Arguments::kRounds; ++round) {
        SCOPED_TRACE(row.function + ", round " + std::to_string(round));
        out_ = kUntouched;
        Arguments given = arguments(row, round);
        EXPECT_EQ(row.call(given), row.gives.success);
        EXPECT_EQ(out_, row.gives.text == Expected::kNone ? withPrefix(bytes) : withText(row, kBufferSize));
        expectRequest(row.code, given.wire(row.sizes));
        EXPECT_EQ(log_.take().size(), row.gives.logsRecord ? 1u : 0u);
      }
      seen.insert(row.code);
    }
    EXPECT_EQ(seen.size(), codes);
  }

  /** A null text throws the standard library's exception and sends nothing. A null record follows
   * the row's rule. */
  void expectNullPointers() {
    for (const ApiRow& row : rows_) {
      answer(outValues(row, pattern(receivedSize(row))));
      for (size_t at = 0; at < row.kinds.size(); ++at) {
        SCOPED_TRACE(row.function + ", argument " + std::to_string(at));
        const auto rule = row.gives.null;
        Arguments given = arguments(row);
        given.nullAt = static_cast<int>(at);
        if (row.kinds[at] == Kind::kText) {
          EXPECT_THROW(row.call(given), std::logic_error);
          EXPECT_FALSE(service_->take().has_value());
        } else if (row.kinds[at] == Kind::kRecord ||
                   (row.kinds[at] == Kind::kOut && rule == Expected::kRefused)) {
          EXPECT_EQ(row.call(given), rule == Expected::kSent ? row.gives.success : row.gives.failed);
          EXPECT_EQ(service_->take().has_value(), rule != Expected::kRefused);
          EXPECT_EQ(log_.take(), sizeErrors(row.function, rule == Expected::kSentAndRefused ? 1 : 0));
        }
      }
    }
  }

  /** A failed call, an exception, a truncated reply or a record of another size leaves the output
   * untouched. */
  void expectFailures() {
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.function);
      size_t failures = 0;
      const bool empties = row.gives.text == Expected::kTruncate || row.gives.text == Expected::kAllOrNothing;
      const std::string untouched = empties ? withPrefix({'\0'}) : kUntouched;
      const auto expectFailure = [&](const char* what) {
        out_ = kUntouched;
        Arguments given = arguments(row);
        EXPECT_EQ(row.call(given), row.gives.failed) << what;
        EXPECT_EQ(out_, untouched) << what;
        EXPECT_TRUE(service_->take().has_value()) << what;
        ++failures;
      };
      const std::string good = pattern(receivedSize(row));
      answerNothing();
      expectFailure("no reply");
      answerException(outValues(row, good));
      expectFailure("exception");
      answer(Wire());
      expectFailure("truncated reply");
      if (receives(row, Kind::kOutBlob)) {
        for (const std::string& record : {std::string(), good.substr(1), good + "!"}) {
          answer(outValues(row, record));
          expectFailure("record of another size");
        }
      }
      EXPECT_EQ(log_.take(), sizeErrors(row.function, row.gives.logsFailure ? failures : 0));
    }
  }

  /** A text is truncated to the caller's buffer, or not copied at all. */
  void expectTextsKeepToTheirRoom() {
    answer(Wire().text(u"12345678"));
    for (const ApiRow& row : rows_) {
      if (row.gives.text == Expected::kNone) continue;
      SCOPED_TRACE(row.function);
      for (const int room : {INT_MIN, -1, 0, 1, 8, 9, kBufferSize}) {
        out_ = kUntouched;
        Arguments given = arguments(row);
        given.room = room;
        const bool isGiven = room > 8 || row.gives.text != Expected::kAllOrNothing;
        EXPECT_EQ(row.call(given), isGiven ? row.gives.success : Result(-1)) << room;
        EXPECT_EQ(out_, isGiven && room > 0 ? withText(row, room) : kUntouched) << room;
      }
    }
  }

  /**
   * The simulated device's service accepts the calls of all rows, in their order, except refused()
   * rows. Its replies have records of the right sizes and values that are no refusals.
   */
  template <class Connect>
  void expectServedBy(const android::sp<android::BBinder>& device, Connect connect) {
    const android::sp<PassingBinder> passing = new PassingBinder(device);
    ASSERT_EQ(android::defaultServiceManager()->addService(android::String16(name_), passing), android::OK);
    ASSERT_TRUE(connect());
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.function);
      out_ = kUntouched;
      Arguments given = arguments(row);
      given.numbers = row.numbers;
      const Result result = row.call(given);
      const bool reports = row.gives.success != row.gives.failed;
      const bool isTaken = passing->status.isOk() && (!reports || result.value_or(0) >= 0);
      EXPECT_EQ(isTaken, row.isServed) << passing->status.toString8().c_str();
      const size_t size = isTaken ? receivedSize(row) : 0;
      if (row.gives.text == Expected::kNone) {
        EXPECT_EQ(out_.substr(size), kUntouched.substr(size));
      }
      EXPECT_EQ(out_.substr(0, size) == kUntouched.substr(0, size), size == 0);
    }
    log_.take();
  }

  /** The service dies during a request: the call fails, and the connection ends. */
  void expectDeathEndsCallAndConnection() {
    const auto row = std::ranges::find_if(
        rows_, [this](const ApiRow& each) { return receivedSize(each) > 0 && !each.gives.logsFailure; });
    service_->dieOnNextRequest();
    Arguments given = arguments(*row);
    EXPECT_EQ(row->call(given), row->gives.failed) << row->function;
    EXPECT_EQ(die(), std::vector<LogLine>{deathLine()});
    expectNothingWithoutConnection();
  }

  std::string out_ = kUntouched;

 private:
  const Kinds& methodOf(const ApiRow& row) const { return methods_.at(row.code); }
  bool receives(const ApiRow& row, Kind kind) const { return std::ranges::count(methodOf(row), kind) > 0; }
  size_t receivedSize(const ApiRow& row) const {
    return receives(row, Kind::kOutBlob) ? row.sizes.back() : 0;
  }

  Wire outValues(const ApiRow& row, const std::string& record) const {
    Wire values;
    if (receives(row, Kind::kOutInt)) values.i32(kAnswer);
    if (receives(row, Kind::kOutBlob)) values.record(record);
    if (receives(row, Kind::kOutText)) values.text(u"12345678");
    return values;
  }

  const char* const tag_;
  const MethodKinds& methods_;
  std::vector<ApiRow> rows_;
};

}  // namespace vesk::test
