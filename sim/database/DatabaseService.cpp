#include "database/DatabaseService.h"

#include <algorithm>

#include "database/DatabaseServiceTemplates.h"
#include "phone/Phone.h"

namespace sim {

namespace {

/** A call log that is longer loses its oldest entries. */
constexpr int32_t kMaxCalls = 200;

bool isIn(SmsBox box, const SmsRecord& message) {
  switch (box) {
    case SmsBox::kAll:
      return true;
    case SmsBox::kUnread:
      return message.box == SmsBox::kInbox && message.read == 0;
    default:
      return message.box == box;
  }
}

bool isBox(int32_t value) {
  return value >= static_cast<int32_t>(SmsBox::kAll) && value <= static_cast<int32_t>(SmsBox::kDrafts);
}

SmsRecord message(SmsBox box, int32_t line, const std::string& number, const std::string& text) {
  SmsRecord record{};
  record.box = box;
  record.line = line;
  record.read = box != SmsBox::kInbox;
  record.time = wallClock();
  copyText(record.number, number);
  copyText(record.text, text);
  return record;
}

bool fits(const std::string& text) { return !text.empty() && text.size() < sizeof(SmsRecord::text); }

bool hasNumber(const auto& entry) { return !textOf(entry.number).empty(); }

}  // namespace

bool DatabaseService::prepare(std::string* error) {
  return store_->transact([this](Transaction& transaction) { tables_.create(transaction); }, error);
}

int32_t DatabaseService::perform(const Work& work, std::string* error) {
  const std::lock_guard lock(mutex_);
  int32_t result = kRefused;
  const bool kept = store_->transact(
      [&](Transaction& transaction) {
        result = work(transaction);
        if (result == kRefused) transaction.cancel();
      },
      error);
  return kept ? result : kRefused;
}

DatabaseService::Status DatabaseService::answer(int32_t* result, const Work& work) {
  *result = perform(work);
  return Status::ok();
}

DatabaseService::Status DatabaseService::carryOut(const Work& work) {
  std::string error;
  if (perform(work, &error) != kRefused) return Status::ok();
  return error.empty() ? refuseArgument()
                       : Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, error.c_str());
}

/* Short messages and voice mail */

DatabaseService::Status DatabaseService::getSMSCount(int32_t box, int32_t* count) {
  return answer(count, [&](Transaction& transaction) {
    if (!isBox(box)) return kRefused;
    const std::vector<SmsRecord> messages = tables_.messages.all(transaction);
    return static_cast<int32_t>(std::ranges::count_if(
        messages, [&](const SmsRecord& sms) { return isIn(static_cast<SmsBox>(box), sms); }));
  });
}

DatabaseService::Status DatabaseService::requestSmsData(int32_t box) {
  return isBox(box) ? Status::ok() : refuseArgument();
}

DatabaseService::Status DatabaseService::sendSms(int32_t line, const std::string& number,
                                                 const std::string& text, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const Contact* to = findContact(kDirectory, number);
    if (line == 0) line = 1;
    if (!Phone::isRegistered(line) || to == nullptr || !fits(text)) return kRefused;
    const int32_t id = tables_.messages.add(transaction, message(SmsBox::kSent, line, number, text));
    if (to->ivr) tables_.messages.add(transaction, message(SmsBox::kInbox, line, number, text));
    return id;
  });
}

DatabaseService::Status DatabaseService::storeSmsToDraft(const std::string& text) {
  return carryOut([&](Transaction& transaction) {
    return fits(text) ? tables_.messages.add(transaction, message(SmsBox::kDrafts, 0, "", text)) : kRefused;
  });
}

DatabaseService::Status DatabaseService::setSmsReadDone(int32_t id) {
  return carryOut([&](Transaction& transaction) {
    std::optional<SmsRecord> sms = tables_.messages.find(transaction, id);
    if (!sms) return kRefused;
    sms->read = 1;
    tables_.messages.put(transaction, *sms);
    return 0;
  });
}

DatabaseService::Status DatabaseService::deleteSms(int32_t id) {
  int32_t result;
  erase(tables_.messages, id, &result);
  return result == kRefused ? refuseArgument() : Status::ok();
}

DatabaseService::Status DatabaseService::deleteSmsAll(int32_t box) {
  return carryOut([&](Transaction& transaction) {
    if (!isBox(box)) return kRefused;
    return tables_.messages.eraseIf(
        transaction, [&](const SmsRecord& sms) { return isIn(static_cast<SmsBox>(box), sms); });
  });
}

DatabaseService::Status DatabaseService::getVoiceSmsCount(int32_t line, CommonParcelable* counters) {
  return carryOut([&](Transaction& transaction) {
    if (line < 1 || line > Phone::kLines) return kRefused;
    const std::optional<std::string> bytes = tables_.voiceMail.find(transaction, line);
    *counters = pack(bytes ? unpack<VoiceMailRecord>(*bytes).value_or(VoiceMailRecord{}) : VoiceMailRecord{});
    return 0;
  });
}

bool DatabaseService::receiveSms(int32_t line, const std::string& number, const std::string& text) {
  return perform([&](Transaction& transaction) {
           const bool accepted = Phone::isRegistered(line) && number.size() <= kMaxNumberLength && fits(text);
           return accepted ? tables_.messages.add(transaction, message(SmsBox::kInbox, line, number, text))
                           : kRefused;
         }) != kRefused;
}

bool DatabaseService::setVoiceMail(int32_t line, int32_t unheard, int32_t heard) {
  if (line < 1 || line > Phone::kLines || unheard < 0 || heard < 0) return false;
  const VoiceMailRecord record{.unheard = static_cast<uint32_t>(unheard),
                               .heard = static_cast<uint32_t>(heard)};
  return perform([&](Transaction& transaction) {
           tables_.voiceMail.put(transaction, line, bytesOf(record));
           return 0;
         }) != kRefused;
}

/* Blacklist and whitelist */

DatabaseService::Status DatabaseService::phonebookContactAddBlacklist(const CommonParcelable& entry,
                                                                      int32_t* result) {
  return add(tables_.blacklist, entry, result, hasNumber<BlacklistRecord>);
}
DatabaseService::Status DatabaseService::phonebookContactAddWhitelist(const CommonParcelable& entry,
                                                                      int32_t* result) {
  return add(tables_.whitelist, entry, result, hasNumber<WhitelistRecord>);
}
DatabaseService::Status DatabaseService::phonebookContactGetWhitelist(int32_t index, CommonParcelable* entry,
                                                                      int32_t* result) {
  return show<WhitelistRecord>([&](Transaction& t) { return entryAt(tables_.whitelist.all(t), index); },
                               entry, result);
}
DatabaseService::Status DatabaseService::phonebookContactGetBlacklist(int32_t index, CommonParcelable* entry,
                                                                      int32_t* result) {
  return show<BlacklistRecord>([&](Transaction& t) { return entryAt(tables_.blacklist.all(t), index); },
                               entry, result);
}
DatabaseService::Status DatabaseService::phonebookContactSetBlacklist(const CommonParcelable& entry,
                                                                      int32_t* result) {
  return set(tables_.blacklist, entry, result, hasNumber<BlacklistRecord>);
}
DatabaseService::Status DatabaseService::phonebookContactSetWhitelist(const CommonParcelable& entry,
                                                                      int32_t* result) {
  return set(tables_.whitelist, entry, result, hasNumber<WhitelistRecord>);
}
DatabaseService::Status DatabaseService::phonebookContactDeleteBlacklist(int32_t id, int32_t* result) {
  return erase(tables_.blacklist, id, result);
}
DatabaseService::Status DatabaseService::phonebookContactDeleteWhitelist(int32_t id, int32_t* result) {
  return erase(tables_.whitelist, id, result);
}
DatabaseService::Status DatabaseService::phonebookContactDeleteAllBlacklist(int32_t* result) {
  return eraseAll(tables_.blacklist, result);
}
DatabaseService::Status DatabaseService::phonebookContactDeleteAllWhitelist(int32_t* result) {
  return eraseAll(tables_.whitelist, result);
}

DatabaseService::Status DatabaseService::requestBlackWhiteListData(int32_t which) {
  return which == 0 || which == 1 ? Status::ok() : refuseArgument();
}

/* Call log */

void DatabaseService::logCall(const CallLogRecord& call) {
  perform([&](Transaction& transaction) {
    tables_.calls.add(transaction, call);
    std::vector<CallLogRecord> calls = tables_.calls.all(transaction);
    for (size_t surplus = 0; surplus + kMaxCalls < calls.size(); ++surplus) {
      tables_.calls.erase(transaction, calls[surplus].id);
    }
    if (call.kind != CallKind::kMade || call.seconds == 0 || textOf(call.number) != kVoiceMailNumber)
      return 0;
    // Who calls the voice mail hears it.
    const std::optional<std::string> bytes = tables_.voiceMail.find(transaction, call.line);
    const std::optional<VoiceMailRecord> before = bytes ? unpack<VoiceMailRecord>(*bytes) : std::nullopt;
    if (before) {
      const VoiceMailRecord after{.unheard = 0, .heard = before->heard + before->unheard};
      tables_.voiceMail.put(transaction, call.line, bytesOf(after));
    }
    return 0;
  });
}

DatabaseService::Status DatabaseService::getClogById(int32_t id, CommonParcelable* entry, int32_t* result) {
  return show<CallLogRecord>(
      [&](Transaction& transaction) -> std::optional<CallLogRecord> {
        int32_t older = 0;
        const std::vector<CallLogRecord> calls = tables_.calls.all(transaction);
        for (CallLogRecord call : calls) {
          call.older = older;
          older = call.id;
          if (call.id == id || (id == 0 && call.id == calls.back().id)) return call;
        }
        return std::nullopt;
      },
      entry, result);
}

DatabaseService::Status DatabaseService::clogDelete(int32_t how, int32_t number, int32_t* result) {
  constexpr int32_t kOne = 0;
  constexpr int32_t kAllOfKind = 1;
  if (how == kOne) return erase(tables_.calls, number, result);
  return answer(result, [&](Transaction& transaction) {
    if (how != kAllOfKind) return kRefused;
    return tables_.calls.eraseIf(transaction, [&](const CallLogRecord& call) {
      return number == 0 || static_cast<int32_t>(call.kind) == number;
    });
  });
}

/* Memos */

DatabaseService::Status DatabaseService::getMemoNum(int32_t* count) {
  return answer(count, [&](Transaction& transaction) { return tables_.memos.count(transaction); });
}
DatabaseService::Status DatabaseService::setMemoInfo(const CommonParcelable& memo, int32_t* result) {
  return set(tables_.memos, memo, result, [](const MemoRecord&) { return true; });
}
DatabaseService::Status DatabaseService::delMemo(int32_t id, int32_t* result) {
  return erase(tables_.memos, id, result);
}
DatabaseService::Status DatabaseService::addMemo(const CommonParcelable& memo, int32_t* result) {
  return add(tables_.memos, memo, result, [](const MemoRecord&) { return true; });
}
DatabaseService::Status DatabaseService::requestMemoData() { return Status::ok(); }
DatabaseService::Status DatabaseService::getMemoByIndex(int32_t index, CommonParcelable* memo,
                                                        int32_t* result) {
  return show<MemoRecord>([&](Transaction& t) { return entryAt(tables_.memos.all(t), index); }, memo, result);
}

DatabaseService::Status DatabaseService::checkMemoPerMinute() {
  return carryOut([&](Transaction& transaction) {
    for (MemoRecord memo : tables_.memos.all(transaction)) {
      if (memo.done != 0 || memo.due == 0 || memo.due > wallClock()) continue;
      memo.done = 1;
      tables_.memos.put(transaction, memo);
    }
    return 0;
  });
}

}  // namespace sim
