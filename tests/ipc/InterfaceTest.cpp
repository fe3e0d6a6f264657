#include <gtest/gtest.h>

#include "RecordingBinder.h"
#include "SampleService.h"

using android::IBinder;
using android::IInterface;
using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::RecordingBinder;

namespace com::qv {
namespace {

class Listener : public BnSampleListener {
 public:
  Status happenedEvent(int32_t value) override {
    last = value;
    return Status::ok();
  }
  int32_t last = 0;
};

/** A proxy even for an object of this process. */
sp<BpSample> proxyOf(const sp<IBinder>& binder) { return new BpSample(binder); }

TEST(InterfaceTest, AsInterfaceGivesTheObjectItselfOrAProxy) {
  EXPECT_EQ(ISample::asInterface(nullptr), nullptr);

  const sp<SampleService> local = new SampleService;
  EXPECT_EQ(ISample::asInterface(local), local);
  EXPECT_EQ(IInterface::asBinder(sp<ISample>(local)), local);

  const sp<RecordingBinder> remote = new RecordingBinder;
  const sp<ISample> proxy = ISample::asInterface(remote);
  ASSERT_NE(proxy, nullptr);
  EXPECT_EQ(IInterface::asBinder(proxy), remote);
  EXPECT_EQ(proxy->getInterfaceDescriptor(), String16("com.qv.ISample"));

  const sp<ISampleListener> other = ISampleListener::asInterface(local);
  ASSERT_NE(other, nullptr) << "an object of another interface is just a binder";
  EXPECT_EQ(other->happenedEvent(1).transactionError(), android::BAD_TYPE);
}

TEST(InterfaceTest, EveryTypeSurvivesTheWayThroughProxyAndStub) {
  const sp<BpSample> sample = proxyOf(new SampleService);
  int32_t number = 0;
  EXPECT_TRUE(sample->numbers(INT32_MIN / 2, true, &number).isOk());
  EXPECT_EQ(number, INT32_MIN);
  EXPECT_TRUE(sample->ints(std::vector<int32_t>(10'000, 1), &number).isOk());
  EXPECT_EQ(number, 10'000);

  std::string text;
  const std::string longText(5000, 'x');
  EXPECT_TRUE(sample->text(longText, &text).isOk());
  EXPECT_EQ(text, longText);

  const std::string bytes = std::string(4492, '\0') + '\xff';
  CommonParcelable record;
  EXPECT_TRUE(sample->record(0, CommonParcelable(bytes.data(), bytes.size()), &record).isOk());
  EXPECT_EQ(std::string(record.blob().c_str(), record.blob().length()), bytes);

  std::vector<android::String16> texts;
  EXPECT_TRUE(sample->texts(&texts).isOk());
  EXPECT_EQ(texts, (std::vector<android::String16>{String16("one"), String16()}));
}

TEST(InterfaceTest, AListenerArrivesAsWhatItIs) {
  const sp<SampleService> service = new SampleService;
  const sp<BpSample> sample = proxyOf(service);
  const sp<Listener> listener = new Listener;
  EXPECT_TRUE(sample->listen(listener).isOk());
  EXPECT_EQ(service->listener, listener);

  const sp<RecordingBinder> remote = new RecordingBinder;
  EXPECT_TRUE(sample->listen(ISampleListener::asInterface(remote)).isOk());
  ASSERT_NE(service->listener, nullptr);
  EXPECT_EQ(IInterface::asBinder(service->listener), remote);

  EXPECT_TRUE(sample->listen(nullptr).isOk());
  EXPECT_EQ(service->listener, nullptr);
}

TEST(InterfaceTest, TheDefaultServesNothing) {
  const sp<ISample> direct = new DefaultSample;
  for (const sp<ISample>& sample : {direct, sp<ISample>(proxyOf(IInterface::asBinder(direct)))}) {
    int32_t number = -7;
    std::string text = "preset";
    EXPECT_EQ(sample->nothing().exceptionCode(), Status::EX_UNSUPPORTED_OPERATION);
    EXPECT_EQ(sample->numbers(1, true, &number).exceptionCode(), Status::EX_UNSUPPORTED_OPERATION);
    EXPECT_EQ(sample->text("", &text).exceptionCode(), Status::EX_UNSUPPORTED_OPERATION);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(text, "preset");
  }
}

}  // namespace
}  // namespace com::qv
