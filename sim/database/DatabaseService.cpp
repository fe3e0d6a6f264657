#include "database/DatabaseService.h"

#include <algorithm>

#include "phone/Phone.h"

/* The transactions; short messages, voice mail, blacklist and whitelist, call log, memos. */

namespace sim {

using android::binder::Status;

namespace {

/** The call log keeps this number of entries. */
constexpr int32_t kMaxCalls = 200;

bool isIn(int32_t box, const SmsRecord& message) {
  if (box == static_cast<int32_t>(SmsBox::kAll)) return true;
  if (box == static_cast<int32_t>(SmsBox::kUnread)) return message.box == SmsBox::kInbox && message.read == 0;
  return message.box == SmsBox{box};
}

bool isBox(int32_t value) {
  return value >= static_cast<int32_t>(SmsBox::kAll) && value <= static_cast<int32_t>(SmsBox::kDrafts);
}

bool isLine(int32_t line) { return line >= 1 && line <= Phone::kLines; }

bool fits(const std::string& text) { return !text.empty() && text.size() < sizeof(SmsRecord::text); }

}  // namespace

bool DatabaseService::prepare(std::string* error) {
  return store_->transact([this](Transaction& transaction) { tables_.create(transaction); }, error);
}

int32_t DatabaseService::perform(const Work& work, std::string* error) {
  const std::lock_guard lock(mutex_);
  int32_t result = kRefused;
  const bool stored = store_->transact(
      [&](Transaction& transaction) {
        result = work(transaction);
        if (result == kRefused) transaction.cancel();
      },
      error);
  return stored ? result : kRefused;
}

Status DatabaseService::answer(int32_t* result, const Work& work) {
  *result = perform(work);
  return Status::ok();
}

Status DatabaseService::carryOut(const Work& work) {
  std::string error;
  if (perform(work, &error) != kRefused) return Status::ok();
  return error.empty() ? refuse("There is no such entry") : refuse(error, Status::EX_ILLEGAL_STATE);
}

Status DatabaseService::erase(const BlobTable& table, int32_t id, int32_t* result) {
  return answer(result,
                [&](Transaction& transaction) { return table.erase(transaction, id) ? 0 : kRefused; });
}

Status DatabaseService::eraseAll(const BlobTable& table, int32_t* result) {
  return answer(result, [&](Transaction& transaction) { return table.eraseAll(transaction), 0; });
}

/* Short messages and voice mail */

Status DatabaseService::getSMSCount(int32_t box, int32_t* count) {
  return answer(count, [&](Transaction& transaction) {
    if (!isBox(box)) return kRefused;
    const std::vector<SmsRecord> messages = tables_.messages.all(transaction);
    return static_cast<int32_t>(
        std::ranges::count_if(messages, [&](const SmsRecord& sms) { return isIn(box, sms); }));
  });
}

Status DatabaseService::requestSmsData(int32_t box) {
  return isBox(box) ? Status::ok() : refuse("There is no such box");
}

Status DatabaseService::sendSms(int32_t line, const std::string& number, const std::string& text,
                                int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const Contact* to = findContact(kDirectory, number);
    if (line == 0) line = 1;
    if (!Phone::isRegistered(line) || to == nullptr || !fits(text)) return kRefused;
    const int32_t id = tables_.messages.add(transaction, message(SmsBox::kSent, line, number, text));
    if (to->ivr) tables_.messages.add(transaction, message(SmsBox::kInbox, line, number, text));
    return id;
  });
}

Status DatabaseService::storeSmsToDraft(const std::string& text) {
  return carryOut([&](Transaction& transaction) {
    return fits(text) ? tables_.messages.add(transaction, message(SmsBox::kDrafts, 0, "", text)) : kRefused;
  });
}

Status DatabaseService::setSmsReadDone(int32_t id) {
  return carryOut([&](Transaction& transaction) {
    std::optional<SmsRecord> sms = tables_.messages.find(transaction, id);
    if (!sms) return kRefused;
    sms->read = 1;
    return tables_.messages.replace(transaction, *sms) ? 0 : kRefused;
  });
}

Status DatabaseService::deleteSms(int32_t id) {
  return carryOut(
      [&](Transaction& transaction) { return tables_.messages.erase(transaction, id) ? 0 : kRefused; });
}

Status DatabaseService::deleteSmsAll(int32_t box) {
  return carryOut([&](Transaction& transaction) {
    if (!isBox(box)) return kRefused;
    return tables_.messages.eraseIf(transaction, [&](const SmsRecord& sms) { return isIn(box, sms); });
  });
}

Status DatabaseService::getVoiceSmsCount(int32_t line, CommonParcelable* counters) {
  return carryOut([&](Transaction& transaction) {
    if (!isLine(line)) return kRefused;
    *counters = pack(tables_.voiceMail.find(transaction, line).value_or(VoiceMailRecord{}));
    return 0;
  });
}

bool DatabaseService::receiveSms(int32_t line, const std::string& number, const std::string& text) {
  if (!Phone::isRegistered(line) || number.size() > kMaxNumberLength || !fits(text)) return false;
  return perform([&](Transaction& transaction) {
           return tables_.messages.add(transaction, message(SmsBox::kInbox, line, number, text));
         }) != kRefused;
}

bool DatabaseService::setVoiceMail(int32_t line, int32_t unheard, int32_t heard) {
  if (!isLine(line) || unheard < 0 || heard < 0) return false;
  const VoiceMailRecord record{.unheard = static_cast<uint32_t>(unheard),
                               .heard = static_cast<uint32_t>(heard)};
  return perform([&](Transaction& transaction) {
           return tables_.voiceMail.put(transaction, line, record), 0;
         }) != kRefused;
}

/* Blacklist and whitelist */

#define LIST(List, table)                                                                             \
  Status DatabaseService::phonebookContactAdd##List(const CommonParcelable& entry, int32_t* result) { \
    return add(tables_.table, entry, result);                                                         \
  }                                                                                                   \
  Status DatabaseService::phonebookContactGet##List(int32_t index, CommonParcelable* entry,           \
                                                    int32_t* result) {                                \
    return showAt(tables_.table, index, entry, result);                                               \
  }                                                                                                   \
  Status DatabaseService::phonebookContactSet##List(const CommonParcelable& entry, int32_t* result) { \
    return set(tables_.table, entry, result);                                                         \
  }                                                                                                   \
  Status DatabaseService::phonebookContactDelete##List(int32_t id, int32_t* result) {                 \
    return erase(tables_.table, id, result);                                                          \
  }                                                                                                   \
  Status DatabaseService::phonebookContactDeleteAll##List(int32_t* result) {                          \
    return eraseAll(tables_.table, result);                                                           \
  }
LIST(Blacklist, blacklist)
LIST(Whitelist, whitelist)
#undef LIST

Status DatabaseService::requestBlackWhiteListData(int32_t which) {
  return which == 0 || which == 1 ? Status::ok() : refuse("There is no such list");
}

/* Call log */

void DatabaseService::logCall(const CallLogRecord& call) {
  perform([&](Transaction& transaction) {
    tables_.calls.add(transaction, call);
    const std::vector<CallLogRecord> calls = tables_.calls.all(transaction);
    for (size_t surplus = 0; surplus + kMaxCalls < calls.size(); ++surplus) {
      tables_.calls.erase(transaction, calls[surplus].id);
    }
    // A call to the voice mail plays all messages.
    const bool answered = call.kind == CallKind::kMade && call.seconds != 0;
    const auto mail = tables_.voiceMail.find(transaction, call.line);
    if (mail && answered && textOf(call.number) == kVoiceMailNumber) {
      tables_.voiceMail.put(transaction, call.line, {.unheard = 0, .heard = mail->heard + mail->unheard});
    }
    return 0;
  });
}

Status DatabaseService::getClogById(int32_t id, CommonParcelable* entry, int32_t* result) {
  return show(
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

Status DatabaseService::clogDelete(int32_t how, int32_t number, int32_t* result) {
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

Status DatabaseService::getMemoNum(int32_t* count) {
  return answer(count, [&](Transaction& transaction) { return tables_.memos.count(transaction); });
}
Status DatabaseService::setMemoInfo(const CommonParcelable& memo, int32_t* result) {
  return set(tables_.memos, memo, result);
}
Status DatabaseService::delMemo(int32_t id, int32_t* result) { return erase(tables_.memos, id, result); }
Status DatabaseService::addMemo(const CommonParcelable& memo, int32_t* result) {
  return add(tables_.memos, memo, result);
}
Status DatabaseService::requestMemoData() { return Status::ok(); }
Status DatabaseService::getMemoByIndex(int32_t index, CommonParcelable* memo, int32_t* result) {
  return showAt(tables_.memos, index, memo, result);
}

Status DatabaseService::checkMemoPerMinute() {
  return carryOut([&](Transaction& transaction) {
    for (MemoRecord memo : tables_.memos.all(transaction)) {
      if (memo.done != 0 || memo.due == 0 || memo.due > wallClock()) continue;
      memo.done = 1;
      tables_.memos.replace(transaction, memo);
    }
    return 0;
  });
}

}  // namespace sim
