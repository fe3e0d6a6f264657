#pragma once

#include <binder/ProcessState.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "ChildProcess.h"
#include "LogCapture.h"
#include "RecordingService.h"
#include "Result.h"

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

inline const Wire kOk = Wire().i32(0);

/** A process that serves the name args[0] and answers everything with a record of args[1] bytes. */
CHILD_ROLE(recordService) {
  const android::sp<RecordingService> service = new RecordingService;
  service->answer = Wire(kOk).record(pattern(std::stoi(args.at(1))));
  service->registerAs(args.at(0).c_str());
  android::ProcessState::self()->startThreadPool();
  parent.ready();
  parent.waitForEnd();
  return 0;
}

/** The C functions of one service, over against a service that writes down what they send. */
class ApiTest : public testing::Test {
 protected:
  /** `tag` is the one under which the functions log, if they do. */
  ApiTest(const char* name, const char16_t* descriptor, const char* tag, std::span<const ApiRow> rows)
      : name_(name), descriptor_(descriptor), tag_(tag), rows_(rows) {}

  static constexpr size_t kRoom = 4600;
  static inline const std::string kUntouched = std::string(kRoom, '#');

  /** Registers the service and connects. */
  template <class Connect>
  void connectWith(Connect connect) {
    service_->registerAs(name_);
    ASSERT_TRUE(connect());
    EXPECT_EQ(log_.take(), connectLine("done. "));
  }

  /** Has the service die in a process of its own, under the same name, and tries to connect. */
  template <class Connect>
  void failToConnectWith(Connect connect) {
    ChildProcess(kServiceRole, {name_, "0"}).kill();
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
    const auto fetches = [&] {
      const std::string sent = pattern(size);
      out_ = kUntouched;
      EXPECT_EQ(fetch(out_.data()), 0);
      EXPECT_EQ(out_, sent + kUntouched.substr(sent.size()));
    };
    const auto fails = [&] {
      out_ = kUntouched;
      EXPECT_EQ(fetch(out_.data()), -1);
      EXPECT_EQ(out_, kUntouched);
    };
    ChildProcess first(kServiceRole, {name_, std::to_string(size)});
    ASSERT_TRUE(connect());
    fetches();
    first.kill();
    fails();
    fails();
    ChildProcess second(kServiceRole, {name_, std::to_string(size)});
    fails();
    EXPECT_EQ(log_.take(), connectLine("done. ")) << "and nothing of the death";
    ASSERT_TRUE(connect());
    fetches();
  }

  /** What a function has to log, `count` times, if its record has not its size. */
  std::vector<LogLine> sizeErrors(const std::string& function, size_t count = 1) const {
    return std::vector<LogLine>(count, {ANDROID_LOG_ERROR, tag_, function + ": param size error!"});
  }

  std::string requestWith(const Wire& arguments) const {
    return Wire().text(descriptor_).append(arguments).bytes();
  }

  static Wire answerTo(const Gives& gives, const std::string& record) {
    Wire answer = kOk;
    if (gives.value) answer.i32(kAnswer);
    if (gives.size >= 0) answer.record(record);
    return answer;
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
      service_->answer = answerTo(row.gives, sent);
      out_ = kUntouched;
      EXPECT_EQ(row.call(out_.data()), row.gives.success);
      EXPECT_EQ(out_, sent + kUntouched.substr(sent.size()));
      const auto request = service_->take();
      ASSERT_TRUE(request.has_value());
      EXPECT_EQ(request->code, row.code);
      EXPECT_EQ(request->flags, 0u);
      EXPECT_EQ(request->bytes, requestWith(row.arguments));
      seen.insert(request->code);
    }
    EXPECT_EQ(seen.size(), codes);
    EXPECT_EQ(log_.take(), std::vector<LogLine>());
  }

  /** No answer, an exception, half an answer, records one byte off: nothing is taken of any of them. */
  void expectFailures() {
    for (const ApiRow& row : rows_) {
      SCOPED_TRACE(row.text);
      size_t failures = 0;
      const auto expectFailure = [&](const char* what, const Wire& answer, android::status_t status) {
        service_->answer = answer;
        service_->status = status;
        EXPECT_EQ(row.call(out_.data()), row.gives.failed) << what;
        EXPECT_TRUE(service_->take().has_value()) << what;
        ++failures;
      };
      const std::string good = pattern(row.gives.size);
      expectFailure("no answer", answerTo(row.gives, good), android::DEAD_OBJECT);
      expectFailure("exception", Wire().i32(-8).text(u"no").i32(0).i32(17).append(answerTo(row.gives, good)),
                    android::OK);
      expectFailure("half an answer", kOk, android::OK);
      if (row.gives.size >= 0) {
        for (const std::string& record : {std::string(), good.substr(1), good + "!"}) {
          expectFailure("record of another size", answerTo(row.gives, record), android::OK);
        }
      }
      EXPECT_EQ(log_.take(), sizeErrors(row.function(), row.gives.logs ? failures : 0));
    }
    EXPECT_EQ(out_, kUntouched);
  }

  LogCapture log_;
  const android::sp<RecordingService> service_ = new RecordingService;
  std::string out_ = kUntouched;

 private:
  static constexpr const char* kServiceRole = "recordService";

  std::vector<LogLine> connectLine(const std::string& outcome) const {
    return {{ANDROID_LOG_INFO, tag_, "Connect " + std::string(name_) + " " + outcome}};
  }

  const char* const name_;
  const std::u16string descriptor_;
  const char* const tag_;
  const std::span<const ApiRow> rows_;
};

}  // namespace vesk::test
