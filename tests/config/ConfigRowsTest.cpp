#include <numeric>

#include "ConfigFixture.h"
#include "ConfigRows.h"

using vesk::test::LogLine;

const std::string kSent = [] {
  std::string bytes(kRoom, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}();

namespace {

const std::string kUntouched(kRoom, '#');

std::string behind(const std::string& start) { return start + kUntouched.substr(start.size()); }

/** A record with zeros at both ends. */
std::string withZeros(size_t size) {
  std::string bytes(size, 'r');
  bytes.front() = bytes.back() = '\0';
  return bytes;
}

class ConfigRowsTest : public ConfigFixture {
 protected:
  ConfigRowsTest() {
    connect();
    rows_ = settingsRows();
    const std::vector<Row> others = featureRows();
    rows_.insert(rows_.end(), others.begin(), others.end());
    buffer = kUntouched;
    room = kRoom;
  }

  /** Without a connection. */
  void expectNothing() {
    for (const Row& row : rows_) EXPECT_EQ(row.make(), row.outcome.absent) << row.call;
    EXPECT_EQ(buffer, kUntouched);
    EXPECT_TRUE(log_.take().empty());
  }

  std::vector<Row> rows_;
};

TEST_F(ConfigRowsTest, EveryFunctionSendsItsArgumentsAndGivesTheAnswer) {
  for (const Row& row : rows_) {
    SCOPED_TRACE(row.call);
    log_.take();
    answer(row.outcome.reply);
    EXPECT_EQ(row.make(), row.outcome.ok);
    expectRequest(row.code, row.arguments);
    EXPECT_EQ(log_.take().size(), row.outcome.logs ? 1u : 0u);
  }
}

TEST_F(ConfigRowsTest, AFailedCallGivesItsValueAndAnEmptyTextAtMost) {
  log_.take();
  for (const Row& row : rows_) {
    SCOPED_TRACE(row.call);
    const auto expectFailure = [&](const char* how) {
      buffer = kUntouched;
      EXPECT_EQ(row.make(), row.outcome.failed) << how;
      EXPECT_TRUE(service_->take().has_value()) << how;
      EXPECT_EQ(buffer, row.outcome.text == Outcome::kNone ? kUntouched : behind({'\0'})) << how;
    };
    answerException(row.outcome.reply);
    expectFailure("an exception, with out-values behind it");
    answer(Wire());
    if (!row.outcome.reply.bytes().empty()) expectFailure("an answer without its value");
    answerNothing();
    expectFailure("no answer");
  }
  EXPECT_TRUE(log_.take().empty());
}

TEST_F(ConfigRowsTest, WithoutAConnectionNothingIsWritten) {
  die();
  expectNothing();
}

TEST_F(ConfigRowsTest, ADeathEndsTheCallAndTheConnection) {
  log_.take();
  service_->dieOverNextRequest();
  EXPECT_EQ(binder_get_qos_cdp(buffer.data()), -1);
  EXPECT_EQ(die(), std::vector<LogLine>{deathLine()});
  expectNothing();
}

TEST_F(ConfigRowsTest, ARecordIsTakenOnlyAtItsExactSize) {
  for (const Row& row : rows_) {
    const size_t exact = row.outcome.record;
    if (exact == 0) continue;
    SCOPED_TRACE(row.call);
    log_.take();
    buffer = kUntouched;
    for (const size_t size : {size_t{0}, exact - 1, exact + 1}) {
      answer(Wire().record(std::string(size, 'r')));
      EXPECT_EQ(row.make(), -1) << size;
      EXPECT_EQ(buffer, kUntouched) << size;
    }
    EXPECT_TRUE(log_.take().empty());
    answer(Wire().record(withZeros(exact)));
    EXPECT_EQ(row.make(), 0);
    EXPECT_EQ(buffer, behind(withZeros(exact)));
  }
}

TEST_F(ConfigRowsTest, ATextKeepsToTheSizeOfTheBuffer) {
  for (const Row& row : rows_) {
    if (row.outcome.text == Outcome::kNone) continue;
    SCOPED_TRACE(row.call);
    const bool cuts = row.outcome.text == Outcome::kCut;
    answer(Wire().text(u"12345678"));
    for (const int size : {INT_MIN, -1, 0, 1, 8, 9, int{kRoom}}) {
      room = size;
      buffer = kUntouched;
      const bool fits = size > 8;
      EXPECT_EQ(row.make(), cuts || fits ? row.outcome.ok : Result(-1)) << size;
      std::string expected = kUntouched;
      if (fits || (cuts && size > 0)) {
        expected = behind(std::string("12345678").substr(0, static_cast<size_t>(size) - 1) + '\0');
      }
      EXPECT_EQ(buffer, expected) << size;
    }
  }
}

}  // namespace
