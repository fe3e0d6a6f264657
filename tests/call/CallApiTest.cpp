#include <vesk/vesk_client.h>

#include <climits>
#include <stdexcept>

#include "ApiTest.h"
#include "CallCallbackList.h"
#include "call/CallService.h"

using namespace vesk::test;

namespace {

constexpr uint32_t kRegisterCallEventListener = 34;
constexpr size_t kFlatBinderSize = 24;

constexpr Expected kSnapshotInfo{.size = 256};

const char kAreaA[] = "A\0area of size\xff";
const char kAreaB[] = "\0B area of size";
static_assert(sizeof(kAreaA) >= VESK_VIDEO_AREA_SIZE && sizeof(kAreaB) >= VESK_VIDEO_AREA_SIZE);
const int kMembers[] = {1, 2, -1, INT_MAX};

/** In an order in which a phone can do all that: talking on channel 1, and called on channel 2. */
const ApiRow kRows[] = {
    API_ROW(binder_headset_answer_call(), 4, Wire(), kNothing),
    API_ROW(binder_set_call_hold_status(2, true), 2, Wire().i32(2).i32(1), kNothing),
    API_ROW(binder_set_call_hold_status(2, false), 2, Wire().i32(2).i32(0), kNothing),
    API_ROW(binder_add_conference_members(kMembers, 4), 5, Wire().i32(4).i32(1).i32(2).i32(-1).i32(INT_MAX),
            kNothing, kRefused),
    API_ROW(binder_add_conference_members(nullptr, 0), 5, Wire().i32(0), kNothing, kRefused),
    API_ROW(binder_add_conference_members(kMembers, INT_MIN), 5, Wire().i32(0), kNothing, kRefused),
    API_ROW(binder_add_conference_members(kMembers, 2), 5, Wire().i32(2).i32(1).i32(2), kNothing),
    API_ROW(binder_hold_conference_member(2), 7, Wire().i32(2), kNothing),
    API_ROW(binder_resume_conference_member(2), 8, Wire().i32(2), kNothing),
    API_ROW(binder_mute_conference_member(2, true), 9, Wire().i32(2).i32(1), kNothing),
    API_ROW(binder_mute_all_conference_member(1, false), 10, Wire().i32(1).i32(0), kNothing),
    API_ROW(binder_remove_conference_member(2), 6, Wire().i32(2), kNothing),
    API_ROW(binder_set_current_call(1), 24, Wire().i32(1), kNothing),
    API_ROW(binder_switch_call_muted_state(), 25, Wire(), kNothing),
    API_ROW(binder_set_video_display_area(1, kAreaA, kAreaB), 11,
            Wire().i32(1).record({kAreaA, 16}).record({kAreaB, 16}), kNothing),
    API_ROW(binder_set_video_stream_area(12, -12), 12, Wire().i32(12).i32(-12), kNothing),
    API_ROW(binder_video_snapshot(1), 35, Wire().i32(1), kNothing),
    API_ROW(binder_get_snapshot_nums(1), 37, Wire().i32(1), kValue),
    API_ROW(binder_snapshot_data_request(1), 38, Wire().i32(1), kNothing),
    API_ROW(binder_get_snapshot_info_by_index(1, 0, out), 39, Wire().i32(1).i32(0), kSnapshotInfo),
    API_ROW(binder_delete_snapshot(1), 36, Wire().i32(1), kNothing),
    API_ROW(binder_dial_selection_request(13), 13, Wire().i32(13), kNothing),
    API_ROW(binder_get_first_valid_line(), 20, Wire(), kValue),
    API_ROW(binder_play_tone_request(21), 21, Wire().i32(21), kNothing),
    API_ROW(binder_stop_tone_request(), 22, Wire(), kNothing),
    API_ROW(binder_key_multiplexing(true), 26, Wire().i32(1), kNothing),
    API_ROW(binder_ctrl_led_dooropen(), 40, Wire(), kNothing),
    API_ROW(binder_set_dooropen_type(41), 41, Wire().i32(41), kNothing),
    API_ROW(binder_get_call_have_ivr(), 42, Wire(), kFlag),
    API_ROW(binder_edial_with_line(1, "\xC3\xA4\xF0\x9F\x93\x9E"), 17,
            Wire().i32(1).text(u"\u00e4\U0001F4DE"), kValue),
    API_ROW(binder_edial_change_line(2), 18, Wire().i32(2), kValue),
    API_ROW(binder_dial_number_update_request("23"), 23, Wire().text(u"23"), kNothing),
    API_ROW(binder_edial_make_call(), 19, Wire(), kValue),
    API_ROW(binder_make_call(2, "+49 (0) 30"), 14, Wire().i32(2).text(u"+49 (0) 30"), kValue),
    API_ROW(binder_make_call(-1, ""), 14, Wire().i32(-1).text(u""), kValue, kRefused),
    API_ROW(binder_make_av_call(1, "1", 2), 15, Wire().i32(1).text(u"1").i32(1), kValue),
    API_ROW(binder_make_av_call(1, "1", 0), 15, Wire().i32(1).text(u"1").i32(0), kValue),
    API_ROW(binder_play_mwi(1, "*97"), 16, Wire().i32(1).text(u"*97"), kValue),
    API_ROW(binder_create_new_call(2), 27, Wire().i32(2), kNothing),
    API_ROW(binder_redial_call(), 1, Wire(), kNothing),
    API_ROW(binder_close_call(INT_MIN), 3, Wire().i32(INT_MIN), kNothing, kRefused),
    API_ROW(binder_close_call(1), 3, Wire().i32(1), kNothing),
    API_ROW(binder_call_completion(), 28, Wire(), kNothing),
    API_ROW(binder_complete_dial_confirm(1, "#"), 32, Wire().i32(1).text(u"#"), kNothing, kRefused),
    API_ROW(binder_complete_cancel(1, "221"), 33, Wire().i32(1).text(u"221"), kNothing),
    API_ROW(binder_call_auto_redial(), 29, Wire(), kNothing),
    API_ROW(binder_auto_redial_make_call(), 30, Wire(), kNothing, kRefused),
    API_ROW(binder_auto_redial_cancel(), 31, Wire(), kNothing),
};

class CallApiTest : public ApiTest {
 protected:
  CallApiTest() : ApiTest("com.qv.CallService", u"com.qv.ICallService", "CallClient", kRows) {}
  /** Ends the connection, for the next test. */
  ~CallApiTest() override { die(); }

  void connect() {
    ScriptedTest::connectWith([] { return connectCallService(kNoCallbacks); });
    log_.take();
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, kRegisterCallEventListener);
    EXPECT_EQ(request->bytes.size(), requestWith(Wire()).size() + kFlatBinderSize);
    EXPECT_TRUE(request->bytes.starts_with(requestWith(Wire())));
  }
};

TEST_F(CallApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  EXPECT_EQ(binder_make_call(0, nullptr), -1) << "the argument is not looked at";
  connect();
  expectCallsAndAnswers(41);
  expectFailures();
  expectDeathEndsCallAndConnection();
}

TEST_F(CallApiTest, TheSimulatedDeviceServesEachOfThem) {
  const android::sp<sim::CallService> device = new sim::CallService(1, [](sim::Time, const sim::Event&) {});
  device->phone().use([](sim::Phone& phone) {
    phone.makeCall(1, "221");
    phone.advanceTo(phone.now() + std::chrono::seconds(1));  // Engaged, which offers completion.
    phone.incomingCall(1, "240");
    phone.headsetAnswerCall();
    phone.incomingCall(1, "200");
  });
  expectServedBy(device, [] { return connectCallService(kNoCallbacks); });
  device->stopEvents(std::chrono::milliseconds(0));
}

TEST_F(CallApiTest, NumbersMayBeOfAnyLength) {
  connect();
  answer(Wire().i32(kAnswer));
  const std::string number(100'000, '1');
  EXPECT_EQ(binder_make_call(0, number.c_str()), kAnswer);
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
  answer(Wire().i32(kAnswer));
  EXPECT_EQ(binder_get_first_valid_line(), kAnswer) << "and nothing else is lost";
  EXPECT_TRUE(service_->take().has_value()) << "the only request";
}

}  // namespace
