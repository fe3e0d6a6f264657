#include <gtest/gtest.h>

#include <functional>

#include "ISample.h"
#include "RecordingBinder.h"

using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::RecordingBinder;
using vesk::test::Wire;

namespace com::qv {
namespace {

/** What the calls below write to; its first values stand for what a caller has preset. */
struct Outs {
  int32_t number = -7;
  bool flag = true;
  std::string text = "preset";
  CommonParcelable record{"preset", 6};
  std::vector<CommonParcelable> records{record, record};
  std::vector<String16> texts{String16("preset")};

  bool operator==(const Outs& other) const {
    return number == other.number && flag == other.flag && text == other.text &&
           record.blob() == other.record.blob() && texts == other.texts &&
           std::equal(records.begin(), records.end(), other.records.begin(), other.records.end(),
                      [](const auto& a, const auto& b) { return a.blob() == b.blob(); });
  }
};

CommonParcelable recordOf(std::string_view bytes) { return {bytes.data(), bytes.size()}; }

using Call = std::function<Status(ISample&, Outs&)>;

Status nothing(ISample& sample, Outs&) { return sample.nothing(); }
Status numbers(ISample& sample, Outs& outs) { return sample.numbers(21, true, &outs.number); }
Status truth(ISample& sample, Outs& outs) { return sample.truth(-1, &outs.flag); }
Status text(ISample& sample, Outs& outs) { return sample.text("a\xC3\xA4\xF0\x9F\x93\x9E", &outs.text); }
Status ints(ISample& sample, Outs& outs) { return sample.ints({1, -1}, &outs.number); }
Status noInts(ISample& sample, Outs& outs) { return sample.ints({}, &outs.number); }
Status record(ISample& sample, Outs& outs) { return sample.record(1, recordOf({"a\0b", 3}), &outs.record); }
Status records(ISample& sample, Outs& outs) { return sample.records(2, &outs.records); }
Status texts(ISample& sample, Outs& outs) { return sample.texts(&outs.texts); }
Status everything(ISample& sample, Outs& outs) {
  return sample.everything(5, &outs.record, &outs.records, &outs.number);
}

class ProxyTest : public testing::Test {
 protected:
  const sp<RecordingBinder> remote_ = new RecordingBinder;
  const sp<ISample> sample_ = ISample::asInterface(remote_);
};

TEST_F(ProxyTest, WritesTokenAndArgumentsInOrder) {
  const struct {
    const char* name;
    Call call;
    uint32_t code;
    Wire arguments;
  } rows[] = {
      {"nothing", nothing, 1, Wire()},
      {"numbers", numbers, 2, Wire().i32(21).i32(1)},
      {"truth", truth, 3, Wire().i32(-1)},
      {"text", text, 4, Wire().text(u"a\u00e4\U0001F4DE")},
      {"ints", ints, 5, Wire().i32(2).i32(1).i32(-1)},
      {"noInts", noInts, 5, Wire().i32(0)},
      {"record", record, 6, Wire().i32(1).i32(1).blob({"a\0b", 3})},
      {"records", records, 7, Wire().i32(2)},
      {"texts", texts, 8, Wire()},
      {"everything", everything, 10, Wire().i32(5)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Outs outs;
    row.call(*sample_, outs);
    const auto request = remote_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, row.code);
    EXPECT_EQ(request->flags, 0u);
    EXPECT_EQ(request->bytes, Wire().text(u"com.qv.ISample").append(row.arguments).bytes());
  }
}

/** A proxy for a service that calls its interface something else. */
class RenamedSample : public BpSample {
 public:
  using BpSample::BpSample;
  const String16& getInterfaceDescriptor() const override { return name_; }

 private:
  const String16 name_{"renamed"};
};

TEST_F(ProxyTest, WritesTheDescriptorOfADerivedProxy) {
  const sp<ISample> renamed = new RenamedSample(remote_);
  renamed->nothing();
  const auto request = remote_->take();
  ASSERT_TRUE(request.has_value());
  EXPECT_EQ(request->bytes, Wire().text(u"renamed").bytes());
}

TEST_F(ProxyTest, ReadsTheReplyIntoTheOutArguments) {
  const std::string zeros("x\0\0y\0", 5);
  const struct {
    const char* name;
    Call call;
    Wire reply;
    std::function<void(Outs&)> expect;
  } rows[] = {
      {"nothing", nothing, Wire(), [](Outs&) {}},
      {"numbers", numbers, Wire().i32(42), [](Outs& outs) { outs.number = 42; }},
      {"truth", truth, Wire().i32(0), [](Outs& outs) { outs.flag = false; }},
      {"text", text, Wire().text(u"\U0001F4DE"), [](Outs& outs) { outs.text = "\xF0\x9F\x93\x9E"; }},
      {"empty text", text, Wire().text(u""), [](Outs& outs) { outs.text = ""; }},
      {"record", record, Wire().record(zeros), [&](Outs& outs) { outs.record = recordOf(zeros); }},
      {"empty record", record, Wire().record(""), [](Outs& outs) { outs.record = {}; }},
      {"fewer records", records, Wire().i32(1).record("a"),
       [](Outs& outs) { outs.records = {recordOf("a")}; }},
      {"more records", records, Wire().i32(3).record("a").record("").record(zeros),
       [&](Outs& outs) {
         outs.records = {recordOf("a"), {}, recordOf(zeros)};
       }},
      {"no records", records, Wire().i32(0), [](Outs& outs) { outs.records = {}; }},
      {"texts", texts, Wire().i32(2).text(u"one").text(u""),
       [](Outs& outs) {
         outs.texts = {String16("one"), String16()};
       }},
      {"everything", everything, Wire().i32(1).record("r").i32(1).record("a"),
       [](Outs& outs) {
         outs.number = 1;
         outs.record = recordOf("r");
         outs.records = {recordOf("a")};
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    remote_->answer = Wire().i32(Status::EX_NONE).append(row.reply);
    Outs outs;
    EXPECT_TRUE(row.call(*sample_, outs).isOk());
    Outs expected;
    row.expect(expected);
    EXPECT_EQ(outs, expected);
  }
}

TEST_F(ProxyTest, WritesNothingUnlessTheWholeReplyIsGood) {
  constexpr int32_t kHuge = 0x7fffffff;
  const Wire ok = Wire().i32(Status::EX_NONE);
  const auto okAnd = [&](const Wire& rest) { return Wire(ok).append(rest); };
  const struct {
    const char* name;
    Call call;
    Wire reply;
    android::status_t error;
  } rows[] = {
      {"no reply", numbers, Wire(), android::NOT_ENOUGH_DATA},
      {"no reply and none expected", nothing, Wire(), android::NOT_ENOUGH_DATA},
      {"no number", numbers, ok, android::NOT_ENOUGH_DATA},
      {"no bool", truth, ok, android::NOT_ENOUGH_DATA},
      {"null text", text, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"long text", text, okAnd(Wire().i32(kHuge)), android::NOT_ENOUGH_DATA},
      {"null record", record, okAnd(Wire().i32(0)), android::UNEXPECTED_NULL},
      {"null blob", record, okAnd(Wire().i32(1).i32(-1)), android::UNEXPECTED_NULL},
      {"half a record", record, okAnd(Wire().i32(1).i32(100).i32(0)), android::NOT_ENOUGH_DATA},
      {"no count", records, ok, android::NOT_ENOUGH_DATA},
      {"null records", records, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"too few records", records, okAnd(Wire().i32(2).record("a")), android::NOT_ENOUGH_DATA},
      {"hostile count", records, okAnd(Wire().i32(kHuge).record("a")), android::NOT_ENOUGH_DATA},
      {"null before the end", records, okAnd(Wire().i32(2).i32(0)), android::UNEXPECTED_NULL},
      {"null texts", texts, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"too few texts", texts, okAnd(Wire().i32(2).text(u"one")), android::NOT_ENOUGH_DATA},
      {"hostile count of texts", texts, okAnd(Wire().i32(kHuge)), android::NOT_ENOUGH_DATA},
      {"only the result", everything, okAnd(Wire().i32(1)), android::NOT_ENOUGH_DATA},
      {"result and record", everything, okAnd(Wire().i32(1).record("r")), android::NOT_ENOUGH_DATA},
      {"null at the end", everything, okAnd(Wire().i32(1).record("r").i32(1).i32(0)),
       android::UNEXPECTED_NULL},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    remote_->answer = row.reply;
    Outs outs;
    const Status status = row.call(*sample_, outs);
    EXPECT_EQ(status.exceptionCode(), Status::EX_TRANSACTION_FAILED);
    EXPECT_EQ(status.transactionError(), row.error) << android::statusToString(status.transactionError());
    EXPECT_EQ(outs, Outs());
  }
}

TEST_F(ProxyTest, GivesBackAnExceptionAndReadsNoFurther) {
  const struct {
    Wire reply;
    Status expected;
  } rows[] = {
      {Wire().i32(-1).text(u"no").i32(0), Status::fromExceptionCode(Status::EX_SECURITY, "no")},
      {Wire().i32(-4).text(u"").i32(0), Status::fromExceptionCode(Status::EX_NULL_POINTER)},
      {Wire().i32(-8).text(u"busy").i32(0).i32(17), Status::fromServiceSpecificError(17, "busy")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected.toString8().c_str());
    // What would be a good reply stands behind it.
    remote_->answer = Wire(row.reply).i32(1).record("r").i32(0);
    Outs outs;
    EXPECT_EQ(everything(*sample_, outs).toString8(), row.expected.toString8());
    EXPECT_EQ(outs, Outs());
  }
}

TEST_F(ProxyTest, TurnsATransportErrorIntoAStatus) {
  for (const android::status_t error :
       {android::status_t{android::DEAD_OBJECT}, android::status_t{android::BAD_TYPE},
        android::status_t{android::UNKNOWN_TRANSACTION}}) {
    SCOPED_TRACE(android::statusToString(error));
    remote_->status = error;
    Outs outs;
    const Status status = everything(*sample_, outs);
    EXPECT_EQ(status.exceptionCode(), Status::EX_TRANSACTION_FAILED);
    EXPECT_EQ(status.transactionError(), error);
    EXPECT_EQ(outs, Outs());
  }
}

TEST_F(ProxyTest, SendsNothingIfAnArgumentCannotBeWritten) {
  Outs outs;
  EXPECT_EQ(sample_->text("\xff", &outs.text).transactionError(), android::BAD_VALUE) << "is no UTF-8";
  EXPECT_FALSE(remote_->take().has_value());
  EXPECT_EQ(outs, Outs());
}

}  // namespace
}  // namespace com::qv
