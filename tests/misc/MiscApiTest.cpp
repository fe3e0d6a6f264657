#include <vesk/vesk_client.h>

#include <climits>
#include <stdexcept>

#include "ApiTest.h"
#include "misc/MiscRecords.h"
#include "misc/MiscService.h"

using namespace vesk::test;

namespace {

constexpr Expected kAsked{.success = 0, .failed = 0, .absent = -1};
constexpr Expected kStatus{.value = true, .success = kAnswer, .failed = 3, .absent = 3};

using Elements = std::vector<std::string>;

void append(void* context, const void* element, size_t size) {
  static_cast<Elements*>(context)->emplace_back(static_cast<const char*>(element), size);
}

Elements elements;
const vesk_array kList{&elements, nullptr, append};

const ApiRow kRows[] = {
    API_ROW(binder_local_ate_start(0), 1, Wire().i32(0), kAsked),
    API_ROW(binder_get_ate_info_config(out), 3, Wire(), record(160)),
    API_ROW(binder_switch_dsskey_page(0, 1), 6, Wire().i32(0).i32(1), kNothing),
    API_ROW(binder_backlight_always_active(5), 7, Wire().i32(1), kNothing),
    API_ROW(binder_backlight_always_active(0), 7, Wire().i32(0), kNothing),
    API_ROW(binder_start_backlight_presetting(), 8, Wire(), kNothing),
    API_ROW(binder_preset_backlight_level(9), 9, Wire().i32(9), kNothing),
    API_ROW(binder_stop_backlight_presetting(), 10, Wire(), kNothing),
    API_ROW(binder_get_udisk_status(), 11, Wire(), kStatus),
    API_ROW(binder_get_udisk_capacity(out), 12, Wire(), record(104)),
    API_ROW(binder_get_udisk_record_files(&kList), 13, Wire(), kAsked),
    API_ROW(binder_play_rec_file_start("\xC3\xA4.wav"), 14, Wire().text(u"\u00e4.wav"), kValue, kRefused),
    API_ROW(binder_play_rec_file_start("call-200.wav"), 14, Wire().text(u"call-200.wav"), kValue),
    API_ROW(binder_play_rec_file_pause(), 16, Wire(), kNothing),
    API_ROW(binder_play_rec_file_resume(), 17, Wire(), kNothing),
    API_ROW(binder_play_rec_file_stop(), 15, Wire(), kNothing),
    API_ROW(binder_get_play_rec_file_state(), 18, Wire(), kValue),
    API_ROW(binder_ate_touch_screen_result(1, -19), 19, Wire().i32(1).i32(-19), kAsked, kRefused),
    API_ROW(binder_local_ate_stop(2), 2, Wire().i32(2), kAsked),
    API_ROW(binder_notify_lcd_screen_shot_ready(), 20, Wire(), kNothing),
    API_ROW(binder_get_mqtt_multicast_info(out), 21, Wire(), record(676)),
    API_ROW(binder_has_mqtt_multicast_info(), 22, Wire(), kFlag),
};

class MiscApiTest : public ApiTest {
 protected:
  MiscApiTest() : ApiTest("com.qv.MiscService", u"com.qv.IMiscService", "MiscClient", kRows) {
    elements.clear();
  }
  /** Ends the connection, for the next test. */
  ~MiscApiTest() override { die(); }

  void connect() {
    ScriptedTest::connectWith([] { return connect_misc_service({}, nullptr); });
    log_.take();
    service_->take();
  }

  void expectAction(size_t size, const std::string& action) {
    SCOPED_TRACE(size);
    out_ = kUntouched;
    EXPECT_EQ(binder_get_mqtt_multicast_action(out_.data(), size), 0);
    EXPECT_EQ(out_, action + '\0' + kUntouched.substr(action.size() + 1));
    expectRequest(21, Wire());
  }

  void expectNoAction() {
    out_ = kUntouched;
    EXPECT_EQ(binder_get_mqtt_multicast_action(out_.data(), 4), -1);
    EXPECT_EQ(out_, '\0' + kUntouched.substr(1));
  }
};

TEST_F(MiscApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  EXPECT_EQ(binder_play_rec_file_start(nullptr), -1) << "the argument is not looked at";
  connect();
  expectCallsAndAnswers(20);
  expectFailures();
  EXPECT_EQ(elements, Elements());
  expectDeathEndsCallAndConnection();
}

TEST_F(MiscApiTest, TheSimulatedDeviceServesEachOfThem) {
  expectServedBy(new sim::MiscService(1, [](const std::string&) {}), [] {
    const vesk_misc_notice_callback ignore = [] {};
    return connect_misc_service(
        {ignore, ignore, [](const char*) {}, ignore, ignore, ignore, ignore, {}, ignore, [](int) {}, ignore},
        nullptr);
  });
  EXPECT_EQ(elements.size(), 3u);
  EXPECT_EQ(binder_play_rec_file_start("call-200.wav"), 0);
  EXPECT_EQ(binder_get_play_rec_file_state(), 1);
  binder_play_rec_file_pause();
  EXPECT_EQ(binder_get_play_rec_file_state(), 2);
  EXPECT_EQ(binder_get_udisk_status(), 1);
  sim::UdiskCapacityRecord capacity{};
  EXPECT_EQ(binder_get_udisk_capacity(&capacity), 0);
  EXPECT_EQ(capacity.usedMiB + capacity.freeMiB, capacity.totalMiB);
  EXPECT_EQ(binder_get_mqtt_multicast_action(out_.data(), kBufferSize), 0);
  EXPECT_STREQ(out_.c_str(), "page-all");
}

TEST_F(MiscApiTest, AFailedConnectKeepsTheEarlierConnection) {
  connect();
  failToConnectWith([] { return connect_misc_service({}, nullptr); });
  answer(Wire().i32(kAnswer));
  EXPECT_EQ(binder_get_udisk_status(), kAnswer);
}

TEST_F(MiscApiTest, RecordFilesOfAnotherSizeAreSkipped) {
  connect();
  const std::string first(64, 'a');
  const std::string last = std::string(63, '\0') + "z";
  answer(Wire().i32(5).record(first).record(first + "b").record("").record(first.substr(1)).record(last));
  elements = {"there before"};
  EXPECT_EQ(binder_get_udisk_record_files(&kList), 0);
  EXPECT_EQ(elements, (Elements{"there before", first, last}));
}

TEST_F(MiscApiTest, TheMulticastActionIsCutToFit) {
  connect();
  answer(Wire().record("multicast" + std::string(667, '\0')));
  expectAction(1, "");
  expectAction(4, "mul");
  expectAction(9, "multicas");
  expectAction(10, "multicast");
  expectAction(SIZE_MAX, "multicast");
  const std::string endless(676, 'x');
  answer(Wire().record(endless));
  expectAction(kBufferSize, endless);
}

TEST_F(MiscApiTest, AnActionThatCannotBeFetchedEmptiesTheDestination) {
  expectNoAction();
  connect();
  answer(Wire().record(std::string(675, 'x')));
  expectNoAction();
  answerNothing();
  expectNoAction();
}

TEST_F(MiscApiTest, NowhereToPutTheAnswerIsAFailureWithoutACall) {
  connect();
  answer(Wire().record(std::string(676, 'x')));
  const vesk_array unusable{};
  EXPECT_EQ(binder_get_mqtt_multicast_info(nullptr), -1);
  EXPECT_EQ(binder_get_mqtt_multicast_action(nullptr, 4), -1);
  EXPECT_EQ(binder_get_mqtt_multicast_action(out_.data(), 0), -1);
  EXPECT_EQ(binder_get_udisk_record_files(nullptr), -1);
  EXPECT_EQ(binder_get_udisk_record_files(&unusable), -1);
  EXPECT_EQ(out_, kUntouched);
  EXPECT_FALSE(service_->take().has_value());
}

TEST_F(MiscApiTest, ANullFileNameRaisesTheLogicError) {
  connect();
  EXPECT_THROW(binder_play_rec_file_start(nullptr), std::logic_error);
  EXPECT_FALSE(service_->take().has_value());
}

}  // namespace
