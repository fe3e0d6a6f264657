#pragma once

#include <vesk/database.h>

#include <cstddef>
#include <cstdint>

namespace sim {

/*
 * The records of the database service, as transferred and as stored. Each begins with its number,
 * which the service assigns. Times are in seconds since 1970. isValid() is false for a record that
 * the service refuses.
 */

struct ContactRecord {
  int32_t id;
  /** The line for calls; 0 for any. */
  int32_t line;
  char name[256];
  /** Office, mobile, home. */
  char numbers[3][64];
  char email[128];
  char company[128];
  /** The name of the picture; empty without a picture. */
  char picture[128];
  char note[3652];
};
static_assert(sizeof(ContactRecord) == VESK_CONTACT_SIZE && offsetof(ContactRecord, picture) == 712);
inline bool isValid(const ContactRecord& record) { return record.name[0] != 0; }

struct GroupRecord {
  int32_t id;
  /** Counted by the service. */
  int32_t members;
  char name[128];
  char ringtone[64];
};
static_assert(sizeof(GroupRecord) == VESK_PHONEBOOK_GROUP_SIZE);
inline bool isValid(const GroupRecord& record) { return record.name[0] != 0; }

struct PictureRecord {
  static constexpr int32_t kSide = 16;

  /** The contact. */
  int32_t id;
  int32_t width;
  int32_t height;
  /** In bytes. */
  int32_t size;
  char name[120];
  /** Row by row, from 0 (black) to 255 (white). */
  uint8_t pixels[kSide * kSide];
};
static_assert(sizeof(PictureRecord) == VESK_CONTACT_PICTURE_SIZE);

struct BlacklistRecord {
  int32_t id;
  /** 1 for incoming calls, 2 for outgoing calls, 0 for both. */
  int32_t direction;
  char number[48];
};
static_assert(sizeof(BlacklistRecord) == VESK_BLACKLIST_ENTRY_SIZE);
inline bool isValid(const BlacklistRecord& record) { return record.number[0] != 0; }

struct WhitelistRecord {
  int32_t id;
  int32_t direction;
  /** 0 for any. */
  int32_t line;
  char number[48];
};
static_assert(sizeof(WhitelistRecord) == VESK_WHITELIST_ENTRY_SIZE);
inline bool isValid(const WhitelistRecord& record) { return record.number[0] != 0; }

enum class CallKind : int32_t { kMade = 1, kReceived = 2, kMissed = 3 };

struct CallLogRecord {
  int32_t id;
  /** The number of the previous entry, or 0. Set when the entry is read. */
  int32_t older;
  int32_t line;
  CallKind kind;
  uint32_t time;
  /** From the answer to the end of the call. */
  int32_t seconds;
  char number[64];
  char name[192];
};
static_assert(sizeof(CallLogRecord) == VESK_CALL_LOG_ENTRY_SIZE);

struct MemoRecord {
  int32_t id;
  /** 0 if it is never due. */
  uint32_t due;
  /** 1 after a check has found the memo due. */
  int32_t done;
  int32_t reserved;
  char text[252];
};
static_assert(sizeof(MemoRecord) == VESK_MEMO_SIZE);
inline bool isValid(const MemoRecord&) { return true; }

/** The reason that a door stays closed. */
enum class DoorRefusal : int32_t { kNone = 0, kUnknown = 1, kDisabled = 2, kOtherDoor = 3, kOtherTime = 4 };

struct DoorAccessRecord {
  int32_t id;
  int32_t enabled;
  /** 0 for every door. */
  int32_t door;
  /** 0 for no limit. */
  uint32_t validFrom;
  uint32_t validUntil;
  /** The result of a check: 1 or 0. */
  int32_t granted;
  DoorRefusal refusal;
  int32_t reserved;
  char name[128];
  /** A code, or the number of a card. */
  char credential[64];
  char note[152];
};
static_assert(sizeof(DoorAccessRecord) == VESK_DOOR_ACCESS_SIZE);

struct PhonebookRequestRecord {
  enum Action : int32_t { kCreate = 1, kUpdate = 2, kDelete = 3, kSearch = 4 };

  Action action;
  int32_t group;
  /** The contact to delete. */
  int32_t id;
  int32_t reserved;
  /** The text to search for. */
  char text[36];
  ContactRecord contact;
};
static_assert(sizeof(PhonebookRequestRecord) == VESK_PHONEBOOK_REQUEST_SIZE);

struct VoiceMailRecord {
  uint32_t unheard;
  uint32_t heard;
};
static_assert(sizeof(VoiceMailRecord) == VESK_VOICE_MAIL_COUNT_SIZE);

enum class SmsBox : int32_t { kAll = 0, kUnread = 1, kInbox = 2, kSent = 3, kDrafts = 4 };

/** This record is only stored: the interface has no method that reads a message. */
struct SmsRecord {
  int32_t id;
  /** kInbox, kSent or kDrafts. */
  SmsBox box;
  int32_t line;
  int32_t read;
  uint32_t time;
  char number[64];
  char text[1024];
};

}  // namespace sim
