#include <vesk/vesk_client.h>

#include <atomic>
#include <climits>
#include <stdexcept>

#include "ApiTest.h"
#include "ServiceTesting.h"
#include "database/DatabaseService.h"

using namespace vesk::test;

namespace {

constexpr Expected kCounters{.size = 8};

/** A record whose size is checked aloud, alone or with the service's answer. */
constexpr Expected checkedRecord(int size) {
  return {.size = size, .success = 0, .failed = -1, .absent = -1, .logsFailure = true};
}
constexpr Expected answerAndRecord(int size) {
  return {.value = true, .size = size, .success = kAnswer, .failed = -1, .absent = -1, .logsFailure = true};
}

const ApiRow kRows[] = {
    API_ROW(binder_get_sms_count(1), 1, Wire().i32(1), kZeroUnlessAnswered),
    API_ROW(binder_sms_info_request(1), 2, Wire().i32(1), kNothing),
    API_ROW(binder_send_sms(1, "200", "\xC3\xA4\xF0\x9F\x93\x9E"), 3,
            Wire().i32(1).text(u"200").text(u"\u00e4\U0001F4DE"), kValue),
    API_ROW(binder_store_sms_to_draft("4"), 4, Wire().text(u"4"), kNothing),
    API_ROW(binder_set_sms_read_done(1), 5, Wire().i32(1), kNothing),
    API_ROW(binder_delete_sms(1), 6, Wire().i32(1), kNothing),
    API_ROW(binder_delete_sms_all(4), 7, Wire().i32(4), kNothing),
    API_ROW(binder_get_vsms_count(1, out), 8, Wire().i32(1), kCounters),
    API_ROW(binder_phonebook_request(2, 0), 9, Wire().i32(2).i32(0), kValue),
    API_ROW(binder_phonebook_part_of_group_request(1), 10, Wire().i32(1), kValue),
    API_ROW(binder_phonebook_common_request(3), 11, Wire().i32(3), kValue),
    API_ROW(binder_phonebook_get_contact_groupid(1, 3, out), 12, Wire().i32(1).i32(3), answerAndRecord(12)),
    API_ROW(binder_get_phonebook_groupinfo(0, 1, out), 13, Wire().i32(0).i32(1), checkedRecord(200)),
    API_ROW(binder_phonebook_rm_contact_from_group(4, 2), 14, Wire().i32(4).i32(2), kValue),
    API_ROW(binder_phonebook_add_contact_to_group(1, 2), 15, Wire().i32(1).i32(2), kValue),
    API_ROW(binder_phonebook_add_new_group(kSent), 16, sent(200), kValue),
    API_ROW(binder_phonebook_update_group(kSent), 17, sent(200), kValue),
    API_ROW(binder_phonebook_delete_group(2), 18, Wire().i32(2), kValue),
    API_ROW(binder_phonebook_contact_retrieve(0, 1, out), 19, Wire().i32(0).i32(1), answerAndRecord(4492)),
    API_ROW(binder_phonebook_contact_delete(0, 4), 20, Wire().i32(0).i32(4), kValue),
    API_ROW(binder_phonebook_contact_create(1, kSent), 21, Wire().i32(1).append(sent(4492)), kValue),
    API_ROW(binder_phonebook_contact_update(1, kSent), 22, Wire().i32(1).append(sent(4492)), kValue),
    API_ROW(binder_phonebook_contact_search(0, "Ada"), 23, Wire().i32(0).text(u"Ada"), kValue),
    API_ROW(binder_phonebook_contact_add_blacklist(kSent), 24, sent(56), kValue),
    API_ROW(binder_phonebook_contact_add_whitelist(kSent), 25, sent(60), kValue),
    API_ROW(binder_phonebook_contact_get_whitelist(0, out), 26, Wire().i32(0), answerAndRecord(60)),
    API_ROW(binder_phonebook_contact_get_blacklist(0, out), 27, Wire().i32(0), answerAndRecord(56)),
    API_ROW(binder_phonebook_contact_set_blacklist(kSent), 28, sent(56), kValue),
    API_ROW(binder_phonebook_contact_set_whitelist(kSent), 29, sent(60), kValue),
    API_ROW(binder_phonebook_contact_delete_blacklist(1), 30, Wire().i32(1), kValue),
    API_ROW(binder_phonebook_contact_delete_whitelist(1), 31, Wire().i32(1), kValue),
    API_ROW(binder_phonebook_contact_delete_all_blacklist(), 32, Wire(), kValue),
    API_ROW(binder_phonebook_contact_delete_all_whitelist(), 33, Wire(), kValue),
    API_ROW(binder_phonebook_db_request(kSent), 34, sent(4544), kValue),
    API_ROW(binder_phonebook_image_request(1, out), 35, Wire().i32(1), checkedRecord(392)),
    API_ROW(binder_black_white_list_request(1), 36, Wire().i32(1), kNothing),
    API_ROW(binder_get_clog_info_by_id(1, out), 37, Wire().i32(1), answerAndRecord(280)),
    API_ROW(binder_clog_delete(0, 1), 38, Wire().i32(0).i32(1), kValue),
    API_ROW(binder_get_memo_num(), 39, Wire(), kValue),
    API_ROW(binder_set_memo_info(kSent), 40, sent(268), kValue),
    API_ROW(binder_del_memo(1), 41, Wire().i32(1), kValue),
    API_ROW(binder_add_memo(kSent), 42, sent(268), kValue),
    API_ROW(binder_memo_info_request(), 43, Wire(), kNothing),
    API_ROW(binder_get_memo_info_by_index(0, out), 44, Wire().i32(0), answerAndRecord(268)),
    API_ROW(binder_check_memo_per_minute(), 45, Wire(), kNothing),
    API_ROW(binder_request_bt_phonebook_data(), 46, Wire(), kValue),
    API_ROW(binder_get_bt_phonebook_contact_by_id(2, out), 47, Wire().i32(2), answerAndRecord(4492)),
    API_ROW(binder_open_xml_phonebook(1), 48, Wire().i32(1), kValue),
    API_ROW(binder_request_xml_phonebook_data(1, 2), 49, Wire().i32(1).i32(2), kValue),
    API_ROW(binder_get_xml_phonebook_contact_by_index(1, out), 50, Wire().i32(1), answerAndRecord(4492)),
    API_ROW(binder_phonebook_contact_search(1, "work"), 23, Wire().i32(1).text(u"work"), kValue),
    API_ROW(binder_get_xml_phonebook_search_contact_by_index(0, out), 51, Wire().i32(0),
            answerAndRecord(4492)),
    API_ROW(binder_open_ldap_phonebook(1), 52, Wire().i32(1), kValue),
    API_ROW(binder_request_ldap_phonebook_data(1, 2), 53, Wire().i32(1).i32(2), kValue),
    API_ROW(binder_get_ldap_phonebook_contact_by_index(1, out), 54, Wire().i32(1), answerAndRecord(4492)),
    API_ROW(binder_ldap_contact_search_request(""), 55, Wire().text(u""), kValue),
    API_ROW(binder_door_access_init(), 56, Wire(), kValue),
    API_ROW(binder_door_access_data_request(), 57, Wire(), kValue),
    API_ROW(binder_get_door_access_by_id(2, out), 58, Wire().i32(2), answerAndRecord(376)),
    API_ROW(binder_set_door_access_info(kSent), 59, sent(376), kValue),
    API_ROW(binder_del_door_access_by_id(1), 61, Wire().i32(1), kValue),
    API_ROW(binder_add_door_access(kSent), 60, sent(376), kValue),
    API_ROW(binder_del_all_door_access(), 62, Wire(), kValue),
    API_ROW(binderCheckDoorAccessInfo("0042", 63, out), 63, Wire().text(u"0042").i32(63), record(376)),
};

std::atomic<int> deaths;

class DatabaseApiTest : public ApiTest {
 protected:
  DatabaseApiTest() : ApiTest("com.qv.DatabaseService", u"com.qv.IDatabaseService", "DatabaseClient", kRows) {
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
  EXPECT_EQ(binder_send_sms(0, nullptr, nullptr), -1) << "the arguments are not looked at";
  EXPECT_EQ(binder_phonebook_add_new_group(nullptr), -1);
  connect();
  expectCallsAndAnswers(63);
  expectFailures();
  expectDeathEndsCallAndConnection();
  EXPECT_EQ(deaths, 1);
}

TEST_F(DatabaseApiTest, TheSimulatedDeviceServesEachOfThem) {
  const android::sp<sim::DatabaseService> device = new sim::DatabaseService(openStore());
  std::string error;
  ASSERT_TRUE(device->prepare(&error)) << error;
  device->logCall({});
  expectServedBy(device, [] { return connect_database_service(nullptr); });
}

TEST_F(DatabaseApiTest, GroupsAreTakenOnlyAtTheirExactNumber) {
  constexpr int kWrapsIn32Bits = 0x40000000;
  const Wire failure = Wire().i32(-5).text(u"").i32(0);
  const auto groups = [](int size) { return Wire(kOk).i32(7).record(pattern(size)); };
  const struct {
    int count;
    Wire answer;
    int result;
    int copied;
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
    EXPECT_EQ(out_, pattern(row.copied) + kUntouched.substr(static_cast<size_t>(row.copied)));
    EXPECT_EQ(log_.take(), sizeErrors("binder_phonebook_get_contact_groupid", row.logs ? 1 : 0));
  }
  service_->answer(groups(0));
  EXPECT_EQ(binder_phonebook_get_contact_groupid(1, 0, nullptr), 7);
}

TEST_F(DatabaseApiTest, AnAnswerOfMinusOneDoesNotSpoilItsRecord) {
  connect();
  const std::string contact = pattern(4492);
  answer(Wire().i32(-1).record(contact));
  EXPECT_EQ(binder_phonebook_contact_retrieve(1, 2, out_.data()), -1);
  EXPECT_EQ(out_.substr(0, contact.size()), contact);
  EXPECT_EQ(log_.take(), std::vector<LogLine>());
}

TEST_F(DatabaseApiTest, TheSizeOfTheCopyThatWasSentIsCheckedByMostSetters) {
  // The host platform makes nothing of a null pointer, as the device's strings do when they get no memory.
  const struct {
    const char* function;
    int (*call)(const void* record);
    bool checks;
  } rows[] = {
      {"binder_phonebook_add_new_group", binder_phonebook_add_new_group, true},
      {"binder_phonebook_update_group", binder_phonebook_update_group, true},
      {"binder_phonebook_contact_create", [](const void* r) { return binder_phonebook_contact_create(1, r); },
       true},
      {"binder_phonebook_contact_update", [](const void* r) { return binder_phonebook_contact_update(1, r); },
       true},
      {"binder_phonebook_contact_add_blacklist", binder_phonebook_contact_add_blacklist, true},
      {"binder_phonebook_contact_add_whitelist", binder_phonebook_contact_add_whitelist, true},
      {"binder_phonebook_contact_set_blacklist", binder_phonebook_contact_set_blacklist, true},
      {"binder_phonebook_contact_set_whitelist", binder_phonebook_contact_set_whitelist, true},
      {"binder_phonebook_db_request", binder_phonebook_db_request, true},
      {"binder_set_memo_info", binder_set_memo_info, false},
      {"binder_add_memo", binder_add_memo, false},
      {"binder_set_door_access_info", binder_set_door_access_info, false},
      {"binder_add_door_access", binder_add_door_access, false},
  };
  connect();
  answer(Wire().i32(kAnswer));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.function);
    EXPECT_EQ(row.call(nullptr), row.checks ? -1 : kAnswer);
    EXPECT_TRUE(service_->take().has_value()) << "the check comes after the call";
    EXPECT_EQ(log_.take(), sizeErrors(row.function, row.checks ? 1 : 0));
  }
}

TEST_F(DatabaseApiTest, ANullStringRaisesTheLogicErrorAndSendsNothing) {
  connect();
  EXPECT_THROW(binder_send_sms(1, nullptr, ""), std::logic_error);
  EXPECT_THROW(binder_send_sms(1, "", nullptr), std::logic_error);
  EXPECT_THROW(binder_store_sms_to_draft(nullptr), std::logic_error);
  EXPECT_THROW(binder_phonebook_contact_search(1, nullptr), std::logic_error);
  EXPECT_THROW(binder_ldap_contact_search_request(nullptr), std::logic_error);
  EXPECT_THROW(binderCheckDoorAccessInfo(nullptr, 1, out_.data()), std::logic_error);
  EXPECT_FALSE(service_->take().has_value());
}

TEST_F(DatabaseApiTest, AFailedConnectKeepsTheEarlierConnection) {
  connect();
  failToConnectWith([] { return connect_database_service(nullptr); });
  answer(Wire().i32(kAnswer));
  EXPECT_EQ(binder_get_memo_num(), kAnswer);
  die();
  EXPECT_EQ(deaths, 1) << "and its callback";
}

}  // namespace
