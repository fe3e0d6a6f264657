#include <gtest/gtest.h>

#include "RecordingBinder.h"
#include "SampleService.h"

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::bytesOf;
using vesk::test::Wire;

namespace com::qv {
namespace {

class StubTest : public testing::Test {
 protected:
  struct Answer {
    android::status_t status;
    std::string reply;
  };

  Answer transact(uint32_t code, const Wire& request) {
    Parcel data;
    data.setData(reinterpret_cast<const uint8_t*>(request.bytes().data()), request.bytes().size());
    Parcel reply;
    const android::status_t status = service_->transact(code, data, &reply);
    return {status, bytesOf(reply)};
  }

  static Wire request(const Wire& arguments) { return Wire().text(u"com.qv.ISample").append(arguments); }

  const sp<SampleService> service_ = new SampleService;
};

const Wire kOk = Wire().i32(Status::EX_NONE);
const Wire kNullPointer = Wire().i32(Status::EX_NULL_POINTER).text(u"").i32(0);

TEST_F(StubTest, AnswersWithTheStatusAndTheOutArguments) {
  const struct {
    const char* name;
    uint32_t code;
    Wire arguments;
    Wire reply;
  } rows[] = {
      {"nothing", 1, Wire(), Wire()},
      {"numbers", 2, Wire().i32(21).i32(1), Wire().i32(42)},
      {"truth", 3, Wire().i32(1), Wire().i32(1)},
      {"text", 4, Wire().text(u"a\U0001F4DE"), Wire().text(u"a\U0001F4DE")},
      {"ints", 5, Wire().i32(2).i32(3).i32(4), Wire().i32(7)},
      {"no ints", 5, Wire().i32(0), Wire().i32(0)},
      {"record", 6, Wire().i32(0).record({"\0a\0", 3}), Wire().record({"\0a\0", 3})},
      {"records", 7, Wire().i32(3), Wire().i32(3).record("").record("0").record("01")},
      {"no records", 7, Wire().i32(0), Wire().i32(0)},
      {"texts", 8, Wire(), Wire().i32(2).text(u"one").text(u"")},
      {"everything", 10, Wire().i32(5), Wire().i32(5).record("r").i32(2).record("a").record("b")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Answer answer = transact(row.code, request(row.arguments));
    EXPECT_EQ(answer.status, android::OK);
    EXPECT_EQ(answer.reply, Wire(kOk).append(row.reply).bytes());
  }
}

TEST_F(StubTest, LeavesOtherCodesToTheBase) {
  for (const uint32_t code : {0u, 12u, 0xffffffffu}) {
    EXPECT_EQ(transact(code, request(Wire())).status, android::UNKNOWN_TRANSACTION) << code;
  }
  const Answer name = transact(IBinder::INTERFACE_TRANSACTION, Wire());
  EXPECT_EQ(name.status, android::OK);
  EXPECT_EQ(name.reply, Wire().text(u"com.qv.ISample").bytes());
  EXPECT_EQ(transact(IBinder::PING_TRANSACTION, Wire()).status, android::OK);
}

TEST_F(StubTest, RefusesAForeignToken) {
  for (const char16_t* token : {u"com.qv.ISampleListener", u"com.qv.ISampl", u""}) {
    const Answer answer = transact(1, Wire().text(token));
    EXPECT_EQ(answer.status, android::BAD_TYPE);
    EXPECT_EQ(answer.reply, "");
  }
  EXPECT_EQ(transact(1, Wire()).status, android::BAD_TYPE);
  EXPECT_EQ(service_->calls, 0);
}

TEST_F(StubTest, RefusesArgumentsThatCannotBeRead) {
  constexpr int32_t kHuge = 0x7fffffff;
  const struct {
    const char* name;
    uint32_t code;
    Wire arguments;
  } rows[] = {
      {"no number", 2, Wire()},
      {"no flag", 2, Wire().i32(1)},
      {"no text", 4, Wire()},
      {"half a text", 4, Wire().i32(100).i32(0)},
      {"no ints", 5, Wire()},
      {"half the ints", 5, Wire().i32(2).i32(1)},
      {"hostile count of ints", 5, Wire().i32(kHuge).i32(1)},
      {"no record", 6, Wire().i32(0)},
      {"no blob", 6, Wire().i32(0).i32(1)},
      {"half a blob", 6, Wire().i32(0).i32(1).i32(kHuge).i32(0)},
      {"no binder", 9, Wire()},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Answer answer = transact(row.code, request(row.arguments));
    EXPECT_EQ(answer.status, android::NOT_ENOUGH_DATA) << android::statusToString(answer.status);
    EXPECT_EQ(answer.reply, "");
  }
  const Answer forged = transact(9, request(Wire().i32(1).i32(2).i32(3).i32(4).i32(5).i32(6)));
  EXPECT_EQ(forged.status, android::BAD_TYPE) << "bytes are no object";
  EXPECT_EQ(service_->calls, 0);
}

TEST_F(StubTest, AnswersAnUnexpectedNullWithAnException) {
  const struct {
    const char* name;
    uint32_t code;
    Wire arguments;
  } rows[] = {
      {"text", 4, Wire().i32(-1)},
      {"ints", 5, Wire().i32(-1)},
      {"record", 6, Wire().i32(0).i32(0)},
      {"blob", 6, Wire().i32(0).i32(1).i32(-1)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Answer answer = transact(row.code, request(row.arguments));
    EXPECT_EQ(answer.status, android::OK);
    EXPECT_EQ(answer.reply, kNullPointer.bytes());
  }
  EXPECT_EQ(service_->calls, 0);
}

TEST_F(StubTest, SendsNoOutArgumentsAfterAFailure) {
  const Wire arguments = Wire().i32(5);
  service_->outcome = Status::fromServiceSpecificError(17, "busy");
  Answer answer = transact(10, request(arguments));
  EXPECT_EQ(answer.status, android::OK);
  EXPECT_EQ(answer.reply, Wire().i32(Status::EX_SERVICE_SPECIFIC).text(u"busy").i32(0).i32(17).bytes());

  service_->outcome = Status::fromStatusT(android::BAD_VALUE);
  answer = transact(10, request(arguments));
  EXPECT_EQ(answer.status, android::BAD_VALUE);
  EXPECT_EQ(answer.reply, "");

  service_->outcome = Status::fromStatusT(android::UNEXPECTED_NULL);
  answer = transact(10, request(arguments));
  EXPECT_EQ(answer.status, android::OK);
  EXPECT_EQ(answer.reply, kNullPointer.bytes());
}

}  // namespace
}  // namespace com::qv
