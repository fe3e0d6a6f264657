#include "database/DatabaseTables.h"

#include <chrono>
#include <string_view>

namespace sim {

namespace {

/** The numbers that a SELECT returns, one in each row. */
std::vector<int32_t> numbers(Transaction& transaction, const char* sql, int32_t id) {
  std::vector<int32_t> found;
  transaction.run(sql, {int64_t{id}},
                  [&](const Row& row) { found.push_back(static_cast<int32_t>(row.integer(0))); });
  return found;
}

ContactRecord contact(std::string_view name, std::string_view number, std::string_view picture = "") {
  ContactRecord record = with(&ContactRecord::name, name, with(&ContactRecord::picture, picture));
  copyText(record.numbers[0], number);
  return record;
}

DoorAccessRecord doorAccess(bool enabled, int32_t door, std::string_view name, std::string_view credential) {
  DoorAccessRecord record =
      with(&DoorAccessRecord::name, name, with(&DoorAccessRecord::credential, credential));
  record.enabled = enabled;
  record.door = door;
  return record;
}

}  // namespace

uint32_t wallClock() {
  using std::chrono::system_clock;
  return static_cast<uint32_t>(
      std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch()).count());
}

SmsRecord message(SmsBox box, int32_t line, std::string_view number, std::string_view text) {
  SmsRecord record = with(&SmsRecord::number, number, with(&SmsRecord::text, text));
  record.box = box;
  record.line = line;
  record.read = box != SmsBox::kInbox;
  record.time = wallClock();
  return record;
}

void MemberTable::create(Transaction& transaction) const {
  transaction.run(
      "CREATE TABLE contact_group_members (contact INTEGER, in_group INTEGER, "
      "PRIMARY KEY (contact, in_group)) WITHOUT ROWID");
}

std::vector<int32_t> MemberTable::groupsOf(Transaction& transaction, int32_t contact) const {
  return numbers(transaction,
                 "SELECT in_group FROM contact_group_members WHERE contact = ? ORDER BY in_group", contact);
}

std::vector<int32_t> MemberTable::contactsOf(Transaction& transaction, int32_t group) const {
  return numbers(transaction, "SELECT contact FROM contact_group_members WHERE in_group = ? ORDER BY contact",
                 group);
}

void MemberTable::add(Transaction& transaction, int32_t contact, int32_t group) const {
  transaction.run("INSERT OR IGNORE INTO contact_group_members VALUES (?, ?)",
                  {int64_t{contact}, int64_t{group}});
}

bool MemberTable::remove(Transaction& transaction, int32_t contact, int32_t group) const {
  transaction.run("DELETE FROM contact_group_members WHERE contact = ? AND in_group = ?",
                  {int64_t{contact}, int64_t{group}});
  return transaction.changedRows() > 0;
}

void MemberTable::removeContact(Transaction& transaction, int32_t contact) const {
  transaction.run("DELETE FROM contact_group_members WHERE contact = ?", {int64_t{contact}});
}

void MemberTable::removeGroup(Transaction& transaction, int32_t group) const {
  transaction.run("DELETE FROM contact_group_members WHERE in_group = ?", {int64_t{group}});
}

void DatabaseTables::create(Transaction& transaction) const {
  if (!contacts.create(transaction)) return;
  groups.create(transaction);
  members.create(transaction);
  blacklist.create(transaction);
  whitelist.create(transaction);
  calls.create(transaction);
  memos.create(transaction);
  doors.create(transaction);
  messages.create(transaction);
  voiceMail.create(transaction);

  const int32_t office = groups.add(transaction, with(&GroupRecord::name, "Office"));
  const int32_t entrances = groups.add(transaction, with(&GroupRecord::name, "Doors"));
  for (const ContactRecord& colleague : {contact("Alice Meyer", "200", "alice.png"),
                                         contact("Ben Okafor", "201"), contact("Zoë Lindqvist", "202")}) {
    members.add(transaction, contacts.add(transaction, colleague), office);
  }
  members.add(transaction, contacts.add(transaction, contact("Front Door", "240", "door.png")), entrances);

  blacklist.add(transaction, with(&BlacklistRecord::number, "900"));
  whitelist.add(transaction, with(&WhitelistRecord::number, "200"));
  memos.add(transaction, with(&MemoRecord::text, "Water the plants"));
  doors.add(transaction, doorAccess(true, 0, "Caretaker", "1234"));
  doors.add(transaction, doorAccess(true, 2, "Back door only", "2222"));
  doors.add(transaction, doorAccess(false, 0, "Lost card", "0007"));
  messages.add(transaction, message(SmsBox::kInbox, 1, "200", "Lunch at twelve?"));
  SmsRecord read = message(SmsBox::kInbox, 1, "201", "Thank you!");
  read.read = 1;
  messages.add(transaction, read);
  voiceMail.put(transaction, 1, {.unheard = 1, .heard = 2});
}

}  // namespace sim
