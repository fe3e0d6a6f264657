#include "database/RemotePhonebook.h"

#include <algorithm>

#include "common/Records.h"

namespace sim {

namespace {

constexpr RemoteEntry kBluetooth[] = {
    {"Mum", "+4930901820"},
    {"Taxi", "+4930202020"},
};

constexpr RemoteEntry kXml[] = {
    {"Reception", "100"},
    {"Canteen", "101"},
    {"Workshop", "102"},
};

constexpr RemoteEntry kLdap[] = {
    {"Dana Novak", "401"},
    {"Eric Novak", "402"},
    {"Fatima Haddad", "403"},
    {"George Ito", "404"},
};

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

bool isIn(int32_t index, size_t size) { return index >= 0 && static_cast<size_t>(index) < size; }

}  // namespace

bool matches(const ContactRecord& contact, std::string_view text) {
  const auto holdsText = [&](const auto& number) {
    return textOf(number).find(text) != std::string_view::npos;
  };
  return lower(textOf(contact.name)).find(lower(text)) != std::string::npos ||
         std::ranges::any_of(contact.numbers, holdsText);
}

std::optional<ContactRecord> RemotePhonebook::at(int32_t index) const {
  if (!isIn(index, entries_.size())) return std::nullopt;
  const RemoteEntry& entry = entries_[static_cast<size_t>(index)];
  ContactRecord contact{};
  contact.id = index + 1;
  copyText(contact.name, entry.name);
  copyText(contact.numbers[0], entry.number);
  return contact;
}

int32_t RemotePhonebook::search(std::string_view text) {
  found_.clear();
  for (int32_t index = 0; index < count(); ++index) {
    if (matches(*at(index), text)) found_.push_back(index);
  }
  return static_cast<int32_t>(found_.size());
}

std::optional<ContactRecord> RemotePhonebook::found(int32_t index) const {
  return isIn(index, found_.size()) ? at(found_[static_cast<size_t>(index)]) : std::nullopt;
}

RemotePhonebook bluetoothPhonebook() { return RemotePhonebook(kBluetooth); }
RemotePhonebook xmlPhonebook() { return RemotePhonebook(kXml); }
RemotePhonebook ldapPhonebook() { return RemotePhonebook(kLdap); }

}  // namespace sim
