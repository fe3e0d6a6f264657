#pragma once

#include <vector>

#include "database/DatabaseRecords.h"
#include "store/RecordTable.h"

namespace sim {

/** Which contacts are in which groups. Each member is a part of a transaction. */
class MemberTable {
 public:
  void create(Transaction& transaction) const;
  /** Of a contact, by number. */
  std::vector<int32_t> groupsOf(Transaction& transaction, int32_t contact) const;
  /** Of a group, by number. */
  std::vector<int32_t> contactsOf(Transaction& transaction, int32_t group) const;
  /** Does nothing if it is in. */
  void add(Transaction& transaction, int32_t contact, int32_t group) const;
  /** False if it was not in. */
  bool remove(Transaction& transaction, int32_t contact, int32_t group) const;
  void removeContact(Transaction& transaction, int32_t contact) const;
  void removeGroup(Transaction& transaction, int32_t group) const;
};

/** The tables of the database service. */
struct DatabaseTables {
  RecordTable<ContactRecord> contacts{"contacts"};
  RecordTable<GroupRecord> groups{"contact_groups"};
  MemberTable members;
  RecordTable<BlacklistRecord> blacklist{"blacklist"};
  RecordTable<WhitelistRecord> whitelist{"whitelist"};
  RecordTable<CallLogRecord> calls{"call_log"};
  RecordTable<MemoRecord> memos{"memos"};
  RecordTable<DoorAccessRecord> doors{"door_access"};
  RecordTable<SmsRecord> messages{"messages"};
  /** By line. */
  ByteTable voiceMail{"voice_mail"};

  /** With what a new device has in them, if they aren't there. */
  void create(Transaction& transaction) const;
};

/** Seconds since 1970. */
uint32_t wallClock();

}  // namespace sim
