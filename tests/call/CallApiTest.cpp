#include <com/qv/ICallService.h>
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

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(ICallService, code, name)
#include <com/qv/CallService.def>
#undef METHOD
};

const std::vector<ApiGroup> kGroups{
    group(kNothing, ROW(binder_headset_answer_call, 4), ROW(binder_set_call_hold_status, 2).with({2}),
          ROW(binder_add_conference_members, 5), ROW(binder_hold_conference_member, 7).with({2}),
          ROW(binder_resume_conference_member, 8).with({2}), ROW(binder_mute_conference_member, 9).with({2}),
          ROW(binder_mute_all_conference_member, 10), ROW(binder_remove_conference_member, 6).with({2}),
          ROW(binder_set_current_call, 24), ROW(binder_switch_call_muted_state, 25),
          ROW(binder_set_video_display_area, 11, 16, 16), ROW(binder_set_video_stream_area, 12),
          ROW(binder_video_snapshot, 35)),
    group(kValue, ROW(binder_get_snapshot_nums, 37)),
    group(kNothing, ROW(binder_snapshot_data_request, 38)),
    group(kNothing, ROW(binder_get_snapshot_info_by_index, 39, 256).with({1, 0})),
    group(kNothing, ROW(binder_delete_snapshot, 36), ROW(binder_dial_selection_request, 13)),
    group(kValue, ROW(binder_get_first_valid_line, 20)),
    group(kNothing, ROW(binder_play_tone_request, 21), ROW(binder_stop_tone_request, 22),
          ROW(binder_key_multiplexing, 26), ROW(binder_ctrl_led_dooropen, 40),
          ROW(binder_set_dooropen_type, 41)),
    group(kFlag, ROW(binder_get_call_have_ivr, 42)),
    group(kValue, ROW(binder_edial_with_line, 17), ROW(binder_edial_change_line, 18)),
    group(kNothing, ROW(binder_dial_number_update_request, 23)),
    group(kValue, ROW(binder_edial_make_call, 19), ROW(binder_make_call, 14), ROW(binder_make_av_call, 15),
          ROW(binder_play_mwi, 16)),
    group(kNothing, ROW(binder_create_new_call, 27), ROW(binder_redial_call, 1), ROW(binder_close_call, 3),
          ROW(binder_call_completion, 28), ROW(binder_complete_dial_confirm, 32).refused(),
          ROW(binder_complete_cancel, 33).refused(), ROW(binder_call_auto_redial, 29),
          ROW(binder_auto_redial_make_call, 30).refused(), ROW(binder_auto_redial_cancel, 31)),
};

class CallApiTest : public ApiTest {
 protected:
  CallApiTest() : ApiTest("com.qv.CallService", u"com.qv.ICallService", "CallClient", kMethods, kGroups) {}
  /** Ends the connection, for the next test. */
  ~CallApiTest() override { die(); }

  void connect() {
    ScriptedTest::connectWith([] { return connectCallService(kNoCallbacks); });
    EXPECT_EQ(log_.take(),
              (std::vector<LogLine>{{ANDROID_LOG_INFO, "CallClient", "Connect com.qv.CallService done. "},
                                    {ANDROID_LOG_INFO, "CallClient", "CallEventListener is registed."}}));
    const auto request = service_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, kRegisterCallEventListener);
    EXPECT_EQ(request->bytes.size(), requestWith(Wire()).size() + kFlatBinderSize);
    EXPECT_TRUE(request->bytes.starts_with(requestWith(Wire())));
  }
};

TEST_F(CallApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connect();
  expectCallsAndAnswers(41);
  expectNullPointers();
  expectFailures();
  expectDeathEndsCallAndConnection();
}

TEST_F(CallApiTest, SimulatedDeviceServesEveryFunction) {
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

TEST_F(CallApiTest, DroppedOutValueIsPreset) {
  class Service : public com::qv::DefaultCallService {
   public:
    android::binder::Status requestSnapShotData(int32_t, int32_t* result) override {
      preset = *result;
      return {};
    }
    int32_t preset = 0;
  };
  const android::sp<Service> service = new Service;
  ASSERT_EQ(android::defaultServiceManager()->addService(android::String16(name_), service), android::OK);
  ASSERT_TRUE(connectCallService(kNoCallbacks));
  binder_snapshot_data_request(1);
  EXPECT_EQ(service->preset, -1);
}

TEST_F(CallApiTest, NumbersMayBeOfAnyLength) {
  connect();
  answer(Wire().i32(kAnswer));
  const std::string number(100'000, '1');
  EXPECT_EQ(binder_make_call(0, number.c_str()), kAnswer);
  EXPECT_EQ(service_->take()->bytes, requestWith(Wire().i32(0).text(std::u16string(100'000, u'1'))));
}

}  // namespace
