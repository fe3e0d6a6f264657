#include "call/CallRecords.h"

#include <cstddef>

#include "common/Records.h"

namespace sim {

namespace {

struct CallInfoRecord {
  int32_t line;
  int32_t chan;
  char name[256];
  char number[kMaxNumberLength + 1];
  int32_t incoming;
  int32_t muted;
  int32_t video;
  int32_t reserved[4];
  int32_t state;
};
static_assert(sizeof(CallInfoRecord) == 360 && offsetof(CallInfoRecord, number) == 264 &&
              offsetof(CallInfoRecord, state) == 356);

struct AutoRedialRecord {
  int32_t maxtimes;
  int32_t interval;
  char dialNumber[512];
  int32_t currenttimes;
};
static_assert(sizeof(AutoRedialRecord) == 524);

struct CompletionRecord {
  char dialNumber[512];
  int32_t line;
};
static_assert(sizeof(CompletionRecord) == 516);

struct SnapshotRecord {
  int32_t chan;
  int32_t index;
  int32_t takenAtMs;
  int32_t width;
  int32_t height;
  char number[kMaxNumberLength + 1];
  char name[172];
};
static_assert(sizeof(SnapshotRecord) == 256);

constexpr int32_t kPictureWidth = 640;
constexpr int32_t kPictureHeight = 480;

}  // namespace

com::qv::CommonParcelable toRecord(const CallInfo& info) {
  CallInfoRecord record{};
  record.line = info.line;
  record.chan = info.chan;
  copyText(record.name, info.name);
  copyText(record.number, info.number);
  record.incoming = info.incoming;
  record.muted = info.muted;
  record.video = info.video;
  record.state = static_cast<int32_t>(info.state);
  return pack(record);
}

com::qv::CommonParcelable toRecord(const AutoRedialInfo& info) {
  AutoRedialRecord record{};
  record.maxtimes = info.maxTimes;
  record.interval = info.intervalSeconds;
  copyText(record.dialNumber, info.number);
  record.currenttimes = info.times;
  return pack(record);
}

com::qv::CommonParcelable toRecord(const CompletionInfo& info) {
  CompletionRecord record{};
  copyText(record.dialNumber, info.number);
  record.line = info.line;
  return pack(record);
}

com::qv::CommonParcelable toRecord(const Snapshot& snapshot) {
  SnapshotRecord record{};
  record.chan = snapshot.chan;
  record.index = snapshot.index;
  record.takenAtMs = static_cast<int32_t>(snapshot.takenAt.count());
  record.width = kPictureWidth;
  record.height = kPictureHeight;
  copyText(record.number, snapshot.number);
  copyText(record.name, snapshot.name);
  return pack(record);
}

}  // namespace sim
