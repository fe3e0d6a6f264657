#include <com/qv/IDatabaseService.h>
#include <vesk/vesk_client.h>

#include <atomic>
#include <climits>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "database/DatabaseService.h"

using namespace vesk::test;

namespace {

/** The size of the record in the answer is checked, and a mismatch logged; with the service's
 * result or without one. */
constexpr Expected kAnswerAndRecord{.success = kAnswer, .failed = -1, .absent = -1, .logsFailure = true};
constexpr Expected kLoudlyFetched{.success = 0, .failed = -1, .absent = -1, .logsFailure = true};
/** The size of the record that was sent is checked, after the call. */
constexpr Expected kSizeChecked{kAnswer, -1, -1, Expected::kNone, Expected::kSentAndRefused};

const MethodKinds kMethods{
#define METHOD(code, name, ...) METHOD_KINDS(IDatabaseService, code, name)
#include <com/qv/DatabaseService.def>
#undef METHOD
};

const std::vector<ApiGroup> kGroups{
    group(kValue, ROW(binder_phonebook_request, 9), ROW(binder_phonebook_part_of_group_request, 10),
          ROW(binder_phonebook_common_request, 11), ROW(binder_get_memo_num, 39),
          ROW(binder_add_memo, 42, 268), ROW(binder_request_bt_phonebook_data, 46),
          ROW(binder_open_xml_phonebook, 48), ROW(binder_request_xml_phonebook_data, 49),
          ROW(binder_open_ldap_phonebook, 52), ROW(binder_request_ldap_phonebook_data, 53),
          ROW(binder_ldap_contact_search_request, 55), ROW(binder_door_access_init, 56),
          ROW(binder_door_access_data_request, 57), ROW(binder_set_door_access_info, 59, 376)),
    group(kSizeChecked, ROW(binder_phonebook_add_new_group, 16, 200),
          ROW(binder_phonebook_update_group, 17, 200), ROW(binder_phonebook_contact_create, 21, 4492),
          ROW(binder_phonebook_contact_update, 22, 4492), ROW(binder_phonebook_contact_add_blacklist, 24, 56),
          ROW(binder_phonebook_contact_add_whitelist, 25, 60),
          ROW(binder_phonebook_contact_set_blacklist, 28, 56),
          ROW(binder_phonebook_contact_set_whitelist, 29, 60), ROW(binder_phonebook_db_request, 34, 4544)),
    group(kLoudlyFetched, ROW(binder_get_phonebook_groupinfo, 13, 200),
          ROW(binder_phonebook_image_request, 35, 392)),
    group(kAnswerAndRecord, ROW(binder_phonebook_contact_retrieve, 19, 4492).with({0, 1}),
          ROW(binder_phonebook_contact_get_whitelist, 26, 60),
          ROW(binder_phonebook_contact_get_blacklist, 27, 56), ROW(binder_get_clog_info_by_id, 37, 280),
          ROW(binder_get_memo_info_by_index, 44, 268).with({0}),
          ROW(binder_get_bt_phonebook_contact_by_id, 47, 4492),
          ROW(binder_get_xml_phonebook_contact_by_index, 50, 4492),
          ROW(binder_get_xml_phonebook_search_contact_by_index, 51, 4492).refused(),
          ROW(binder_get_ldap_phonebook_contact_by_index, 54, 4492).with({0}),
          ROW(binder_get_door_access_by_id, 58, 376)),
    group(kFetched, ROW(binderCheckDoorAccessInfo, 63, 376)),
    group(kZeroUnlessAnswered, ROW(binder_get_sms_count, 1)),
    group(kNothing, ROW(binder_get_vsms_count, 8, 8), ROW(binder_sms_info_request, 2),
          ROW(binder_store_sms_to_draft, 4), ROW(binder_set_sms_read_done, 5), ROW(binder_delete_sms, 6),
          ROW(binder_delete_sms_all, 7), ROW(binder_black_white_list_request, 36),
          ROW(binder_memo_info_request, 43), ROW(binder_check_memo_per_minute, 45)),
    group(kValue, ROW(binder_send_sms, 3).refused(),
          ROW(binder_phonebook_rm_contact_from_group, 14).with({4, 2}),
          ROW(binder_phonebook_add_contact_to_group, 15), ROW(binder_phonebook_delete_group, 18),
          ROW(binder_phonebook_contact_delete, 20).with({0, 4}),
          ROW(binder_phonebook_contact_delete_blacklist, 30),
          ROW(binder_phonebook_contact_delete_whitelist, 31),
          ROW(binder_phonebook_contact_delete_all_blacklist, 32),
          ROW(binder_phonebook_contact_delete_all_whitelist, 33), ROW(binder_phonebook_contact_search, 23),
          ROW(binder_clog_delete, 38), ROW(binder_set_memo_info, 40, 268), ROW(binder_del_memo, 41),
          ROW(binder_del_door_access_by_id, 61), ROW(binder_add_door_access, 60, 376),
          ROW(binder_del_all_door_access, 62)),
};

std::atomic<int> deaths;

class DatabaseApiTest : public ApiTest {
 protected:
  DatabaseApiTest()
      : ApiTest("com.qv.DatabaseService", u"com.qv.IDatabaseService", "DatabaseClient", kMethods, kGroups) {
    deaths = 0;
  }
  /** Ends the connection, for the next test. */
  ~DatabaseApiTest() override { die(); }

  void connect() {
    connectWith([] { return connect_database_service([] { ++deaths; }); });
  }
};

TEST_F(DatabaseApiTest, EveryFunctionKeepsToItsRow) {
  expectNothingWithoutConnection();
  connect();
  expectCallsAndAnswers(62);
  expectNullPointers();
  expectFailures();
  expectDeathEndsCallAndConnection();
  EXPECT_EQ(deaths, 1);
}

TEST_F(DatabaseApiTest, SimulatedDeviceServesEveryFunction) {
  const android::sp<sim::DatabaseService> device = new sim::DatabaseService(openStore());
  std::string error;
  ASSERT_TRUE(device->prepare(&error)) << error;
  device->logCall({});
  expectServedBy(device, [] { return connect_database_service(nullptr); });
}

TEST_F(DatabaseApiTest, GroupsAreAcceptedAtTheirExactNumberOnly) {
  constexpr int kWrapsIn32Bits = 0x40000000;
  const Wire failure = Wire().i32(-5).text(u"").i32(0);
  const auto groups = [](size_t size) { return Wire(kOk).i32(7).record(pattern(size)); };
  const struct {
    int count;
    Wire answer;
    int result;
    size_t copied;
    bool logs;
  } rows[] = {
      {3, groups(12), 7, 12, false},
      {3, groups(3), -1, 0, true},
      {3, failure, -1, 0, true},
      {1, groups(4), 7, 4, false},
      {0, groups(0), 7, 0, false},
      {0, groups(1), -1, 0, true},
      {0, groups(4), -1, 0, true},
      {0, failure, -1, 0, false},
      {-1, groups(0), -1, 0, true},
      {-1, groups(4), -1, 0, true},
      {-1, failure, -1, 0, true},
      {INT_MIN, groups(0), -1, 0, true},
      {INT_MAX, groups(0), -1, 0, true},
      {kWrapsIn32Bits, groups(0), -1, 0, true},
      {kWrapsIn32Bits + 1, groups(4), -1, 0, true},
  };
  connect();
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.count << " groups, result " << row.result);
    service_->answer(row.answer);
    out_ = kUntouched;
    EXPECT_EQ(binder_phonebook_get_contact_groupid(1, row.count, out_.data()), row.result);
    EXPECT_EQ(out_, pattern(row.copied) + kUntouched.substr(row.copied));
    EXPECT_EQ(log_.take(), sizeErrors("binder_phonebook_get_contact_groupid", row.logs ? 1 : 0));
  }
  service_->answer(groups(0));
  EXPECT_EQ(binder_phonebook_get_contact_groupid(1, 0, nullptr), 7);
}

TEST_F(DatabaseApiTest, RecordIsCopiedDespiteAResultOfMinusOne) {
  connect();
  const std::string contact = pattern(4492);
  answer(Wire().i32(-1).record(contact));
  EXPECT_EQ(binder_phonebook_contact_retrieve(1, 2, out_.data()), -1);
  EXPECT_EQ(out_.substr(0, contact.size()), contact);
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

}  // namespace
