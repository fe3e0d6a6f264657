#pragma once

#include <string_view>
#include <vector>

#include "database/DatabaseRecords.h"
#include "store/RecordTable.h"

namespace sim {

/** The membership of contacts in groups. Each method is part of a transaction. */
class MemberTable {
 public:
  void create(Transaction& transaction) const;
  /** Both sorted. */
  std::vector<int32_t> groupsOf(Transaction& transaction, int32_t contact) const;
  std::vector<int32_t> contactsOf(Transaction& transaction, int32_t group) const;
  /** Does nothing for a member. */
  void add(Transaction& transaction, int32_t contact, int32_t group) const;
  /** False if the contact is not a member. */
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
  RecordTable<VoiceMailRecord> voiceMail{"voice_mail"};

  /** Creates the tables with the content of a new device, unless they exist. */
  void create(Transaction& transaction) const;
};

/** Seconds since 1970. */
uint32_t wallClock();

/** A message of now; unread in the inbox. */
SmsRecord message(SmsBox box, int32_t line, std::string_view number, std::string_view text);

}  // namespace sim
