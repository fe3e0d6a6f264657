#include <algorithm>

#include "database/DatabaseService.h"

/* Door access. */

namespace sim {

using android::binder::Status;

namespace {

DoorRefusal check(const DoorAccessRecord& access, int32_t door, uint32_t now) {
  if (access.enabled == 0) return DoorRefusal::kDisabled;
  if (access.door != 0 && access.door != door) return DoorRefusal::kOtherDoor;
  const bool early = access.validFrom != 0 && now < access.validFrom;
  const bool late = access.validUntil != 0 && now > access.validUntil;
  return early || late ? DoorRefusal::kOtherTime : DoorRefusal::kNone;
}

/**
 * False without a credential, or with that of another record, which would make a check ambiguous.
 */
bool isUsable(const DoorAccessRecord& access, const std::vector<DoorAccessRecord>& others) {
  const std::string_view credential = textOf(access.credential);
  return !credential.empty() && std::ranges::none_of(others, [&](const DoorAccessRecord& other) {
    return other.id != access.id && textOf(other.credential) == credential;
  });
}

}  // namespace

Status DatabaseService::doorAccessInit(int32_t* result) {
  *result = 0;
  return Status::ok();
}

Status DatabaseService::doorAccessDataRequest(int32_t* result) {
  return answer(result, [&](Transaction& transaction) { return tables_.doors.count(transaction); });
}

Status DatabaseService::getDoorAccessById(int32_t id, CommonParcelable* access, int32_t* result) {
  return show([&](Transaction& transaction) { return tables_.doors.find(transaction, id); }, access, result);
}

Status DatabaseService::setDoorAccessInfo(const CommonParcelable& record, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<DoorAccessRecord> access = unpack<DoorAccessRecord>(record);
    const bool usable = access && isUsable(*access, tables_.doors.all(transaction));
    return usable && tables_.doors.replace(transaction, *access) ? 0 : kRefused;
  });
}

Status DatabaseService::addDoorAccess(const CommonParcelable& record, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    std::optional<DoorAccessRecord> access = unpack<DoorAccessRecord>(record);
    if (!access) return kRefused;
    access->id = 0;
    const bool usable = isUsable(*access, tables_.doors.all(transaction));
    return usable ? tables_.doors.add(transaction, *access) : kRefused;
  });
}

Status DatabaseService::delDoorAccessById(int32_t id, int32_t* result) {
  return erase(tables_.doors, id, result);
}

Status DatabaseService::delAllDoorAccess(int32_t* result) { return eraseAll(tables_.doors, result); }

Status DatabaseService::checkDoorAccessInfo(const std::string& credential, int32_t door,
                                            CommonParcelable* record) {
  return carryOut([&](Transaction& transaction) {
    const std::vector<DoorAccessRecord> all = tables_.doors.all(transaction);
    const auto found = std::ranges::find_if(
        all, [&](const DoorAccessRecord& access) { return textOf(access.credential) == credential; });
    DoorAccessRecord access{};
    if (found != all.end()) access = *found;
    access.refusal = found != all.end() ? check(access, door, wallClock()) : DoorRefusal::kUnknown;
    access.granted = access.refusal == DoorRefusal::kNone;
    *record = pack(access);
    return 0;
  });
}

}  // namespace sim
