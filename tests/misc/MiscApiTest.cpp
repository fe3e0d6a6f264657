#include <com/qv/IMiscService.h>
#include <vesk/vesk_client.h>

#include <climits>
#include <stdexcept>

#include "ApiTest.h"
#include "misc/MiscRecords.h"
#include "misc/MiscService.h"

using namespace vesk::test;

namespace {

using Elements = std::vector<std::string>;

void append(void* context, const void* element, size_t size) {
  static_cast<Elements*>(context)->emplace_back(static_cast<const char*>(element), size);
}

Elements elements;
const vesk_array kList{&elements, nullptr, append};

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(IMiscService, code, name)
#include <com/qv/MiscService.def>
#undef METHOD
};

const std::vector<ApiGroup> kGroups{
    group(kDone, ROW(binder_local_ate_start, 1)),
    group(kFetched, ROW(binder_get_ate_info_config, 3, 160)),
    group(kNothing, ROW(binder_switch_dsskey_page, 6).with({0, 1}), ROW(binder_backlight_always_active, 7),
          ROW(binder_start_backlight_presetting, 8), ROW(binder_preset_backlight_level, 9),
          ROW(binder_stop_backlight_presetting, 10)),
    group(integer(3, 3), ROW(binder_get_udisk_status, 11)),
    group(kFetched, ROW(binder_get_udisk_capacity, 12, 104)),
    group(kValue, ROW(binder_play_rec_file_start, 14).refused()),
    group(kNothing, ROW(binder_play_rec_file_pause, 16).refused(),
          ROW(binder_play_rec_file_resume, 17).refused(), ROW(binder_play_rec_file_stop, 15)),
    group(kValue, ROW(binder_get_play_rec_file_state, 18)),
    group(kDone, ROW(binder_ate_touch_screen_result, 19).refused(), ROW(binder_local_ate_stop, 2)),
    group(kNothing, ROW(binder_notify_lcd_screen_shot_ready, 20)),
    group(kFetched, ROW(binder_get_mqtt_multicast_info, 21, 676)),
    group(kFlag, ROW(binder_has_mqtt_multicast_info, 22)),
};

class MiscApiTest : public ApiTest {
 protected:
  MiscApiTest() : ApiTest("com.qv.MiscService", u"com.qv.IMiscService", "MiscClient", kMethods, kGroups) {
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
  EXPECT_EQ(binder_get_udisk_record_files(reinterpret_cast<const vesk_array*>(8)), -1);
  connect();
  expectCallsAndAnswers(19);
  expectNullPointers();
  expectFailures();
  EXPECT_EQ(elements, Elements());
  expectDeathEndsCallAndConnection();
}

TEST_F(MiscApiTest, SimulatedDeviceServesEveryFunction) {
  expectServedBy(new sim::MiscService(1, [](const std::string&) {}), [] {
    const vesk_misc_notice_callback ignore = [] {};
    return connect_misc_service(
        {ignore, ignore, [](const char*) {}, ignore, ignore, ignore, ignore, {}, ignore, [](int) {}, ignore},
        nullptr);
  });
  EXPECT_EQ(binder_get_udisk_record_files(&kList), 0);
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

TEST_F(MiscApiTest, RecordFilesOfAnotherSizeAreSkipped) {
  connect();
  const std::string first(64, 'a');
  const std::string last = std::string(63, '\0') + "z";
  answer(Wire().i32(5).record(first).record(first + "b").record("").record(first.substr(1)).record(last));
  elements = {"there before"};
  EXPECT_EQ(binder_get_udisk_record_files(&kList), 0);
  EXPECT_EQ(elements, (Elements{"there before", first, last}));
}

TEST_F(MiscApiTest, MulticastActionIsCutToFit) {
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

TEST_F(MiscApiTest, FailedFetchOfTheActionEmptiesTheDestination) {
  expectNoAction();
  connect();
  answer(Wire().record(std::string(675, 'x')));
  expectNoAction();
  answerNothing();
  expectNoAction();
}

TEST_F(MiscApiTest, MissingDestinationIsAFailureWithoutACall) {
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

}  // namespace
