#include "settings/Settings.h"

#include <charconv>
#include <optional>
#include <system_error>

namespace sim {

namespace {

struct Numbered {
  int32_t number;
  std::string rest;
};

std::optional<Numbered> splitNumber(std::string_view text) {
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  return Numbered{number, std::string(end, text.data() + text.size())};
}

}  // namespace

void extendKey(std::string& key, std::string_view part) {
  key += '/';
  for (const char c : part) {
    if (c == '/' || c == '\\') key += '\\';
    key += c;
  }
}

std::string joinKey(std::initializer_list<std::string_view> parts) {
  std::string key;
  for (const std::string_view part : parts) extendKey(key, part);
  return key;
}

std::set<int32_t> numbersAfter(const Values& values, const std::string& prefix) {
  std::set<int32_t> numbers;
  for (auto entry = values.lower_bound(prefix); entry != values.end() && entry->first.starts_with(prefix);
       ++entry) {
    const auto numbered = splitNumber(std::string_view(entry->first).substr(prefix.size()));
    if (numbered) numbers.insert(numbered->number);
  }
  return numbers;
}

void eraseNumbered(Values& values, const std::string& prefix, int32_t number) {
  Values moved;
  for (auto entry = values.lower_bound(prefix); entry != values.end() && entry->first.starts_with(prefix);) {
    const auto numbered = splitNumber(std::string_view(entry->first).substr(prefix.size()));
    if (!numbered || numbered->number < number) {
      ++entry;
      continue;
    }
    if (numbered->number > number) {
      moved[prefix + std::to_string(numbered->number - 1) + numbered->rest] = std::move(entry->second);
    }
    entry = values.erase(entry);
  }
  values.merge(moved);
}

bool Settings::load(const Values& factory, std::string* error) {
  Values saved;
  const bool loaded = store_->transact(
      [&](Transaction& transaction) {
        transaction.run(
            "CREATE TABLE IF NOT EXISTS settings (key BLOB PRIMARY KEY, value BLOB NOT NULL) WITHOUT ROWID");
        transaction.run("SELECT key, value FROM settings", {},
                        [&](const Row& row) { saved[row.bytes(0)] = row.bytes(1); });
      },
      error);
  if (!loaded) return false;
  const std::lock_guard lock(mutex_);
  if (saved.empty()) {
    values_ = factory;
  } else {
    values_ = std::move(saved);
  }
  return true;
}

bool Settings::save(std::string* error) const {
  // Locked during the writing, so that the later of two calls writes last.
  const std::lock_guard lock(mutex_);
  return store_->transact(
      [&](Transaction& transaction) {
        transaction.run("DELETE FROM settings");
        for (const auto& [key, value] : values_) {
          transaction.run("INSERT INTO settings VALUES (?, ?)", {Blob{key}, Blob{value}});
        }
      },
      error);
}

}  // namespace sim
