#include <binder/IServiceManager.h>
#include <gtest/gtest.h>
#include <vesk/vesk_client.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <set>
#include <stdexcept>
#include <type_traits>

#include "CallCallbackList.h"
#include "ChildProcess.h"
#include "LogCapture.h"
#include "RecordingBinder.h"

using android::sp;
using android::String16;
using vesk::test::ChildProcess;
using vesk::test::LogCapture;
using vesk::test::RecordingBinder;
using vesk::test::Wire;

namespace {

constexpr uint32_t kRegisterCallEventListener = 34;
constexpr size_t kFlatBinderSize = 24;

/** What a function gives: an int or a bool as int, nothing for void. */
using Result = std::optional<int>;

template <class Function>
Result resultOf(Function function) {
  if constexpr (std::is_void_v<decltype(function())>) {
    function();
    return std::nullopt;
  } else {
    return function();
  }
}

constexpr Result kVoid = std::nullopt;
constexpr Result kInt = -1;
constexpr Result kBool = 0;

struct Row {
  const char* text;
  Result (*call)();
  uint32_t code;
  Wire arguments;
  /** Without a connection and after a failure. */
  Result failure;
};
#define ROW(call, code, arguments, failure)                                       \
  Row {                                                                           \
#call, [] { return resultOf([] { return call; }); }, code, arguments, failure \
  }

const char kAreaA[] = "A\0area of size\xff";
const char kAreaB[] = "\0B area of size";
static_assert(sizeof(kAreaA) >= VESK_VIDEO_AREA_SIZE && sizeof(kAreaB) >= VESK_VIDEO_AREA_SIZE);
const int kMembers[] = {3, -1, INT_MAX};
char snapshotInfo[VESK_SNAPSHOT_INFO_SIZE];

const Row kRows[] = {
    ROW(binder_redial_call(), 1, Wire(), kVoid),
    ROW(binder_set_call_hold_status(5, true), 2, Wire().i32(5).i32(1), kVoid),
    ROW(binder_set_call_hold_status(-5, false), 2, Wire().i32(-5).i32(0), kVoid),
    ROW(binder_close_call(INT_MIN), 3, Wire().i32(INT_MIN), kVoid),
    ROW(binder_headset_answer_call(), 4, Wire(), kVoid),
    ROW(binder_add_conference_members(kMembers, 3), 5, Wire().i32(3).i32(3).i32(-1).i32(INT_MAX), kVoid),
    ROW(binder_add_conference_members(kMembers, 1), 5, Wire().i32(1).i32(3), kVoid),
    ROW(binder_add_conference_members(nullptr, 0), 5, Wire().i32(0), kVoid),
    ROW(binder_add_conference_members(kMembers, INT_MIN), 5, Wire().i32(0), kVoid),
    ROW(binder_remove_conference_member(6), 6, Wire().i32(6), kVoid),
    ROW(binder_hold_conference_member(7), 7, Wire().i32(7), kVoid),
    ROW(binder_resume_conference_member(8), 8, Wire().i32(8), kVoid),
    ROW(binder_mute_conference_member(9, true), 9, Wire().i32(9).i32(1), kVoid),
    ROW(binder_mute_all_conference_member(10, false), 10, Wire().i32(10).i32(0), kVoid),
    ROW(binder_set_video_display_area(11, kAreaA, kAreaB), 11,
        Wire().i32(11).record({kAreaA, 16}).record({kAreaB, 16}), kVoid),
    ROW(binder_set_video_stream_area(12, -12), 12, Wire().i32(12).i32(-12), kVoid),
    ROW(binder_dial_selection_request(13), 13, Wire().i32(13), kVoid),
    ROW(binder_make_call(14, "+49 (0) 30"), 14, Wire().i32(14).text(u"+49 (0) 30"), kInt),
    ROW(binder_make_call(-1, ""), 14, Wire().i32(-1).text(u""), kInt),
    ROW(binder_make_av_call(15, "1", 2), 15, Wire().i32(15).text(u"1").i32(1), kInt),
    ROW(binder_make_av_call(15, "1", 0), 15, Wire().i32(15).text(u"1").i32(0), kInt),
    ROW(binder_play_mwi(16, "*97"), 16, Wire().i32(16).text(u"*97"), kInt),
    ROW(binder_edial_with_line(17, "\xC3\xA4\xF0\x9F\x93\x9E"), 17, Wire().i32(17).text(u"\u00e4\U0001F4DE"),
        kInt),
    ROW(binder_edial_change_line(18), 18, Wire().i32(18), kInt),
    ROW(binder_edial_make_call(), 19, Wire(), kInt),
    ROW(binder_get_first_valid_line(), 20, Wire(), kInt),
    ROW(binder_play_tone_request(21), 21, Wire().i32(21), kVoid),
    ROW(binder_stop_tone_request(), 22, Wire(), kVoid),
    ROW(binder_dial_number_update_request("23"), 23, Wire().text(u"23"), kVoid),
    ROW(binder_set_current_call(24), 24, Wire().i32(24), kVoid),
    ROW(binder_switch_call_muted_state(), 25, Wire(), kVoid),
    ROW(binder_key_multiplexing(true), 26, Wire().i32(1), kVoid),
    ROW(binder_create_new_call(27), 27, Wire().i32(27), kVoid),
    ROW(binder_call_completion(), 28, Wire(), kVoid),
    ROW(binder_call_auto_redial(), 29, Wire(), kVoid),
    ROW(binder_auto_redial_make_call(), 30, Wire(), kVoid),
    ROW(binder_auto_redial_cancel(), 31, Wire(), kVoid),
    ROW(binder_complete_dial_confirm(32, "#"), 32, Wire().i32(32).text(u"#"), kVoid),
    ROW(binder_complete_cancel(33, "##"), 33, Wire().i32(33).text(u"##"), kVoid),
    ROW(binder_video_snapshot(35), 35, Wire().i32(35), kVoid),
    ROW(binder_delete_snapshot(36), 36, Wire().i32(36), kVoid),
    ROW(binder_get_snapshot_nums(37), 37, Wire().i32(37), kInt),
    ROW(binder_snapshot_data_request(38), 38, Wire().i32(38), kVoid),
    ROW(binder_get_snapshot_info_by_index(39, -39, snapshotInfo), 39, Wire().i32(39).i32(-39), kVoid),
    ROW(binder_ctrl_led_dooropen(), 40, Wire(), kVoid),
    ROW(binder_set_dooropen_type(41), 41, Wire().i32(41), kVoid),
    ROW(binder_get_call_have_ivr(), 42, Wire(), kBool),
};

/** A request as it should be. */
std::string requestWith(const Wire& arguments) {
  return Wire().text(u"com.qv.ICallService").append(arguments).bytes();
}

class CallApiTest : public testing::Test {
 protected:
  void connect() {
    const String16 name("com.qv.CallService");
    ASSERT_EQ(android::defaultServiceManager()->addService(name, service_), android::OK);
    ASSERT_TRUE(connectCallService(kNoCallbacks));
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, kRegisterCallEventListener);
    EXPECT_EQ(request->bytes.size(), requestWith(Wire()).size() + kFlatBinderSize);
    EXPECT_TRUE(request->bytes.starts_with(requestWith(Wire())));
  }

  LogCapture log_;
  const sp<RecordingBinder> service_ = new RecordingBinder;
};

TEST_F(CallApiTest, WithoutAConnectionEveryFunctionGivesItsFailureValue) {
  // Whatever was connected before is given up for a service that is not there.
  ChildProcess("callService").kill();
  setenv("BINDER_LOOKUP_MS", "0", 1);
  ASSERT_FALSE(connectCallService(kNoCallbacks));
  log_.take();
  for (const Row& row : kRows) EXPECT_EQ(row.call(), row.failure) << row.text;
  EXPECT_EQ(binder_make_call(0, nullptr), -1) << "the arguments are not looked at";
  EXPECT_TRUE(log_.take().empty());
}

TEST_F(CallApiTest, EveryFunctionSendsItsArgumentsAndGivesTheAnswer) {
  connect();
  log_.take();
  service_->answer = Wire().i32(0).i32(4711);
  std::set<uint32_t> codes{kRegisterCallEventListener};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.call(), row.failure == kInt ? Result(4711) : row.failure == kBool ? Result(1) : kVoid);
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, row.code);
    EXPECT_EQ(request->flags, 0u);
    EXPECT_EQ(request->bytes, requestWith(row.arguments));
    codes.insert(request->code);
  }
  EXPECT_EQ(codes.size(), 42u) << "every transaction has its function";
  EXPECT_TRUE(log_.take().empty());
}

TEST_F(CallApiTest, AfterAFailedCallEveryFunctionGivesItsFailureValue) {
  connect();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    service_->status = android::OK;
    service_->answer = Wire().i32(-8).text(u"busy").i32(0).i32(17).i32(4711);
    EXPECT_EQ(row.call(), row.failure) << "an exception";
    service_->answer = Wire().i32(0);
    EXPECT_EQ(row.call(), row.failure) << "an answer without its value";
    service_->status = android::DEAD_OBJECT;
    EXPECT_EQ(row.call(), row.failure) << "no answer";
  }
}

TEST_F(CallApiTest, SnapshotInformationIsCopiedOnlyAtItsExactSize) {
  connect();
  const std::string untouched(VESK_SNAPSHOT_INFO_SIZE, '#');
  const auto fetch = [&](const Wire& answer) {
    service_->answer = answer;
    std::string info = untouched;
    binder_get_snapshot_info_by_index(1, 2, info.data());
    return info;
  };
  std::string sent(VESK_SNAPSHOT_INFO_SIZE, '\0');
  sent.front() = 'a';
  sent.back() = 'z';
  EXPECT_EQ(fetch(Wire().i32(0).record(sent)), sent);
  EXPECT_EQ(fetch(Wire().i32(0).record(sent + "!")), untouched);
  EXPECT_EQ(fetch(Wire().i32(0).record(sent.substr(1))), untouched);
  EXPECT_EQ(fetch(Wire().i32(0).record("")), untouched);
  EXPECT_EQ(fetch(Wire().i32(0).i32(0)), untouched) << "a null record";
  EXPECT_EQ(fetch(Wire().i32(-5).text(u"").i32(0).record(sent)), untouched);
}

TEST_F(CallApiTest, NumbersMayBeOfAnyLength) {
  connect();
  service_->answer = Wire().i32(0).i32(4711);
  const std::string number(100'000, '1');
  EXPECT_EQ(binder_make_call(0, number.c_str()), 4711);
  EXPECT_EQ(service_->take()->bytes, requestWith(Wire().i32(0).text(std::u16string(100'000, u'1'))));
}

TEST_F(CallApiTest, ANullStringRaisesTheLogicErrorAndSendsNothing) {
  connect();
  EXPECT_THROW(binder_make_call(0, nullptr), std::logic_error);
  EXPECT_THROW(binder_make_av_call(0, nullptr, 1), std::logic_error);
  EXPECT_THROW(binder_play_mwi(0, nullptr), std::logic_error);
  EXPECT_THROW(binder_edial_with_line(0, nullptr), std::logic_error);
  EXPECT_THROW(binder_dial_number_update_request(nullptr), std::logic_error);
  EXPECT_THROW(binder_complete_dial_confirm(0, nullptr), std::logic_error);
  EXPECT_THROW(binder_complete_cancel(0, nullptr), std::logic_error);
  service_->answer = Wire().i32(0).i32(4711);
  EXPECT_EQ(binder_get_first_valid_line(), 4711) << "and nothing else is lost";
  EXPECT_TRUE(service_->take().has_value());
}

}  // namespace
