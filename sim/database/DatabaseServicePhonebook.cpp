#include <algorithm>
#include <tuple>

#include "database/DatabaseServiceTemplates.h"

namespace sim {

namespace {

/** How a number names a contact or a group. */
constexpr int32_t kById = 0;
constexpr int32_t kByIndex = 1;

/** More groups than anybody has. */
constexpr int32_t kMaxGroupIds = 1000;

bool hasName(const auto& record) { return !textOf(record.name).empty(); }

/** A figure that is the same on its left and right, made from the name. */
PictureRecord draw(const ContactRecord& contact) {
  constexpr uint8_t kBlack = 0;
  constexpr uint8_t kWhite = 255;
  constexpr int32_t kSide = PictureRecord::kSide;
  PictureRecord picture{};
  picture.id = contact.id;
  picture.width = kSide;
  picture.height = kSide;
  picture.size = sizeof(picture.pixels);
  const std::string_view name = textOf(contact.picture);
  copyText(picture.name, name);

  uint32_t bits = 0;
  for (const char c : name) bits = bits * 31 + static_cast<unsigned char>(c);
  for (int32_t y = 0; y < kSide; ++y) {
    for (int32_t x = 0; x < kSide / 2; ++x) {
      bits = bits * 1664525 + 1013904223;
      const uint8_t pixel = bits >> 31 != 0 ? kBlack : kWhite;
      picture.pixels[y * kSide + x] = picture.pixels[y * kSide + kSide - 1 - x] = pixel;
    }
  }
  return picture;
}

}  // namespace

/* Contacts */

int32_t DatabaseService::listContacts(Transaction& transaction,
                                      const std::function<bool(const ContactRecord&)>& condition) {
  std::vector<ContactRecord> contacts = tables_.contacts.all(transaction);
  std::erase_if(contacts, [&](const ContactRecord& contact) { return !condition(contact); });
  std::ranges::stable_sort(contacts, {}, [](const ContactRecord& contact) { return textOf(contact.name); });
  listed_.clear();
  for (const ContactRecord& contact : contacts) listed_.push_back(contact.id);
  return static_cast<int32_t>(listed_.size());
}

int32_t DatabaseService::contactId(int32_t how, int32_t number) const {
  if (how == kById) return number;
  return how == kByIndex ? entryAt(listed_, number).value_or(kRefused) : kRefused;
}

int32_t DatabaseService::createContact(Transaction& transaction, int32_t group,
                                       const ContactRecord& contact) {
  if (!hasName(contact) || (group != 0 && !tables_.groups.find(transaction, group))) return kRefused;
  const int32_t id = tables_.contacts.add(transaction, contact);
  if (group != 0) tables_.members.add(transaction, id, group);
  return id;
}

int32_t DatabaseService::updateContact(Transaction& transaction, int32_t group,
                                       const ContactRecord& contact) {
  if (!hasName(contact) || (group != 0 && !tables_.groups.find(transaction, group))) return kRefused;
  if (!tables_.contacts.replace(transaction, contact)) return kRefused;
  if (group != 0) tables_.members.add(transaction, contact.id, group);
  return 0;
}

int32_t DatabaseService::deleteContact(Transaction& transaction, int32_t id) {
  tables_.members.removeContact(transaction, id);
  return tables_.contacts.erase(transaction, id) ? 0 : kRefused;
}

int32_t DatabaseService::searchContacts(Transaction& transaction, std::string_view text) {
  return listContacts(transaction, [&](const ContactRecord& contact) { return matches(contact, text); });
}

DatabaseService::Status DatabaseService::phonebookRequest(int32_t group, int32_t first, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    if (first < 0 || (group != 0 && !tables_.groups.find(transaction, group))) return kRefused;
    const std::vector<int32_t> members = tables_.members.contactsOf(transaction, group);
    listContacts(transaction, [&](const ContactRecord& contact) {
      return group == 0 || std::ranges::binary_search(members, contact.id);
    });
    listed_.erase(listed_.begin(), listed_.begin() + std::min(first, static_cast<int32_t>(listed_.size())));
    return static_cast<int32_t>(listed_.size());
  });
}

DatabaseService::Status DatabaseService::phonebookCommonRequest(int32_t what, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    enum { kContacts, kGroups, kBlacklist, kWhitelist, kCalls, kMemos, kDoors };
    switch (what) {
      case kContacts:
        return tables_.contacts.count(transaction);
      case kGroups:
        return tables_.groups.count(transaction);
      case kBlacklist:
        return tables_.blacklist.count(transaction);
      case kWhitelist:
        return tables_.whitelist.count(transaction);
      case kCalls:
        return tables_.calls.count(transaction);
      case kMemos:
        return tables_.memos.count(transaction);
      case kDoors:
        return tables_.doors.count(transaction);
      default:
        return kRefused;
    }
  });
}

DatabaseService::Status DatabaseService::phonebookContactRetrieve(int32_t how, int32_t number,
                                                                  CommonParcelable* contact,
                                                                  int32_t* result) {
  return show<ContactRecord>(
      [&](Transaction& transaction) { return tables_.contacts.find(transaction, contactId(how, number)); },
      contact, result);
}
DatabaseService::Status DatabaseService::phonebookContactDelete(int32_t how, int32_t number,
                                                                int32_t* result) {
  return answer(result,
                [&](Transaction& transaction) { return deleteContact(transaction, contactId(how, number)); });
}
DatabaseService::Status DatabaseService::phonebookContactCreate(int32_t group,
                                                                const CommonParcelable& contact,
                                                                int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<ContactRecord> created = unpack<ContactRecord>(contact);
    return created ? createContact(transaction, group, *created) : kRefused;
  });
}
DatabaseService::Status DatabaseService::phonebookContactUpdate(int32_t group,
                                                                const CommonParcelable& contact,
                                                                int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<ContactRecord> updated = unpack<ContactRecord>(contact);
    return updated ? updateContact(transaction, group, *updated) : kRefused;
  });
}

DatabaseService::Status DatabaseService::phonebookContactSearch(int32_t phonebook, const std::string& text,
                                                                int32_t* result) {
  constexpr int32_t kLocal = 0;
  constexpr int32_t kXml = 1;
  return answer(result, [&](Transaction& transaction) {
    if (phonebook == kXml && isXmlOpen_) return xml_.search(text);
    return phonebook == kLocal ? searchContacts(transaction, text) : kRefused;
  });
}

DatabaseService::Status DatabaseService::phonebookDbRequest(const CommonParcelable& record, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<PhonebookRequestRecord> request = unpack<PhonebookRequestRecord>(record);
    if (!request) return kRefused;
    switch (request->action) {
      case PhonebookRequestRecord::kCreate:
        return createContact(transaction, request->group, request->contact);
      case PhonebookRequestRecord::kUpdate:
        return updateContact(transaction, request->group, request->contact);
      case PhonebookRequestRecord::kDelete:
        return deleteContact(transaction, request->id);
      case PhonebookRequestRecord::kSearch:
        return searchContacts(transaction, textOf(request->text));
      default:
        return kRefused;
    }
  });
}

DatabaseService::Status DatabaseService::phonebookImageDataGet(int32_t id, CommonParcelable* picture) {
  return show<PictureRecord>(
      [&](Transaction& transaction) -> std::optional<PictureRecord> {
        const std::optional<ContactRecord> contact = tables_.contacts.find(transaction, id);
        if (!contact || textOf(contact->picture).empty()) return std::nullopt;
        return draw(*contact);
      },
      picture);
}

/* Groups */

DatabaseService::Status DatabaseService::phonebookPartOfGroupRequest(int32_t first, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    return first < 0 ? kRefused : std::max(0, tables_.groups.count(transaction) - first);
  });
}

DatabaseService::Status DatabaseService::phonebookGetContactGroupId(int32_t contact, int32_t count,
                                                                    CommonParcelable* groups,
                                                                    int32_t* result) {
  return carryOut([&](Transaction& transaction) {
    if (count < 0 || count > kMaxGroupIds || !tables_.contacts.find(transaction, contact)) return kRefused;
    std::vector<int32_t> ids = tables_.members.groupsOf(transaction, contact);
    *result = static_cast<int32_t>(ids.size());
    ids.resize(static_cast<size_t>(count));
    *groups = {ids.data(), ids.size() * sizeof(int32_t)};
    return 0;
  });
}

DatabaseService::Status DatabaseService::getPhonebookGroupInfo(int32_t how, int32_t number,
                                                               CommonParcelable* group) {
  return show<GroupRecord>(
      [&](Transaction& transaction) -> std::optional<GroupRecord> {
        std::optional<GroupRecord> found;
        if (how == kById) found = tables_.groups.find(transaction, number);
        if (how == kByIndex) found = entryAt(tables_.groups.all(transaction), number);
        if (found) {
          found->members = static_cast<int32_t>(tables_.members.contactsOf(transaction, found->id).size());
        }
        return found;
      },
      group);
}

DatabaseService::Status DatabaseService::phonebookAddContactToGroup(int32_t contact, int32_t group,
                                                                    int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    if (!tables_.contacts.find(transaction, contact) || !tables_.groups.find(transaction, group)) {
      return kRefused;
    }
    tables_.members.add(transaction, contact, group);
    return 0;
  });
}
DatabaseService::Status DatabaseService::phonebookRemoveContactFromGroup(int32_t contact, int32_t group,
                                                                         int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    return tables_.members.remove(transaction, contact, group) ? 0 : kRefused;
  });
}
DatabaseService::Status DatabaseService::phonebookAddNewGroup(const CommonParcelable& group,
                                                              int32_t* result) {
  return add(tables_.groups, group, result, hasName<GroupRecord>);
}
DatabaseService::Status DatabaseService::phonebookUpdateGroup(const CommonParcelable& group,
                                                              int32_t* result) {
  return set(tables_.groups, group, result, hasName<GroupRecord>);
}
DatabaseService::Status DatabaseService::phonebookDeleteGroup(int32_t group, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    tables_.members.removeGroup(transaction, group);
    return tables_.groups.erase(transaction, group) ? 0 : kRefused;
  });
}

/* The phonebooks that are elsewhere */

DatabaseService::Status DatabaseService::showContact(const std::optional<ContactRecord>& contact,
                                                     CommonParcelable* record, int32_t* result) {
  if (!contact) return refuseArgument();
  *record = pack(*contact);
  *result = contact->id;
  return Status::ok();
}

namespace {

/** There is one XML and one LDAP phonebook, with this number. */
constexpr int32_t kRemote = 1;

int32_t countFrom(const RemotePhonebook& phonebook, int32_t first, int32_t atMost) {
  if (first < 0 || first > phonebook.count() || atMost < 0) return kRefused;
  return std::min(phonebook.count() - first, atMost);
}

}  // namespace

DatabaseService::Status DatabaseService::requestBtPhonebookData(int32_t* result) {
  *result = bluetooth_.count();
  return Status::ok();
}
DatabaseService::Status DatabaseService::getBtPhonebookContactById(int32_t id, CommonParcelable* contact,
                                                                   int32_t* result) {
  return showContact(id > 0 ? bluetooth_.at(id - 1) : std::nullopt, contact, result);
}

DatabaseService::Status DatabaseService::openXmlPhonebook(int32_t phonebook, int32_t* result) {
  const std::lock_guard lock(mutex_);
  isXmlOpen_ = phonebook == kRemote;
  *result = isXmlOpen_ ? xml_.count() : kRefused;
  return Status::ok();
}
DatabaseService::Status DatabaseService::requestXmlPhonebookData(int32_t first, int32_t atMost,
                                                                 int32_t* result) {
  const std::lock_guard lock(mutex_);
  *result = isXmlOpen_ ? countFrom(xml_, first, atMost) : kRefused;
  return Status::ok();
}
DatabaseService::Status DatabaseService::getXmlPhonebookContactByIndex(int32_t index,
                                                                       CommonParcelable* contact,
                                                                       int32_t* result) {
  const std::lock_guard lock(mutex_);
  return showContact(isXmlOpen_ ? xml_.at(index) : std::nullopt, contact, result);
}
DatabaseService::Status DatabaseService::getXmlPhonebookSearchContactByIndex(int32_t index,
                                                                             CommonParcelable* contact,
                                                                             int32_t* result) {
  const std::lock_guard lock(mutex_);
  return showContact(isXmlOpen_ ? xml_.found(index) : std::nullopt, contact, result);
}

DatabaseService::Status DatabaseService::openLdapPhonebook(int32_t phonebook, int32_t* result) {
  const std::lock_guard lock(mutex_);
  isLdapOpen_ = phonebook == kRemote;
  isLdapSearched_ = false;
  *result = isLdapOpen_ ? ldap_.count() : kRefused;
  return Status::ok();
}
DatabaseService::Status DatabaseService::requestLdapPhonebookData(int32_t first, int32_t atMost,
                                                                  int32_t* result) {
  const std::lock_guard lock(mutex_);
  isLdapSearched_ = false;
  *result = isLdapOpen_ ? countFrom(ldap_, first, atMost) : kRefused;
  return Status::ok();
}
DatabaseService::Status DatabaseService::getLdapPhonebookContactByIndex(int32_t index,
                                                                        CommonParcelable* contact,
                                                                        int32_t* result) {
  const std::lock_guard lock(mutex_);
  if (!isLdapOpen_) return refuseArgument();
  return showContact(isLdapSearched_ ? ldap_.found(index) : ldap_.at(index), contact, result);
}
DatabaseService::Status DatabaseService::ldapContactSearchRequest(const std::string& text, int32_t* result) {
  const std::lock_guard lock(mutex_);
  isLdapSearched_ = isLdapOpen_;
  *result = isLdapOpen_ ? ldap_.search(text) : kRefused;
  return Status::ok();
}

}  // namespace sim
