#pragma once

/* Bodies for DatabaseService's own sources: what is alike for all kinds of records. */

#include "database/DatabaseService.h"
#include "phone/Phone.h"

namespace sim {

inline DatabaseService::Status refuseArgument() {
  return android::binder::Status::fromExceptionCode(android::binder::Status::EX_ILLEGAL_ARGUMENT,
                                                    "There is nothing like that here");
}

/** Counts from 0. */
template <typename Record>
std::optional<Record> entryAt(const std::vector<Record>& records, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= records.size()) return std::nullopt;
  return records[static_cast<size_t>(index)];
}

template <typename Record>
DatabaseService::Status DatabaseService::show(const std::function<std::optional<Record>(Transaction&)>& find,
                                              CommonParcelable* record, int32_t* result) {
  return carryOut([&](Transaction& transaction) {
    const std::optional<Record> found = find(transaction);
    if (!found) return kRefused;
    *record = pack(*found);
    if (result != nullptr) *result = found->id;
    return 0;
  });
}

template <typename Record, typename Check>
DatabaseService::Status DatabaseService::add(const RecordTable<Record>& table, const CommonParcelable& record,
                                             int32_t* result, Check check) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<Record> added = unpack<Record>(record);
    return added && check(*added) ? table.add(transaction, *added) : kRefused;
  });
}

template <typename Record, typename Check>
DatabaseService::Status DatabaseService::set(const RecordTable<Record>& table, const CommonParcelable& record,
                                             int32_t* result, Check check) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<Record> changed = unpack<Record>(record);
    return changed && check(*changed) && table.replace(transaction, *changed) ? 0 : kRefused;
  });
}

template <typename Record>
DatabaseService::Status DatabaseService::erase(const RecordTable<Record>& table, int32_t id,
                                               int32_t* result) {
  return answer(result,
                [&](Transaction& transaction) { return table.erase(transaction, id) ? 0 : kRefused; });
}

template <typename Record>
DatabaseService::Status DatabaseService::eraseAll(const RecordTable<Record>& table, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    table.eraseAll(transaction);
    return 0;
  });
}

}  // namespace sim
