#include <com/qv/ICallService.h>
#include <gtest/gtest.h>

#include <functional>

#include "RecordingBinder.h"
#include "SampleService.h"

using android::IBinder;
using android::IInterface;
using android::Parcel;
using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::bytesOf;
using vesk::test::RecordingBinder;
using vesk::test::Wire;

/* The proxy and the stub of one interface, and the bytes between them. */

namespace com::qv {
namespace {

/** The out-arguments of the calls below, with the values that a caller has preset. */
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

const Wire kOk = Wire().i32(Status::EX_NONE);
const Wire kNullPointer = Wire().i32(Status::EX_NULL_POINTER).text(u"").i32(0);

class MarshallingTest : public testing::Test {
 protected:
  struct Answer {
    android::status_t status;
    std::string reply;
  };

  /** The stub's answer to a request. */
  static Answer transact(const sp<IBinder>& stub, uint32_t code, const Wire& request) {
    Parcel data;
    data.setData(reinterpret_cast<const uint8_t*>(request.bytes().data()), request.bytes().size());
    Parcel reply;
    const android::status_t status = stub->transact(code, data, &reply);
    return {status, bytesOf(reply)};
  }
  Answer transact(uint32_t code, const Wire& request) { return transact(service_, code, request); }

  static Wire request(const Wire& arguments) { return Wire().text(u"com.qv.ISample").append(arguments); }

  const sp<RecordingBinder> remote_ = new RecordingBinder;
  const sp<ISample> sample_ = ISample::asInterface(remote_);
  const sp<SampleService> service_ = new SampleService;
};

TEST_F(MarshallingTest, ProxyAndStubAgreeOnEveryType) {
  const std::u16string longText(5000, u'x');
  const std::string zeros("\0x\0\0y\0", 6);
  const struct {
    const char* name;
    Call call;
    uint32_t code;
    Wire arguments;
    Wire reply;
    std::function<void(Outs&)> expect;
  } rows[] = {
      {"nothing", nothing, 1, Wire(), Wire(), [](Outs&) {}},
      {"numbers", numbers, 2, Wire().i32(21).i32(1), Wire().i32(42), [](Outs& outs) { outs.number = 42; }},
      {"truth", truth, 3, Wire().i32(-1), Wire().i32(0), [](Outs& outs) { outs.flag = false; }},
      {"text", text, 4, Wire().text(u"a\u00e4\U0001F4DE"), Wire().text(u"a\u00e4\U0001F4DE"),
       [](Outs& outs) { outs.text = "a\xC3\xA4\xF0\x9F\x93\x9E"; }},
      {"empty text", [](ISample& sample, Outs& outs) { return sample.text("", &outs.text); }, 4,
       Wire().text(u""), Wire().text(u""), [](Outs& outs) { outs.text = ""; }},
      {"long text",
       [](ISample& sample, Outs& outs) { return sample.text(std::string(5000, 'x'), &outs.text); }, 4,
       Wire().text(longText), Wire().text(longText), [](Outs& outs) { outs.text = std::string(5000, 'x'); }},
      {"ints", ints, 5, Wire().i32(2).i32(1).i32(-1), Wire().i32(0), [](Outs& outs) { outs.number = 0; }},
      {"no ints", noInts, 5, Wire().i32(0), Wire().i32(0), [](Outs& outs) { outs.number = 0; }},
      {"record", [&](ISample& sample, Outs& outs) { return sample.record(1, recordOf(zeros), &outs.record); },
       6, Wire().i32(1).record(zeros), Wire().record(zeros),
       [&](Outs& outs) { outs.record = recordOf(zeros); }},
      {"empty record", [](ISample& sample, Outs& outs) { return sample.record(1, {}, &outs.record); }, 6,
       Wire().i32(1).record(""), Wire().record(""), [](Outs& outs) { outs.record = {}; }},
      {"fewer records", [](ISample& sample, Outs& outs) { return sample.records(1, &outs.records); }, 7,
       Wire().i32(1), Wire().i32(1).record(""), [](Outs& outs) { outs.records = {{}}; }},
      {"more records", [](ISample& sample, Outs& outs) { return sample.records(3, &outs.records); }, 7,
       Wire().i32(3), Wire().i32(3).record("").record("0").record("01"),
       [](Outs& outs) {
         outs.records = {{}, recordOf("0"), recordOf("01")};
       }},
      {"no records", [](ISample& sample, Outs& outs) { return sample.records(0, &outs.records); }, 7,
       Wire().i32(0), Wire().i32(0), [](Outs& outs) { outs.records = {}; }},
      {"texts", texts, 8, Wire(), Wire().i32(2).text(u"one").text(u""),
       [](Outs& outs) {
         outs.texts = {String16("one"), String16()};
       }},
      {"everything", everything, 10, Wire().i32(5), Wire().i32(5).record("r").i32(2).record("a").record("b"),
       [](Outs& outs) {
         outs.number = 5;
         outs.record = recordOf("r");
         outs.records = {recordOf("a"), recordOf("b")};
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    remote_->answer = Wire(kOk).append(row.reply);
    Outs outs;
    EXPECT_TRUE(row.call(*sample_, outs).isOk());
    Outs expected;
    row.expect(expected);
    EXPECT_EQ(outs, expected);
    const auto sent = remote_->take();
    ASSERT_TRUE(sent.has_value());
    EXPECT_EQ(sent->code, row.code);
    EXPECT_EQ(sent->flags, 0u);
    EXPECT_EQ(sent->bytes, request(row.arguments).bytes());

    const Answer answer = transact(row.code, request(row.arguments));
    EXPECT_EQ(answer.status, android::OK);
    EXPECT_EQ(answer.reply, remote_->answer.bytes());
  }
}

class RenamedSample : public BpSample {
 public:
  using BpSample::BpSample;
  const String16& getInterfaceDescriptor() const override { return name_; }

 private:
  const String16 name_{"renamed"};
};

TEST_F(MarshallingTest, WritesTheDescriptorOfADerivedProxy) {
  const sp<ISample> renamed = new RenamedSample(remote_);
  renamed->nothing();
  const auto request = remote_->take();
  ASSERT_TRUE(request.has_value());
  EXPECT_EQ(request->bytes, Wire().text(u"renamed").bytes());
}

TEST_F(MarshallingTest, WritesNothingUnlessTheWholeReplyIsGood) {
  constexpr int32_t kHuge = 0x7fffffff;
  const auto okAnd = [&](const Wire& rest) { return Wire(kOk).append(rest); };
  const struct {
    const char* name;
    Call call;
    Wire reply;
    android::status_t error;
  } rows[] = {
      {"no reply", numbers, Wire(), android::NOT_ENOUGH_DATA},
      {"no reply and none expected", nothing, Wire(), android::NOT_ENOUGH_DATA},
      {"no number", numbers, kOk, android::NOT_ENOUGH_DATA},
      {"no bool", truth, kOk, android::NOT_ENOUGH_DATA},
      {"null text", text, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"long text", text, okAnd(Wire().i32(kHuge)), android::NOT_ENOUGH_DATA},
      {"null record", record, okAnd(Wire().i32(0)), android::UNEXPECTED_NULL},
      {"null blob", record, okAnd(Wire().i32(1).i32(-1)), android::UNEXPECTED_NULL},
      {"half a record", record, okAnd(Wire().i32(1).i32(100).i32(0)), android::NOT_ENOUGH_DATA},
      {"no count", records, kOk, android::NOT_ENOUGH_DATA},
      {"null records", records, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"too few records", records, okAnd(Wire().i32(2).record("a")), android::NOT_ENOUGH_DATA},
      {"hostile count", records, okAnd(Wire().i32(kHuge).record("a")), android::NOT_ENOUGH_DATA},
      {"null before the end", records, okAnd(Wire().i32(2).i32(0)), android::UNEXPECTED_NULL},
      {"null texts", texts, okAnd(Wire().i32(-1)), android::UNEXPECTED_NULL},
      {"too few texts", texts, okAnd(Wire().i32(2).text(u"one")), android::NOT_ENOUGH_DATA},
      {"hostile count of texts", texts, okAnd(Wire().i32(kHuge)), android::NOT_ENOUGH_DATA},
      {"only the result", everything, okAnd(Wire().i32(1)), android::NOT_ENOUGH_DATA},
      {"result and record", everything, okAnd(Wire().i32(1).record("r")), android::NOT_ENOUGH_DATA},
      {"null in front of a good one", everything, okAnd(Wire().i32(1).i32(0).i32(0)),
       android::UNEXPECTED_NULL},
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

TEST_F(MarshallingTest, GivesBackAnExceptionAndReadsNoFurther) {
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
    // A good reply stands behind it.
    remote_->answer = Wire(row.reply).i32(1).record("r").i32(0);
    Outs outs;
    EXPECT_EQ(everything(*sample_, outs).toString8(), row.expected.toString8());
    EXPECT_EQ(outs, Outs());
  }
}

TEST_F(MarshallingTest, TurnsATransportErrorIntoAStatus) {
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

TEST_F(MarshallingTest, ArgumentThatCannotBeWrittenIsNotSent) {
  Outs outs;
  EXPECT_EQ(sample_->text("\xff", &outs.text).transactionError(), android::BAD_VALUE) << "is no UTF-8";
  const sp<ICallService> calls = ICallService::asInterface(remote_);
  EXPECT_EQ(calls->makeAvCall(1, "\xff", true, &outs.number).transactionError(), android::BAD_VALUE)
      << "in front of a good one";
  EXPECT_FALSE(remote_->take().has_value());
  EXPECT_EQ(outs, Outs());
}

TEST_F(MarshallingTest, LeavesOtherCodesToTheBase) {
  for (const uint32_t code : {0u, 11u, 0xffffffffu}) {
    EXPECT_EQ(transact(code, request(Wire())).status, android::UNKNOWN_TRANSACTION) << code;
  }
  const Answer name = transact(IBinder::INTERFACE_TRANSACTION, Wire());
  EXPECT_EQ(name.status, android::OK);
  EXPECT_EQ(name.reply, Wire().text(u"com.qv.ISample").bytes());
  EXPECT_EQ(transact(IBinder::PING_TRANSACTION, Wire()).status, android::OK);
}

TEST_F(MarshallingTest, RefusesAnotherToken) {
  for (const char16_t* token : {u"com.qv.ISampleListener", u"com.qv.ISampl", u""}) {
    const Answer answer = transact(1, Wire().text(token));
    EXPECT_EQ(answer.status, android::BAD_TYPE);
    EXPECT_EQ(answer.reply, "");
  }
  EXPECT_EQ(transact(1, Wire()).status, android::BAD_TYPE);
  EXPECT_EQ(service_->calls, 0);
}

TEST_F(MarshallingTest, RefusesArgumentsThatCannotBeRead) {
  constexpr int32_t kHuge = 0x7fffffff;
  const struct {
    const char* name;
    uint32_t code;
    Wire arguments;
    bool isNull = false;
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
      {"null text", 4, Wire().i32(-1), true},
      {"null ints", 5, Wire().i32(-1), true},
      {"null record", 6, Wire().i32(0).i32(0), true},
      {"null blob", 6, Wire().i32(0).i32(1).i32(-1), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Answer answer = transact(row.code, request(row.arguments));
    EXPECT_EQ(answer.status, row.isNull ? android::OK : android::NOT_ENOUGH_DATA);
    EXPECT_EQ(answer.reply, row.isNull ? kNullPointer.bytes() : "");
  }
  const Answer forged = transact(9, request(Wire().i32(1).i32(2).i32(3).i32(4).i32(5).i32(6)));
  EXPECT_EQ(forged.status, android::BAD_TYPE) << "bytes are no object";
  const Wire nullInFront = Wire().text(u"com.qv.ICallService").i32(1).i32(-1).i32(1);
  EXPECT_EQ(transact(new DefaultCallService, 15, nullInFront).reply, kNullPointer.bytes());
  EXPECT_EQ(service_->calls, 0);
}

TEST_F(MarshallingTest, SendsNoOutArgumentsAfterAFailure) {
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

/* Interfaces and binders */

class Listener : public BnSampleListener {
 public:
  Status happenedEvent(int32_t value) override {
    last = value;
    return Status::ok();
  }
  int32_t last = 0;
};

TEST_F(MarshallingTest, AsInterfaceGivesTheObjectItselfOrAProxy) {
  EXPECT_EQ(ISample::asInterface(nullptr), nullptr);

  EXPECT_EQ(ISample::asInterface(service_), service_);
  EXPECT_EQ(IInterface::asBinder(sp<ISample>(service_)), service_);

  ASSERT_NE(sample_, nullptr);
  EXPECT_EQ(IInterface::asBinder(sample_), remote_);
  EXPECT_EQ(sample_->getInterfaceDescriptor(), String16("com.qv.ISample"));

  const sp<ISampleListener> other = ISampleListener::asInterface(service_);
  ASSERT_NE(other, nullptr) << "an object of another interface is just a binder";
  EXPECT_EQ(other->happenedEvent(1).transactionError(), android::BAD_TYPE);
}

TEST_F(MarshallingTest, ListenerArrivesAsWhatItIs) {
  const sp<BpSample> sample = new BpSample(service_);
  const sp<Listener> listener = new Listener;
  EXPECT_TRUE(sample->listen(listener).isOk());
  EXPECT_EQ(service_->listener, listener);

  EXPECT_TRUE(sample->listen(ISampleListener::asInterface(remote_)).isOk());
  ASSERT_NE(service_->listener, nullptr);
  EXPECT_EQ(IInterface::asBinder(service_->listener), remote_);

  EXPECT_TRUE(sample->listen(nullptr).isOk());
  EXPECT_EQ(service_->listener, nullptr);
}

TEST_F(MarshallingTest, DefaultServesNothing) {
  Outs outs;
  EXPECT_EQ(everything(*sp<DefaultSample>(new DefaultSample), outs).exceptionCode(),
            Status::EX_UNSUPPORTED_OPERATION);
  EXPECT_EQ(outs, Outs());
}

}  // namespace
}  // namespace com::qv
