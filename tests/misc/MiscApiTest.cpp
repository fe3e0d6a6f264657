#include <gtest/gtest.h>
#include <vesk/misc.h>

#include <climits>
#include <functional>
#include <stdexcept>

#include "LogCapture.h"
#include "RecordingService.h"

using android::sp;
using vesk::test::LogCapture;
using vesk::test::LogLine;
using vesk::test::RecordingService;
using vesk::test::Wire;

namespace {

constexpr const char* kName = "com.qv.MiscService";
const Wire kOk = Wire().i32(0);
const Wire kException = Wire().i32(-5).text(u"not now").i32(0);
constexpr size_t kRoom = 700;
const std::string kUntouched(kRoom, '#');

/** Where all functions put what they have to give. */
std::string buffer = kUntouched;

void append(void* context, const void* element, size_t size) {
  static_cast<std::vector<std::string>*>(context)->emplace_back(static_cast<const char*>(element), size);
}

int getRecordFiles() {
  std::vector<std::string> files;
  const vesk_array list{&files, nullptr, append};
  return binder_get_udisk_record_files(&list);
}

/** A function that returns nothing, as one that gives 0. */
auto quiet(void (*function)()) {
  return [=] {
    function();
    return 0;
  };
}

struct Row {
  const char* name;
  std::function<int()> call;
  uint32_t code;
  Wire arguments;
  Wire reply;
  int result;
  int failed;
  int absent;
};

const Row kRows[] = {
    {"local_ate_start", [] { return binder_local_ate_start(-3); }, 1, Wire().i32(-3), Wire(), 0, 0, -1},
    {"local_ate_stop", [] { return binder_local_ate_stop(4); }, 2, Wire().i32(4), Wire(), 0, 0, -1},
    {"get_ate_info_config", [] { return binder_get_ate_info_config(buffer.data()); }, 3, Wire(),
     Wire().record(std::string(160, 'r')), 0, -1, -1},
    {"switch_dsskey_page", quiet([] { binder_switch_dsskey_page(INT_MIN, 7); }), 6,
     Wire().i32(INT_MIN).i32(7), Wire(), 0, 0, 0},
    {"backlight_always_active(5)", quiet([] { binder_backlight_always_active(5); }), 7, Wire().i32(1), Wire(),
     0, 0, 0},
    {"backlight_always_active(0)", quiet([] { binder_backlight_always_active(0); }), 7, Wire().i32(0), Wire(),
     0, 0, 0},
    {"start_backlight_presetting", quiet(binder_start_backlight_presetting), 8, Wire(), Wire(), 0, 0, 0},
    {"preset_backlight_level", quiet([] { binder_preset_backlight_level(9); }), 9, Wire().i32(9), Wire(), 0,
     0, 0},
    {"stop_backlight_presetting", quiet(binder_stop_backlight_presetting), 10, Wire(), Wire(), 0, 0, 0},
    {"get_udisk_status", binder_get_udisk_status, 11, Wire(), Wire().i32(1), 1, 3, 3},
    {"get_udisk_capacity", [] { return binder_get_udisk_capacity(buffer.data()); }, 12, Wire(),
     Wire().record(std::string(104, 'r')), 0, -1, -1},
    {"get_udisk_record_files", getRecordFiles, 13, Wire(), Wire().i32(0), 0, 0, -1},
    {"play_rec_file_start", [] { return binder_play_rec_file_start("a\xC3\xA4.wav"); }, 14,
     Wire().text(u"a\u00e4.wav"), Wire().i32(17), 17, -1, -1},
    {"play_rec_file_stop", quiet(binder_play_rec_file_stop), 15, Wire(), Wire(), 0, 0, 0},
    {"play_rec_file_pause", quiet(binder_play_rec_file_pause), 16, Wire(), Wire(), 0, 0, 0},
    {"play_rec_file_resume", quiet(binder_play_rec_file_resume), 17, Wire(), Wire(), 0, 0, 0},
    {"get_play_rec_file_state", binder_get_play_rec_file_state, 18, Wire(), Wire().i32(2), 2, -1, -1},
    {"ate_touch_screen_result", [] { return binder_ate_touch_screen_result(1, -2); }, 19,
     Wire().i32(1).i32(-2), Wire(), 0, 0, -1},
    {"notify_lcd_screen_shot_ready", quiet(binder_notify_lcd_screen_shot_ready), 20, Wire(), Wire(), 0, 0, 0},
    {"get_mqtt_multicast_info", [] { return binder_get_mqtt_multicast_info(buffer.data()); }, 21, Wire(),
     Wire().record(std::string(676, 'r')), 0, -1, -1},
    {"has_mqtt_multicast_info", binder_has_mqtt_multicast_info, 22, Wire(), Wire().i32(1), 1, 0, 0},
};

class MiscApiTest : public testing::Test {
 protected:
  MiscApiTest() {
    remote_->registerAs(kName);
    EXPECT_TRUE(connect_misc_service({}, nullptr));
    remote_->take();
    buffer = kUntouched;
  }
  ~MiscApiTest() override { remote_->die(); }

  void answer(const Wire& reply) { remote_->answer = Wire(kOk).append(reply); }
  void answerInfo(std::string_view info) { answer(Wire().record(info)); }

  LogCapture log_;
  const sp<RecordingService> remote_ = new RecordingService;
};

TEST_F(MiscApiTest, EveryFunctionMakesItsCallAndGivesTheAnswer) {
  log_.take();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    answer(row.reply);
    EXPECT_EQ(row.call(), row.result);
    const auto request = remote_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, row.code);
    EXPECT_EQ(request->flags, 0u);
    EXPECT_EQ(request->bytes, Wire().text(u"com.qv.IMiscService").append(row.arguments).bytes());
  }
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

TEST_F(MiscApiTest, AFailedCallGivesItsValueAndWritesNothing) {
  log_.take();
  const auto expectFailures = [&] {
    for (const Row& row : kRows) {
      SCOPED_TRACE(row.name);
      EXPECT_EQ(row.call(), row.failed);
      EXPECT_TRUE(remote_->take().has_value());
    }
  };
  remote_->answer = kException;
  expectFailures();
  remote_->status = android::DEAD_OBJECT;
  expectFailures();
  EXPECT_EQ(buffer, kUntouched);
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

TEST_F(MiscApiTest, WithoutAClientNothingIsCalled) {
  remote_->die();
  log_.take();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.call(), row.absent);
  }
  EXPECT_EQ(binder_play_rec_file_start(nullptr), -1);
  EXPECT_FALSE(remote_->take().has_value());
  EXPECT_EQ(buffer, kUntouched);
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

TEST_F(MiscApiTest, ARecordIsTakenOnlyAtItsExactSize) {
  const struct {
    int (*get)(void* out);
    size_t size;
  } rows[] = {
      {binder_get_ate_info_config, 160},
      {binder_get_udisk_capacity, 104},
      {binder_get_mqtt_multicast_info, 676},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    buffer = kUntouched;
    for (const size_t size : {size_t{0}, row.size - 1, row.size + 1}) {
      answerInfo(std::string(size, 'r'));
      EXPECT_EQ(row.get(buffer.data()), -1);
      EXPECT_EQ(buffer, kUntouched);
    }
    const std::string record = std::string(1, '\0') + std::string(row.size - 2, 'r') + '\0';
    answerInfo(record);
    EXPECT_EQ(row.get(buffer.data()), 0);
    EXPECT_EQ(buffer, record + kUntouched.substr(row.size));
  }
}

TEST_F(MiscApiTest, RecordFilesOfAnotherSizeAreSkipped) {
  const std::string first(64, 'a');
  const std::string last = std::string(63, '\0') + "z";
  answer(Wire()
             .i32(5)
             .record(first)
             .record(std::string(63, 'b'))
             .record("")
             .record(std::string(65, 'c'))
             .record(last));
  std::vector<std::string> files{"there before"};
  const vesk_array list{&files, nullptr, append};
  EXPECT_EQ(binder_get_udisk_record_files(&list), 0);
  EXPECT_EQ(files, (std::vector<std::string>{"there before", first, last}));
}

TEST_F(MiscApiTest, AListThatCannotTakeAnythingIsRefused) {
  const vesk_array list{};
  EXPECT_EQ(binder_get_udisk_record_files(nullptr), -1);
  EXPECT_EQ(binder_get_udisk_record_files(&list), -1);
  EXPECT_FALSE(remote_->take().has_value());
}

TEST_F(MiscApiTest, TheMulticastActionIsCutToFit) {
  std::string info = "multicast" + std::string(667, '\0');
  const struct {
    size_t size;
    std::string text;
  } rows[] = {{1, ""},           {4, "mul"},           {9, "multicas"},
              {10, "multicast"}, {kRoom, "multicast"}, {SIZE_MAX, "multicast"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    buffer = kUntouched;
    answerInfo(info);
    EXPECT_EQ(binder_get_mqtt_multicast_action(buffer.data(), row.size), 0);
    EXPECT_EQ(buffer, row.text + '\0' + kUntouched.substr(row.text.size() + 1));
    const auto request = remote_->take();
    ASSERT_TRUE(request.has_value());
    EXPECT_EQ(request->code, 21u);
  }

  info = std::string(676, 'x');
  answerInfo(info);
  EXPECT_EQ(binder_get_mqtt_multicast_action(buffer.data(), kRoom), 0) << "although nothing ends the text";
  EXPECT_STREQ(buffer.c_str(), info.c_str());
}

TEST_F(MiscApiTest, AnActionThatCannotBeFetchedEmptiesTheDestination) {
  const std::string emptied = '\0' + kUntouched.substr(1);
  const auto expectEmptied = [&] {
    buffer = kUntouched;
    EXPECT_EQ(binder_get_mqtt_multicast_action(buffer.data(), 4), -1);
    EXPECT_EQ(buffer, emptied);
  };
  answerInfo(std::string(675, 'x'));
  expectEmptied();
  remote_->answer = kException;
  expectEmptied();
  remote_->die();
  expectEmptied();
}

TEST_F(MiscApiTest, NoRoomForMulticastIsAFailureWithoutACall) {
  answerInfo(std::string(676, 'x'));
  EXPECT_EQ(binder_get_mqtt_multicast_info(nullptr), -1);
  EXPECT_EQ(binder_get_mqtt_multicast_action(nullptr, 4), -1);
  EXPECT_EQ(binder_get_mqtt_multicast_action(buffer.data(), 0), -1);
  EXPECT_EQ(buffer, kUntouched);
  EXPECT_FALSE(remote_->take().has_value());
}

TEST_F(MiscApiTest, ANullFileNameRaisesTheLogicError) {
  EXPECT_THROW(binder_play_rec_file_start(nullptr), std::logic_error);
  EXPECT_FALSE(remote_->take().has_value());
}

}  // namespace
