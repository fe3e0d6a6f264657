#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/DatabaseRecords.h"

namespace sim {

/** Whether `text` is part of the name, in whichever case its ASCII letters are, or of a number. */
bool matches(const ContactRecord& contact, std::string_view text);

struct RemoteEntry {
  std::string_view name;
  std::string_view number;
};

/** A phonebook that is somewhere else, and can be read only. */
class RemotePhonebook {
 public:
  explicit RemotePhonebook(std::span<const RemoteEntry> entries) : entries_(entries) {}

  int32_t count() const { return static_cast<int32_t>(entries_.size()); }
  /** Counts from 0. */
  std::optional<ContactRecord> at(int32_t index) const;

  /** How many contacts match; found() gives them from then on. */
  int32_t search(std::string_view text);
  /** Counts from 0. */
  std::optional<ContactRecord> found(int32_t index) const;

 private:
  const std::span<const RemoteEntry> entries_;
  std::vector<int32_t> found_;
};

RemotePhonebook bluetoothPhonebook();
RemotePhonebook xmlPhonebook();
RemotePhonebook ldapPhonebook();

}  // namespace sim
