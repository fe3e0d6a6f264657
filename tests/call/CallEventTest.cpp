#include <binder/IServiceManager.h>
#include <com/qv/ICallService.h>
#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <utility>
#include <vector>

#include "CallCallbackList.h"
#include "LogCapture.h"
#include "RecordingBinder.h"

using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::BpCallEventListener;
using com::qv::CommonParcelable;
using com::qv::ICallEventListener;
using vesk::test::LogCapture;
using vesk::test::LogLine;
using vesk::test::RecordingBinder;

namespace {

/** A call of a callback: its place among the parameters of connect_call_service, and its
 * arguments. */
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

/* Bytes of records, written by hand; the room behind the texts is filled. */

std::string withInt(std::string record, size_t offset, int32_t value) {
  std::memcpy(record.data() + offset, &value, sizeof(value));
  return record;
}
std::string withText(std::string record, size_t offset, const std::string& text) {
  return record.replace(offset, text.size() + 1, text.c_str(), text.size() + 1);
}

const std::string kCall =
    withText(withText(withInt(withInt(std::string(360, '~'), 0, 2), 4, -7), 8, "Ann %s"), 264, "100");
const std::string kRedial =
    withInt(withText(withInt(withInt(std::string(524, '~'), 0, 5), 4, 30), 8, "200"), 520, 1);
const std::string kCompletion = withInt(withText(std::string(516, '~'), 0, "300"), 512, 3);

CommonParcelable parcel(const std::string& bytes) { return {bytes.data(), bytes.size()}; }

/** An event with its code, the callback and its arguments, and the log: lines of a priority's
 * letter and a text. */
struct Event {
  uint32_t code;
  Status (*fire)(ICallEventListener&);
  int callback;
  const char* arguments;
  const char* log;
};
#define EVENT(call) [](ICallEventListener& to) { return to.call; }

const std::string kText(127, 'x');
const Event kEvents[] = {
    {2, EVENT(dialCallStopEvent(-1)), 1, "-1", "I dialCallStopEvent\n"},
    {3, EVENT(dialSelectionEvent(2)), 2, "2", ""},
    {8, EVENT(currentCallChangedEvent(-8)), 6, "-8", "I currentCallChangedEvent, chan: [-8]\n"},
    {7, EVENT(deleteOngoingCallEvent(7)), 7, "7", "I deleteOngoingCallEvent, chan: [7]\n"},
    {9, EVENT(updateCallVideoStreamEvent(9)), 8, "9", "I updateCallVideoStreamEvent, num: [9]\n"},
    {10, EVENT(conferenceStartEvent(10, (std::vector{3, -4}))), 9, "10: 3 -4", "I conferenceStartEvent\n"},
    {10, EVENT(conferenceStartEvent(10, {})), 9, "10:", "I conferenceStartEvent\n"},
    {11, EVENT(conferenceStopEvent(11)), 10, "11", "I conferenceStopEvent\n"},
    {12, EVENT(conferenceMembersChangedEvent(12, {5})), 11, "12: 5", "I conferenceMembersChangedEvent\n"},
    {13, EVENT(conferenceManagerEvent()), 12, "", "I conferenceManagerEvent\n"},
    {15, EVENT(keycodeEvent(15, -1)), 13, "15 -1", "I keycodeEvent(code:15, status:-1)\n"},
    {14, EVENT(makeCallRetEvent("busy %d")), 14, "busy %d", "I makeCallRetEvent\n"},
    {14, EVENT(makeCallRetEvent(kText)), 14, kText.c_str(), "I makeCallRetEvent\n"},
    {14, EVENT(makeCallRetEvent(kText + 'x')), 14, kText.c_str(), "I makeCallRetEvent\n"},
    {14, EVENT(makeCallRetEvent(std::string(70'000, 'x'))), 14, kText.c_str(), "I makeCallRetEvent\n"},
};

/** An event with a record; the log with that, and with one of another size. */
struct RecordEvent {
  uint32_t code;
  Status (*fire)(ICallEventListener&, const CommonParcelable&);
  std::string record;
  int callback;
  const char* more; /**< an argument behind the record */
  std::string log;
  std::string wrongSizeLog;
};
#define RECORD_EVENT(call) [](ICallEventListener& to, const CommonParcelable& r) { return to.call; }

/* Texts that do not end are read no further than their record. */
const std::string kCallText = "(line:2, chan:-7, name:Ann %s, number:100)\n";
const std::string kFullCall = withInt(withInt(std::string(360, 'x'), 0, 2), 4, 3);
const std::string kFullCallText =
    "(line:2, chan:3, name:" + std::string(256, 'x') + ", number:" + std::string(96, 'x') + ")\n";
const std::string kFullRedial = withInt(std::string(524, 'x'), 520, 1);
const std::string kFullCompletion = withInt(std::string(516, 'x'), 512, 4);
const std::string kFullNumber(512, 'x');

const std::vector<RecordEvent> kRecordEvents = {
    {1, RECORD_EVENT(dialCallStartEvent(r)), kCall, 0, "", "I dialCallStartEvent\n",
     "I dialCallStartEvent\nE peddial started param error!!!\n"},
    {4, RECORD_EVENT(newOngoingCallEvent(r)), kCall, 3, "", "I newOngoingCallEvent" + kCallText,
     "E newOngoingCallEvent param error!!!\n"},
    {4, RECORD_EVENT(newOngoingCallEvent(r)), kFullCall, 3, "", "I newOngoingCallEvent" + kFullCallText,
     "E newOngoingCallEvent param error!!!\n"},
    {5, RECORD_EVENT(callStateChangedEvent(r)), kCall, 4, "", "", ""},
    {6, RECORD_EVENT(callInfoChangedEvent(r)), kCall, 5, "", "I callInfoChangedEvent" + kCallText,
     "E newOutgoingCallEvent param error!!!\n"},
    {16, RECORD_EVENT(dialingInfoChangedEvent(r)), kCall, 15, "", "I dialingInfoChangedEvent" + kCallText,
     "E dialingInfoChangedEvent param error!!!\n"},
    {17, RECORD_EVENT(autoRedialInfoChangedEvent(r)), kRedial, 16, "",
     "D autoRedialInfoChangedEvent(maxtimes:5, interval:30, dialNumber:200, currenttimes:1)\n",
     "D autoRedialInfoChangedEvent param error!!!\n"},
    {17, RECORD_EVENT(autoRedialInfoChangedEvent(r)), kFullRedial, 16, "",
     "D autoRedialInfoChangedEvent(maxtimes:2021161080, interval:2021161080, dialNumber:" + kFullNumber +
         ", currenttimes:1)\n",
     "D autoRedialInfoChangedEvent param error!!!\n"},
    {18, RECORD_EVENT(callCompletionInfoChangedEvent(r, true)), kCompletion, 17, "true",
     "D callCompletionInfoChangedEvent(line:3, dialNumber:300)\n",
     "D callCompletionInfoChangedEvent param error!!!\n"},
    {18, RECORD_EVENT(callCompletionInfoChangedEvent(r, false)), kFullCompletion, 17, "false",
     "D callCompletionInfoChangedEvent(line:4, dialNumber:" + kFullNumber + ")\n",
     "D callCompletionInfoChangedEvent param error!!!\n"},
};

class CallEventTest : public testing::Test {
 protected:
  void connect(const CallCallbackList& callbacks) {
    const sp<Service> service = new Service;
    ASSERT_EQ(android::defaultServiceManager()->addService(String16("com.qv.CallService"), service),
              android::OK);
    ASSERT_TRUE(connectCallService(callbacks));
    ASSERT_NE(service->listener, nullptr);
    listener_ = new BpCallEventListener(ICallEventListener::asBinder(service->listener));
    log_.take();
  }

  /** The lines since the last look, all under the client's tag. */
  std::string logged() {
    std::string all;
    for (const LogLine& line : log_.take()) {
      EXPECT_EQ(line.tag, "CallClient");
      all += std::string(1, "??VDIWE"[line.priority]) + ' ' + line.text + '\n';
    }
    return all;
  }

  LogCapture log_;
  sp<ICallEventListener> listener_;
};

TEST_F(CallEventTest, EventsAreLoggedAndCallTheirCallbacks) {
  for (const bool hasCallbacks : {false, true}) {
    connect(hasCallbacks ? kAllCallbacks : kNoCallbacks);
    const auto expectEvent = [&](const Status& status, const Called& called, const std::string& log) {
      EXPECT_TRUE(status.isOk());
      EXPECT_EQ(std::exchange(calls, {}), std::vector<Called>(hasCallbacks ? 1 : 0, called));
      EXPECT_EQ(logged(), log);
    };
    for (const Event& event : kEvents)
      expectEvent(event.fire(*listener_), {event.callback, event.arguments}, event.log);
    for (const RecordEvent& event : kRecordEvents) {
      expectEvent(event.fire(*listener_, parcel(event.record)), {event.callback, event.record + event.more},
                  event.log);
    }
  }
}

TEST_F(CallEventTest, EventsHaveTheirCodes) {
  const sp<RecordingBinder> remote = new RecordingBinder;
  BpCallEventListener proxy(remote);
  for (const Event& event : kEvents) {
    EXPECT_TRUE(event.fire(proxy).isOk());
    EXPECT_EQ(remote->take().value().code, event.code);
  }
  for (const RecordEvent& event : kRecordEvents) {
    EXPECT_TRUE(event.fire(proxy, parcel(event.record)).isOk());
    EXPECT_EQ(remote->take().value().code, event.code);
  }
}

TEST_F(CallEventTest, RecordOfAnotherSizeIsDropped) {
  connect(kAllCallbacks);
  for (const RecordEvent& event : kRecordEvents) {
    for (const std::string& record : {event.record + '\0', event.record.substr(1), std::string()}) {
      EXPECT_TRUE(event.fire(*listener_, parcel(record)).isOk());
      EXPECT_EQ(logged(), event.wrongSizeLog) << record.size() << " bytes";
      EXPECT_EQ(calls, std::vector<Called>());
    }
  }
}

}  // namespace
