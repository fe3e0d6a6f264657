#include "database/DatabaseService.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "LogCapture.h"
#include "ServiceTesting.h"
#include "database/CallLog.h"
#include "phone/Phone.h"

namespace {

using com::qv::CommonParcelable;
using com::qv::IDatabaseService;
using sim::pack;
using sim::textOf;
using sim::with;
using vesk::test::ask;
using vesk::test::fetch;

class DatabaseServiceTest : public testing::Test {
 protected:
  void SetUp() override { start(); }

  /** Starts the service on the same store, as a restart of the device does. */
  void start() {
    std::string error;
    const android::sp<sim::DatabaseService> started = new sim::DatabaseService(store_);
    ASSERT_TRUE(started->prepare(&error)) << error;
    device_ = started;
    service_ = started;
  }

  template <typename... Params, typename... Args>
  int32_t number(android::binder::Status (IDatabaseService::*method)(Params...), const Args&... args) {
    return ask(*service_, method, args...);
  }
  template <typename Record, typename... Params, typename... Args>
  Record record(android::binder::Status (IDatabaseService::*method)(Params...), const Args&... args) {
    return fetch<Record>(*service_, method, args...);
  }

  std::string contact(int32_t how, int32_t place) {
    const auto found = record<sim::ContactRecord>(&IDatabaseService::phonebookContactRetrieve, how, place);
    return std::string(textOf(found.name)) + " " + std::string(textOf(found.numbers[0]));
  }
  /** The contacts of the last request or search. */
  std::string listed(int32_t count) {
    std::string text;
    for (int32_t index = 0; index < count; ++index) text += contact(1, index) + ";";
    return text;
  }
  std::vector<int32_t> groupsOf(int32_t id, int32_t count) {
    CommonParcelable groups;
    int32_t all = 0;
    EXPECT_TRUE(service_->phonebookGetContactGroupId(id, count, &groups, &all).isOk());
    std::vector<int32_t> ids(groups.blob().length() / sizeof(int32_t));
    if (!ids.empty()) std::memcpy(ids.data(), groups.blob().c_str(), groups.blob().length());
    ids.push_back(all);
    return ids;
  }

  const std::shared_ptr<sim::Store> store_ = vesk::test::openStore();
  android::sp<sim::DatabaseService> device_;
  /** Through the interface, which declares the methods. */
  android::sp<IDatabaseService> service_;
};

TEST(DatabaseService, FailuresOfTheStoreAreReported) {
  // Its tables have not been created.
  const android::sp<IDatabaseService> service = new sim::DatabaseService(vesk::test::openStore());
  vesk::test::LogCapture log;
  EXPECT_EQ(ask(*service, &IDatabaseService::addMemo, pack(sim::MemoRecord{})), -1);
  EXPECT_EQ(log.take(),
            std::vector<vesk::test::LogLine>(
                {{ANDROID_LOG_ERROR, "vesk-device", "the state can't be changed: no such table: memos"}}));
  EXPECT_EQ(service->deleteSmsAll(0).exceptionCode(), android::binder::Status::EX_ILLEGAL_STATE);
}

TEST_F(DatabaseServiceTest, MessagesAreCountedByBox) {
  const auto counts = [this] {
    std::string text;
    for (int32_t box = 0; box <= 4; ++box) {
      text += " " + std::to_string(number(&IDatabaseService::getSMSCount, box));
    }
    return text;
  };
  const auto send = [this](int32_t line, const char* to, const std::string& text) {
    return number(&IDatabaseService::sendSms, line, std::string(to), text);
  };
  EXPECT_EQ(counts(), " 2 1 2 0 0");
  EXPECT_EQ(number(&IDatabaseService::getSMSCount, 5), -1);

  EXPECT_EQ(send(0, "200", "hello"), 3);
  EXPECT_EQ(counts(), " 3 1 2 1 0");
  EXPECT_EQ(send(2, "300", "anybody there?"), 4) << "the echo is the next one";
  EXPECT_EQ(counts(), " 5 2 3 2 0");
  EXPECT_EQ(send(3, "200", "line 3 is not registered"), -1);
  EXPECT_EQ(send(1, "999", "nobody has this number"), -1);
  EXPECT_EQ(send(1, "200", ""), -1);
  EXPECT_EQ(send(1, "200", std::string(1024, 'x')), -1);
  EXPECT_EQ(send(1, "200", std::string(1023, 'x')), 6);
  EXPECT_TRUE(service_->storeSmsToDraft("later").isOk());
  EXPECT_EQ(counts(), " 7 2 3 3 1");

  EXPECT_TRUE(service_->setSmsReadDone(5).isOk());
  EXPECT_FALSE(service_->setSmsReadDone(50).isOk());
  EXPECT_EQ(counts(), " 7 1 3 3 1");
  EXPECT_TRUE(service_->deleteSms(1).isOk());
  EXPECT_FALSE(service_->deleteSms(1).isOk());
  EXPECT_EQ(counts(), " 6 0 2 3 1");
  EXPECT_TRUE(service_->deleteSmsAll(3).isOk());
  EXPECT_EQ(counts(), " 3 0 2 0 1");
  EXPECT_FALSE(service_->deleteSmsAll(-1).isOk());
  EXPECT_TRUE(service_->deleteSmsAll(0).isOk());
  start();
  EXPECT_EQ(counts(), " 0 0 0 0 0") << "a restart does not restore the preset messages";
}

TEST_F(DatabaseServiceTest, ContactsAreFoundByNumberGroupAndSearch) {
  EXPECT_EQ(contact(0, 1), "Alice Meyer 200");
  EXPECT_EQ(contact(0, 0), " ");
  EXPECT_EQ(listed(number(&IDatabaseService::phonebookRequest, 0, 0)),
            "Alice Meyer 200;Ben Okafor 201;Front Door 240;Zoë Lindqvist 202;");
  EXPECT_EQ(listed(number(&IDatabaseService::phonebookRequest, 0, 3)), "Zoë Lindqvist 202;");
  EXPECT_EQ(contact(1, 1), " ") << "behind the last one";
  EXPECT_EQ(contact(2, 0), " ") << "there is no such way to name it";
  EXPECT_EQ(listed(number(&IDatabaseService::phonebookRequest, 2, 0)), "Front Door 240;");
  EXPECT_EQ(number(&IDatabaseService::phonebookRequest, 0, 9), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookRequest, 3, 0), -1);

  const struct {
    const char* text;
    const char* found;
  } rows[] = {
      {"alice", "Alice Meyer 200;"},
      {"OK", "Ben Okafor 201;"},
      {"Zoë", "Zoë Lindqvist 202;"},
      {"20", "Alice Meyer 200;Ben Okafor 201;Zoë Lindqvist 202;"},
      {"nobody", ""},
  };
  for (const auto& [text, found] : rows) {
    EXPECT_EQ(listed(number(&IDatabaseService::phonebookContactSearch, 0, std::string(text))), found) << text;
  }
}

TEST_F(DatabaseServiceTest, ContactsAndGroupsAreChanged) {
  const auto created = with(&sim::ContactRecord::name, "Dana");
  EXPECT_EQ(number(&IDatabaseService::phonebookContactCreate, 9, pack(created)), -1) << "no such group";
  EXPECT_EQ(number(&IDatabaseService::phonebookContactCreate, 0, pack(sim::ContactRecord{})), -1)
      << "no name";
  EXPECT_EQ(number(&IDatabaseService::phonebookContactCreate, 1, pack(created)), 5);
  EXPECT_EQ(groupsOf(5, 1), (std::vector{1, 1}));

  auto changed = with(&sim::ContactRecord::name, "Dana Novak");
  EXPECT_EQ(number(&IDatabaseService::phonebookContactUpdate, 0, pack(changed)), -1);
  changed.id = 5;
  EXPECT_EQ(number(&IDatabaseService::phonebookContactUpdate, 2, pack(changed)), 0);
  EXPECT_EQ(groupsOf(5, 3), (std::vector{1, 2, 0, 2})) << "filled up with zeros";
  EXPECT_EQ(groupsOf(5, 0), std::vector{2});

  const int32_t family =
      number(&IDatabaseService::phonebookAddNewGroup, pack(with(&sim::GroupRecord::name, "Family")));
  EXPECT_EQ(family, 3);
  EXPECT_EQ(number(&IDatabaseService::phonebookAddContactToGroup, 5, family), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookAddContactToGroup, 5, 99), -1);
  EXPECT_EQ(number(&IDatabaseService::phonebookAddContactToGroup, 99, family), -1);
  EXPECT_EQ(number(&IDatabaseService::phonebookRemoveContactFromGroup, 5, 1), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookRemoveContactFromGroup, 5, 1), -1);
  EXPECT_EQ(groupsOf(5, 2), (std::vector{2, 3, 2}));

  auto renamed = with(&sim::GroupRecord::name, "Friends");
  renamed.id = family;
  EXPECT_EQ(number(&IDatabaseService::phonebookUpdateGroup, pack(renamed)), 0);
  start();
  for (const int32_t how : {0, 1}) {
    const auto group = record<sim::GroupRecord>(&IDatabaseService::getPhonebookGroupInfo, how,
                                                how == 0 ? family : family - 1);
    EXPECT_EQ(textOf(group.name), "Friends");
    EXPECT_EQ(group.members, 1);
  }
  EXPECT_EQ(number(&IDatabaseService::phonebookDeleteGroup, family), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookDeleteGroup, family), -1);
  EXPECT_EQ(groupsOf(5, 1), (std::vector{2, 1}));
  EXPECT_EQ(number(&IDatabaseService::phonebookPartOfGroupRequest, 1), 1);

  EXPECT_EQ(number(&IDatabaseService::phonebookContactDelete, 0, 5), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactDelete, 0, 5), -1);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactCreate, 0, pack(created)), 6)
      << "numbers are not used again";
}

TEST_F(DatabaseServiceTest, OneRecordCarriesAllPhonebookRequests) {
  sim::PhonebookRequestRecord request{};
  const auto perform = [&](sim::PhonebookRequestRecord::Action action) {
    request.action = action;
    return number(&IDatabaseService::phonebookDbRequest, pack(request));
  };
  sim::copyText(request.contact.name, "Dana");
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::kCreate), 5);
  request.contact.id = 5;
  sim::copyText(request.contact.numbers[2], "0190");
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::kUpdate), 0);
  sim::copyText(request.text, "190");
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::kSearch), 1);
  EXPECT_EQ(contact(1, 0), "Dana ");
  request.id = 5;
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::kDelete), 0);
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::kSearch), 0);
  EXPECT_EQ(perform(sim::PhonebookRequestRecord::Action{5}), -1);
}

TEST_F(DatabaseServiceTest, ContactsHavePictures) {
  const auto alice = record<sim::PictureRecord>(&IDatabaseService::phonebookImageDataGet, 1);
  const auto door = record<sim::PictureRecord>(&IDatabaseService::phonebookImageDataGet, 4);
  EXPECT_EQ(textOf(alice.name), "alice.png");
  EXPECT_EQ(alice.width * alice.height, alice.size);
  EXPECT_NE(std::memcmp(alice.pixels, door.pixels, sizeof(alice.pixels)), 0);
  CommonParcelable none;
  EXPECT_FALSE(service_->phonebookImageDataGet(2, &none).isOk());
}

TEST_F(DatabaseServiceTest, BlacklistAndWhitelist) {
  const auto black = with(&sim::BlacklistRecord::number, "0190");
  const auto white = with(&sim::WhitelistRecord::number, "112");
  EXPECT_EQ(number(&IDatabaseService::phonebookContactAddBlacklist, pack(black)), 2);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactAddWhitelist, pack(white)), 2);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactAddBlacklist, pack(white)), -1) << "another size";

  auto changed = with(&sim::WhitelistRecord::number, "110");
  changed.id = 2;
  changed.line = 1;
  EXPECT_EQ(number(&IDatabaseService::phonebookContactSetWhitelist, pack(changed)), 0);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactSetBlacklist, pack(black)), -1)
      << "there is no number 0";
  start();
  const auto whiteNow = record<sim::WhitelistRecord>(&IDatabaseService::phonebookContactGetWhitelist, 1);
  EXPECT_EQ(textOf(whiteNow.number), "110");
  EXPECT_EQ(whiteNow.line, 1);
  EXPECT_EQ(textOf(record<sim::BlacklistRecord>(&IDatabaseService::phonebookContactGetBlacklist, 1).number),
            "0190");

  EXPECT_EQ(number(&IDatabaseService::phonebookContactDeleteBlacklist, 1), 0);
  EXPECT_EQ(textOf(record<sim::BlacklistRecord>(&IDatabaseService::phonebookContactGetBlacklist, 0).number),
            "0190");
  EXPECT_EQ(number(&IDatabaseService::phonebookContactDeleteAllWhitelist), 0);
  const auto counts = [this](int32_t what) {
    return number(&IDatabaseService::phonebookCommonRequest, what);
  };
  EXPECT_EQ(counts(2), 1);
  EXPECT_EQ(counts(3), 0);
}

TEST_F(DatabaseServiceTest, CallsAreLogged) {
  sim::CallLog log([this](const sim::CallLogRecord& call) { device_->logCall(call); });
  sim::Phone phone([&](sim::Time time, const sim::Event& event) { log.notice(time, event); });
  sim::Time now{0};
  const auto wait = [&](int32_t ms) { phone.advanceTo(now += sim::Time(ms)); };
  const auto newest = [this] { return record<sim::CallLogRecord>(&IDatabaseService::getClogById, 0); };
  EXPECT_EQ(newest().id, 0);

  phone.makeCall(2, "200");
  wait(2000);
  phone.setCallHoldStatus(1, true);
  wait(1000);
  phone.setCallHoldStatus(1, false);
  wait(5000);
  phone.closeCall(1);
  const sim::CallLogRecord made = newest();
  EXPECT_EQ(made.kind, sim::CallKind::kMade);
  EXPECT_EQ(made.line, 2);
  EXPECT_EQ(made.seconds, 6) << "held or not";
  EXPECT_EQ(textOf(made.number), "200");
  EXPECT_EQ(textOf(made.name), "Alice Meyer");

  phone.incomingCall(1, "201");
  wait(1000);
  phone.headsetAnswerCall();
  wait(2500);
  phone.closeCall(1);
  EXPECT_EQ(newest().kind, sim::CallKind::kReceived);
  EXPECT_EQ(newest().seconds, 3);

  phone.incomingCall(1, "202");
  phone.closeCall(1);
  EXPECT_EQ(newest().kind, sim::CallKind::kMissed);
  EXPECT_EQ(newest().id, 3);
  EXPECT_EQ(newest().older, 2);

  const auto mail = [this](int32_t line) {
    const auto counters = record<sim::VoiceMailRecord>(&IDatabaseService::getVoiceSmsCount, line);
    return std::pair(counters.unheard, counters.heard);
  };
  EXPECT_EQ(mail(1), std::pair(1u, 2u));
  phone.playMwi(1, "");
  wait(3000);
  phone.closeCall(1);
  EXPECT_EQ(mail(1), std::pair(0u, 3u));
  EXPECT_EQ(mail(2), std::pair(0u, 0u));

  EXPECT_EQ(number(&IDatabaseService::clogDelete, 0, 2), 0);
  EXPECT_EQ(number(&IDatabaseService::clogDelete, 0, 2), -1);
  start();
  EXPECT_EQ(record<sim::CallLogRecord>(&IDatabaseService::getClogById, 3).older, 1);
  EXPECT_EQ(number(&IDatabaseService::clogDelete, 1, 3), 1);
  EXPECT_EQ(number(&IDatabaseService::clogDelete, 1, 0), 2);
  EXPECT_EQ(newest().id, 0);

  for (int call = 0; call < 201; ++call) device_->logCall({});
  EXPECT_EQ(number(&IDatabaseService::phonebookCommonRequest, 4), 200);
}

TEST_F(DatabaseServiceTest, DueMemosAreMarkedOnce) {
  const auto memo = [](const char* text, uint32_t due) {
    auto made = with(&sim::MemoRecord::text, text);
    made.due = due;
    return made;
  };
  const auto done = [this](int32_t index) {
    return record<sim::MemoRecord>(&IDatabaseService::getMemoByIndex, index).done;
  };
  EXPECT_EQ(number(&IDatabaseService::addMemo, pack(memo("due", 1))), 2);
  EXPECT_EQ(number(&IDatabaseService::addMemo, pack(memo("not yet", UINT32_MAX))), 3);
  EXPECT_EQ(number(&IDatabaseService::getMemoNum), 3);
  EXPECT_TRUE(service_->checkMemoPerMinute().isOk());
  EXPECT_EQ((std::vector{done(0), done(1), done(2)}), (std::vector{0, 1, 0}));

  auto again = memo("due again", 1);
  again.id = 2;
  EXPECT_EQ(number(&IDatabaseService::setMemoInfo, pack(again)), 0);
  EXPECT_EQ(done(1), 0);
  EXPECT_EQ(number(&IDatabaseService::delMemo, 1), 0);
  EXPECT_EQ(textOf(record<sim::MemoRecord>(&IDatabaseService::getMemoByIndex, 0).text), "due again");
  EXPECT_EQ(number(&IDatabaseService::delMemo, 1), -1);
}

TEST_F(DatabaseServiceTest, RemotePhonebooksAreReadAndSearched) {
  const auto name = [this](auto method, int32_t place) {
    return std::string(textOf(record<sim::ContactRecord>(method, place).name));
  };
  EXPECT_EQ(number(&IDatabaseService::requestBtPhonebookData), 4);
  EXPECT_EQ(name(&IDatabaseService::getBtPhonebookContactById, 1), "Reception");
  EXPECT_EQ(name(&IDatabaseService::getBtPhonebookContactById, 0), "");
  EXPECT_EQ(name(&IDatabaseService::getBtPhonebookContactById, 5), "");
  EXPECT_EQ(number(&IDatabaseService::openXmlPhonebook, 2), -1);
  EXPECT_EQ(number(&IDatabaseService::openLdapPhonebook, 1), 4);
  EXPECT_EQ(number(&IDatabaseService::requestXmlPhonebookData, 1, 9), 3);
  EXPECT_EQ(number(&IDatabaseService::requestXmlPhonebookData, 5, 1), -1);
  EXPECT_EQ(number(&IDatabaseService::phonebookContactSearch, 1, std::string("work")), 1);
  EXPECT_EQ(name(&IDatabaseService::getXmlPhonebookSearchContactByIndex, 0), "Workshop");
  EXPECT_EQ(name(&IDatabaseService::getXmlPhonebookSearchContactByIndex, 1), "");
  EXPECT_EQ(number(&IDatabaseService::ldapContactSearchRequest, std::string("401")), 1);
  EXPECT_EQ(name(&IDatabaseService::getLdapPhonebookContactByIndex, 0), "Dana Novak");
  EXPECT_EQ(number(&IDatabaseService::requestLdapPhonebookData, 2, 1), 1);
  EXPECT_EQ(name(&IDatabaseService::getLdapPhonebookContactByIndex, 2), "Workshop");
}

TEST_F(DatabaseServiceTest, DoorAccessIsChecked) {
  auto past = with(&sim::DoorAccessRecord::credential, "past");
  past.enabled = 1;
  past.validUntil = 1;
  auto future = with(&sim::DoorAccessRecord::credential, "future", past);
  future.validFrom = future.validUntil = UINT32_MAX;
  auto now = with(&sim::DoorAccessRecord::credential, "now", past);
  now.validFrom = 1;
  now.validUntil = UINT32_MAX;
  EXPECT_EQ(number(&IDatabaseService::addDoorAccess, pack(past)), 4);
  EXPECT_EQ(number(&IDatabaseService::addDoorAccess, pack(future)), 5);
  EXPECT_EQ(number(&IDatabaseService::addDoorAccess, pack(now)), 6);
  EXPECT_EQ(number(&IDatabaseService::addDoorAccess, pack(now)), -1) << "the credential is taken";
  EXPECT_EQ(number(&IDatabaseService::addDoorAccess, pack(sim::DoorAccessRecord{})), -1) << "no credential";

  using sim::DoorRefusal;
  const struct {
    const char* credential;
    int32_t door;
    int32_t id;
    DoorRefusal refusal;
  } rows[] = {
      {"1234", 1, 1, DoorRefusal::kNone},        {"1234", 2, 1, DoorRefusal::kNone},
      {"2222", 2, 2, DoorRefusal::kNone},        {"2222", 1, 2, DoorRefusal::kOtherDoor},
      {"0007", 1, 3, DoorRefusal::kDisabled},    {"past", 1, 4, DoorRefusal::kOtherTime},
      {"future", 1, 5, DoorRefusal::kOtherTime}, {"now", 1, 6, DoorRefusal::kNone},
      {"123", 1, 0, DoorRefusal::kUnknown},      {"", 1, 0, DoorRefusal::kUnknown},
  };
  for (const auto& [credential, door, id, refusal] : rows) {
    SCOPED_TRACE(credential);
    const auto access =
        record<sim::DoorAccessRecord>(&IDatabaseService::checkDoorAccessInfo, std::string(credential), door);
    EXPECT_EQ(access.id, id);
    EXPECT_EQ(access.refusal, refusal);
    EXPECT_EQ(access.granted, refusal == DoorRefusal::kNone);
  }

  auto found = record<sim::DoorAccessRecord>(&IDatabaseService::getDoorAccessById, 3);
  found.enabled = 1;
  EXPECT_EQ(number(&IDatabaseService::setDoorAccessInfo, pack(found)), 0);
  start();
  EXPECT_EQ(
      record<sim::DoorAccessRecord>(&IDatabaseService::checkDoorAccessInfo, std::string("0007"), 1).granted,
      1);
  EXPECT_EQ(number(&IDatabaseService::delDoorAccessById, 1), 0);
  EXPECT_EQ(number(&IDatabaseService::delDoorAccessById, 1), -1);
  EXPECT_EQ(number(&IDatabaseService::doorAccessDataRequest), 5);
  EXPECT_EQ(number(&IDatabaseService::delAllDoorAccess), 0);
  EXPECT_EQ(number(&IDatabaseService::doorAccessDataRequest), 0);
}

}  // namespace
