#include <algorithm>

#include "database/DatabaseService.h"

/* Contacts, their groups, and the remote phonebooks. */

namespace sim {

using android::binder::Status;

namespace {

/** The meaning of a number that identifies a contact or a group. */
constexpr int32_t kById = 0;
constexpr int32_t kByIndex = 1;

/** The greatest number of group ids in a reply. */
constexpr int32_t kMaxGroupIds = 1000;

/** Lower case of the ASCII letters. */
std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

/** Whether `text` is part of the name, ignoring the case of ASCII letters, or of a number. */
bool matches(const ContactRecord& contact, std::string_view text) {
  const auto hasText = [&](const auto& number) {
    return textOf(number).find(text) != std::string_view::npos;
  };
  return lower(textOf(contact.name)).find(lower(text)) != std::string::npos ||
         std::ranges::any_of(contact.numbers, hasText);
}

/** A pseudo-random picture, seeded with the picture's name. */
PictureRecord draw(const ContactRecord& contact) {
  PictureRecord picture{};
  picture.id = contact.id;
  picture.width = picture.height = PictureRecord::kSide;
  picture.size = sizeof(picture.pixels);
  copyText(picture.name, textOf(contact.picture));
  uint32_t bits = 0;
  for (const char c : textOf(contact.picture)) bits = bits * 31 + static_cast<unsigned char>(c);
  for (uint8_t& pixel : picture.pixels) {
    bits = bits * 1664525 + 1013904223;
    pixel = static_cast<uint8_t>(bits >> 24);
  }
  return picture;
}

/** There is one XML and one LDAP phonebook, with this number. */
constexpr int32_t kRemote = 1;

const std::vector<ContactRecord>& remoteContacts() {
  static const std::vector<ContactRecord> contacts = [] {
    std::vector<ContactRecord> made;
    const std::pair<const char*, const char*> entries[] = {
        {"Reception", "100"}, {"Canteen", "101"}, {"Workshop", "102"}, {"Dana Novak", "401"}};
    for (const auto& [name, number] : entries) {
      ContactRecord contact = with(&ContactRecord::name, name);
      contact.id = static_cast<int32_t>(made.size()) + 1;
      copyText(contact.numbers[0], number);
      made.push_back(contact);
    }
    return made;
  }();
  return contacts;
}

int32_t remoteCount() { return static_cast<int32_t>(remoteContacts().size()); }

int32_t countFrom(int32_t first, int32_t atMost) {
  return first < 0 || first > remoteCount() || atMost < 0 ? kRefused
                                                          : std::min(remoteCount() - first, atMost);
}

int32_t searchRemote(std::string_view text, std::vector<ContactRecord>* found) {
  *found = remoteContacts();
  std::erase_if(*found, [&](const ContactRecord& contact) { return !matches(contact, text); });
  return static_cast<int32_t>(found->size());
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
  if (!isValid(contact) || (group != 0 && !tables_.groups.find(transaction, group))) return kRefused;
  const int32_t id = tables_.contacts.add(transaction, contact);
  if (group != 0) tables_.members.add(transaction, id, group);
  return id;
}

int32_t DatabaseService::updateContact(Transaction& transaction, int32_t group,
                                       const ContactRecord& contact) {
  if (!isValid(contact) || (group != 0 && !tables_.groups.find(transaction, group))) return kRefused;
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

Status DatabaseService::phonebookRequest(int32_t group, int32_t first, int32_t* result) {
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

Status DatabaseService::phonebookCommonRequest(int32_t what, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const BlobTable* const tables[] = {&tables_.contacts,  &tables_.groups, &tables_.blacklist,
                                       &tables_.whitelist, &tables_.calls,  &tables_.memos,
                                       &tables_.doors};
    if (what < 0 || static_cast<size_t>(what) >= std::size(tables)) return kRefused;
    return tables[what]->count(transaction);
  });
}

Status DatabaseService::phonebookContactRetrieve(int32_t how, int32_t number, CommonParcelable* contact,
                                                 int32_t* result) {
  return show(
      [&](Transaction& transaction) { return tables_.contacts.find(transaction, contactId(how, number)); },
      contact, result);
}
Status DatabaseService::phonebookContactDelete(int32_t how, int32_t number, int32_t* result) {
  return answer(result,
                [&](Transaction& transaction) { return deleteContact(transaction, contactId(how, number)); });
}
Status DatabaseService::phonebookContactCreate(int32_t group, const CommonParcelable& contact,
                                               int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<ContactRecord> created = unpack<ContactRecord>(contact);
    return created ? createContact(transaction, group, *created) : kRefused;
  });
}
Status DatabaseService::phonebookContactUpdate(int32_t group, const CommonParcelable& contact,
                                               int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    const std::optional<ContactRecord> updated = unpack<ContactRecord>(contact);
    return updated ? updateContact(transaction, group, *updated) : kRefused;
  });
}

Status DatabaseService::phonebookContactSearch(int32_t phonebook, const std::string& text, int32_t* result) {
  constexpr int32_t kLocal = 0;
  constexpr int32_t kXml = 1;
  return answer(result, [&](Transaction& transaction) {
    if (phonebook == kXml) return searchRemote(text, &foundXml_);
    return phonebook == kLocal ? searchContacts(transaction, text) : kRefused;
  });
}

Status DatabaseService::phonebookDbRequest(const CommonParcelable& record, int32_t* result) {
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

Status DatabaseService::phonebookImageDataGet(int32_t id, CommonParcelable* picture) {
  return show(
      [&](Transaction& transaction) -> std::optional<PictureRecord> {
        const std::optional<ContactRecord> contact = tables_.contacts.find(transaction, id);
        if (!contact || textOf(contact->picture).empty()) return std::nullopt;
        return draw(*contact);
      },
      picture);
}

/* Groups */

Status DatabaseService::phonebookPartOfGroupRequest(int32_t first, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    return first < 0 ? kRefused : std::max(0, tables_.groups.count(transaction) - first);
  });
}

Status DatabaseService::phonebookGetContactGroupId(int32_t contact, int32_t count, CommonParcelable* groups,
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

Status DatabaseService::getPhonebookGroupInfo(int32_t how, int32_t number, CommonParcelable* group) {
  return show(
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

Status DatabaseService::phonebookAddContactToGroup(int32_t contact, int32_t group, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    if (!tables_.contacts.find(transaction, contact) || !tables_.groups.find(transaction, group)) {
      return kRefused;
    }
    tables_.members.add(transaction, contact, group);
    return 0;
  });
}
Status DatabaseService::phonebookRemoveContactFromGroup(int32_t contact, int32_t group, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    return tables_.members.remove(transaction, contact, group) ? 0 : kRefused;
  });
}
Status DatabaseService::phonebookAddNewGroup(const CommonParcelable& group, int32_t* result) {
  return add(tables_.groups, group, result);
}
Status DatabaseService::phonebookUpdateGroup(const CommonParcelable& group, int32_t* result) {
  return set(tables_.groups, group, result);
}
Status DatabaseService::phonebookDeleteGroup(int32_t group, int32_t* result) {
  return answer(result, [&](Transaction& transaction) {
    tables_.members.removeGroup(transaction, group);
    return tables_.groups.erase(transaction, group) ? 0 : kRefused;
  });
}

/* The remote phonebooks (Bluetooth, XML, LDAP), which have the same contacts. */

Status DatabaseService::requestBtPhonebookData(int32_t* result) {
  *result = remoteCount();
  return Status::ok();
}
Status DatabaseService::getBtPhonebookContactById(int32_t id, CommonParcelable* contact, int32_t* result) {
  return getXmlPhonebookContactByIndex(id > 0 ? id - 1 : kRefused, contact, result);
}

Status DatabaseService::openXmlPhonebook(int32_t phonebook, int32_t* result) {
  *result = phonebook == kRemote ? remoteCount() : kRefused;
  return Status::ok();
}
Status DatabaseService::requestXmlPhonebookData(int32_t first, int32_t atMost, int32_t* result) {
  *result = countFrom(first, atMost);
  return Status::ok();
}
Status DatabaseService::getXmlPhonebookContactByIndex(int32_t index, CommonParcelable* contact,
                                                      int32_t* result) {
  return show([&](Transaction&) { return entryAt(remoteContacts(), index); }, contact, result);
}
Status DatabaseService::getXmlPhonebookSearchContactByIndex(int32_t index, CommonParcelable* contact,
                                                            int32_t* result) {
  return show([&](Transaction&) { return entryAt(foundXml_, index); }, contact, result);
}

Status DatabaseService::openLdapPhonebook(int32_t phonebook, int32_t* result) {
  return openXmlPhonebook(phonebook, result);
}
Status DatabaseService::requestLdapPhonebookData(int32_t first, int32_t atMost, int32_t* result) {
  return answer(result,
                [&](Transaction&) { return searchRemote("", &foundLdap_), countFrom(first, atMost); });
}
Status DatabaseService::getLdapPhonebookContactByIndex(int32_t index, CommonParcelable* contact,
                                                       int32_t* result) {
  return show([&](Transaction&) { return entryAt(foundLdap_, index); }, contact, result);
}
Status DatabaseService::ldapContactSearchRequest(const std::string& text, int32_t* result) {
  return answer(result, [&](Transaction&) { return searchRemote(text, &foundLdap_); });
}

}  // namespace sim
