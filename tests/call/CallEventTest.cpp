#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <ostream>
#include <utility>

#include "CallCallbackList.h"
#include "LogCapture.h"

using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::BpCallEventListener;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;
using vesk::test::LogCapture;
using vesk::test::LogLine;

namespace {

constexpr const char* kTag = "CallClient";

LogLine info(const std::string& text) { return {ANDROID_LOG_INFO, kTag, text}; }
LogLine debug(const std::string& text) { return {ANDROID_LOG_DEBUG, kTag, text}; }
LogLine error(const std::string& text) { return {ANDROID_LOG_ERROR, kTag, text}; }

/** A callback that was called: its place among the parameters of connect_call_service, and what it was given.
 */
struct Called {
  int index;
  std::string arguments;
  bool operator==(const Called&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Called& called) {
  return out << called.index << ": " << testing::PrintToString(called.arguments);
}

std::vector<Called> calls;

template <int kIndex, size_t kSize>
void onRecord(void* record) {
  calls.push_back({kIndex, std::string(static_cast<char*>(record), kSize)});
  std::memset(record, '!', kSize);  // It is the callback's own.
}
template <int kIndex>
constexpr vesk_call_info_callback kOnCallInfo = onRecord<kIndex, VESK_CALL_INFO_SIZE>;

template <int kIndex>
void onValue(int value) {
  calls.push_back({kIndex, std::to_string(value)});
}

template <int kIndex>
void onMembers(int value, const int* members, int count) {
  std::string arguments = std::to_string(value) + ":";
  for (int i = 0; i < count; ++i) arguments += " " + std::to_string(members[i]);
  calls.push_back({kIndex, arguments});
}

constexpr CallCallbackList kAllCallbacks{
    kOnCallInfo<0>,
    onValue<1>,
    onValue<2>,
    kOnCallInfo<3>,
    kOnCallInfo<4>,
    kOnCallInfo<5>,
    onValue<6>,
    onValue<7>,
    onValue<8>,
    onMembers<9>,
    onValue<10>,
    onMembers<11>,
    [] {
      calls.push_back({12, ""});
    },
    [](int code, int status) {
      calls.push_back({13, std::to_string(code) + " " + std::to_string(status)});
    },
    [](const char* text) {
      calls.push_back({14, text});
    },
    kOnCallInfo<15>,
    onRecord<16, VESK_AUTO_REDIAL_INFO_SIZE>,
    [](void* record, bool flag) {
      calls.push_back({17, std::string(static_cast<char*>(record), VESK_CALL_COMPLETION_INFO_SIZE)});
      calls.back().arguments += flag ? "true" : "false";
    },
    nullptr,
};

class Service : public com::qv::DefaultCallService {
 public:
  Status registerCallEventListener(const sp<ICallEventListener>& newListener) override {
    listener = newListener;
    return Status::ok();
  }
  sp<ICallEventListener> listener;
};

/* Bytes of records, written by hand; filled with what stands behind the texts. */

void put(std::string* record, size_t offset, int32_t value) {
  std::memcpy(record->data() + offset, &value, sizeof(value));
}
void put(std::string* record, size_t offset, const std::string& text) {
  std::memcpy(record->data() + offset, text.c_str(), text.size() + 1);
}

std::string callInfo() {
  std::string record(360, '~');
  put(&record, 0, 2);
  put(&record, 4, -7);
  put(&record, 8, "Ann %s");
  put(&record, 264, "100");
  return record;
}

std::string autoRedialInfo() {
  std::string record(524, '~');
  put(&record, 0, 5);
  put(&record, 4, 30);
  put(&record, 8, "200");
  put(&record, 520, 1);
  return record;
}

std::string callCompletionInfo() {
  std::string record(516, '~');
  put(&record, 0, "300");
  put(&record, 512, 3);
  return record;
}

CommonParcelable parcel(const std::string& bytes) { return {bytes.data(), bytes.size()}; }

using Fire = std::function<Status(ICallEventListener&)>;
using FireRecord = std::function<Status(ICallEventListener&, const CommonParcelable&)>;

/** An event without a record, and one with it. */
#define EVENT(call) [](ICallEventListener& to) { return to.call; }
#define RECORD_EVENT(call) [](ICallEventListener& to, const CommonParcelable& record) { return to.call; }

struct RecordEvent {
  FireRecord fire;
  std::string record;
  int callback;
  std::vector<LogLine> log;
  std::vector<LogLine> logOnWrongSize;
  const char* more = "";

  Called called() const { return {callback, record + more}; }
};

std::vector<RecordEvent> recordEvents() {
  const std::string call = callInfo();
  const std::string callText = "(line:2, chan:-7, name:Ann %s, number:100)";
  return {
      {RECORD_EVENT(dialCallStartEvent(record)),
       call,
       0,
       {info("dialCallStartEvent")},
       {info("dialCallStartEvent"), error("peddial started param error!!!")}},
      {RECORD_EVENT(newOngoingCallEvent(record)),
       call,
       3,
       {info("newOngoingCallEvent" + callText)},
       {error("newOngoingCallEvent param error!!!")}},
      {RECORD_EVENT(callStateChangedEvent(record)), call, 4, {}, {}},
      {RECORD_EVENT(callInfoChangedEvent(record)),
       call,
       5,
       {info("callInfoChangedEvent" + callText)},
       {error("newOutgoingCallEvent param error!!!")}},
      {RECORD_EVENT(dialingInfoChangedEvent(record)),
       call,
       15,
       {info("dialingInfoChangedEvent" + callText)},
       {error("dialingInfoChangedEvent param error!!!")}},
      {RECORD_EVENT(autoRedialInfoChangedEvent(record)),
       autoRedialInfo(),
       16,
       {debug("autoRedialInfoChangedEvent(maxtimes:5, interval:30, dialNumber:200, currenttimes:1)")},
       {debug("autoRedialInfoChangedEvent param error!!!")}},
      {RECORD_EVENT(callCompletionInfoChangedEvent(record, true)),
       callCompletionInfo(),
       17,
       {debug("callCompletionInfoChangedEvent(line:3, dialNumber:300)")},
       {debug("callCompletionInfoChangedEvent param error!!!")},
       "true"},
      {RECORD_EVENT(callCompletionInfoChangedEvent(record, false)),
       callCompletionInfo(),
       17,
       {debug("callCompletionInfoChangedEvent(line:3, dialNumber:300)")},
       {debug("callCompletionInfoChangedEvent param error!!!")},
       "false"},
  };
}

struct Event {
  Fire fire;
  Called called;
  std::vector<LogLine> log;
};

std::vector<Event> events() {
  std::vector<Event> all = {
      {EVENT(dialCallStopEvent(-1)), {1, "-1"}, {info("dialCallStopEvent")}},
      {EVENT(dialSelectionEvent(2)), {2, "2"}, {}},
      {EVENT(deleteOngoingCallEvent(7)), {7, "7"}, {info("deleteOngoingCallEvent, chan: [7]")}},
      {EVENT(currentCallChangedEvent(-8)), {6, "-8"}, {info("currentCallChangedEvent, chan: [-8]")}},
      {EVENT(updateCallVideoStreamEvent(9)), {8, "9"}, {info("updateCallVideoStreamEvent, num: [9]")}},
      {EVENT(conferenceStartEvent(10, (std::vector{3, -4}))),
       {9, "10: 3 -4"},
       {info("conferenceStartEvent")}},
      {EVENT(conferenceStartEvent(10, {})), {9, "10:"}, {info("conferenceStartEvent")}},
      {EVENT(conferenceStopEvent(11)), {10, "11"}, {info("conferenceStopEvent")}},
      {EVENT(conferenceMembersChangedEvent(12, {5})), {11, "12: 5"}, {info("conferenceMembersChangedEvent")}},
      {EVENT(conferenceManagerEvent()), {12, ""}, {info("conferenceManagerEvent")}},
      {EVENT(makeCallRetEvent("busy %d")), {14, "busy %d"}, {info("makeCallRetEvent")}},
      {EVENT(keycodeEvent(15, -1)), {13, "15 -1"}, {info("keycodeEvent(code:15, status:-1)")}},
  };
  for (const RecordEvent& event : recordEvents()) {
    all.push_back({[event](ICallEventListener& to) { return event.fire(to, parcel(event.record)); },
                   event.called(), event.log});
  }
  return all;
}

class CallEventTest : public testing::Test {
 protected:
  void connect(const CallCallbackList& callbacks) {
    calls.clear();
    const sp<Service> service = new Service;
    ASSERT_EQ(android::defaultServiceManager()->addService(String16("com.qv.CallService"), service),
              android::OK);
    ASSERT_TRUE(connectCallService(callbacks));
    ASSERT_NE(service->listener, nullptr);
    listener_ = new BpCallEventListener(ICallEventListener::asBinder(service->listener));
    log_.take();
  }

  /** The only call of a callback that an event caused. */
  Called calledBy(const Fire& fire) {
    calls.clear();
    EXPECT_TRUE(fire(*listener_).isOk());
    EXPECT_EQ(calls.size(), 1u);
    return calls.empty() ? Called{-1, ""} : calls.front();
  }

  LogCapture log_;
  sp<ICallEventListener> listener_;
};

TEST_F(CallEventTest, EachEventLogsAndCallsItsCallback) {
  connect(kAllCallbacks);
  for (const Event& event : events()) {
    SCOPED_TRACE(event.called.index);
    EXPECT_EQ(calledBy(event.fire), event.called);
    EXPECT_EQ(log_.take(), event.log);
  }
}

TEST_F(CallEventTest, WithoutCallbacksEventsAreOnlyLogged) {
  connect(kNoCallbacks);
  for (const Event& event : events()) {
    SCOPED_TRACE(event.called.index);
    EXPECT_TRUE(event.fire(*listener_).isOk());
    EXPECT_EQ(log_.take(), event.log);
  }
}

TEST_F(CallEventTest, ARecordOfAnotherSizeIsDropped) {
  connect(kAllCallbacks);
  for (const RecordEvent& event : recordEvents()) {
    for (const std::string& record : {event.record + '\0', event.record.substr(1), std::string()}) {
      SCOPED_TRACE(testing::Message() << event.callback << " with " << record.size() << " bytes");
      EXPECT_TRUE(event.fire(*listener_, parcel(record)).isOk());
      EXPECT_EQ(log_.take(), event.logOnWrongSize);
      EXPECT_TRUE(calls.empty());
    }
  }
}

TEST_F(CallEventTest, TextsThatDoNotEndAreReadNoFurtherThanTheirRecord) {
  connect(kAllCallbacks);
  std::string call(360, 'x');
  put(&call, 0, 2);
  put(&call, 4, 3);
  EXPECT_EQ(calledBy([&](auto& to) { return to.newOngoingCallEvent(parcel(call)); }), (Called{3, call}));
  EXPECT_EQ(log_.take(),
            std::vector<LogLine>{info("newOngoingCallEvent(line:2, chan:3, name:" + std::string(256, 'x') +
                                      ", number:" + std::string(96, 'x') + ")")});

  std::string completion(516, 'x');
  put(&completion, 512, 4);
  EXPECT_TRUE(listener_->callCompletionInfoChangedEvent(parcel(completion), true).isOk());
  EXPECT_EQ(log_.take(), std::vector<LogLine>{debug("callCompletionInfoChangedEvent(line:4, dialNumber:" +
                                                    std::string(512, 'x') + ")")});

  std::string redial(524, 'x');
  for (const size_t offset : {0u, 4u, 520u}) put(&redial, offset, 1);
  EXPECT_TRUE(listener_->autoRedialInfoChangedEvent(parcel(redial)).isOk());
  EXPECT_EQ(log_.take(),
            std::vector<LogLine>{debug("autoRedialInfoChangedEvent(maxtimes:1, interval:1, dialNumber:" +
                                       std::string(512, 'x') + ", currenttimes:1)")});
}

TEST_F(CallEventTest, AMakeCallTextIsCutAt127Bytes) {
  connect(kAllCallbacks);
  for (const size_t length : {0u, 126u, 127u, 128u, 200u, 70'000u}) {
    const std::string text(length, 'x');
    EXPECT_EQ(calledBy([&](auto& to) { return to.makeCallRetEvent(text); }),
              (Called{14, text.substr(0, std::min<size_t>(length, 127))}));
  }
}

}  // namespace
