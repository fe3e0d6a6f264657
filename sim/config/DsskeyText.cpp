#include "config/DsskeyText.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "common/ParseNumber.h"
#include "common/Records.h"

namespace sim {

namespace {

struct NumberField {
  std::string_view name;
  int32_t DsskeyRecord::*member;
};

constexpr NumberField kNumbers[] = {
    {"line=", &DsskeyRecord::line}, {"icon=", &DsskeyRecord::icon}, {"theme=", &DsskeyRecord::theme}};
constexpr std::string_view kTitle = "title=";

std::string escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == ';' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/** The parts between the semicolons. */
std::vector<std::string> split(std::string_view words) {
  std::vector<std::string> parts(1);
  for (size_t i = 0; i < words.size(); ++i) {
    if (words[i] == ';') {
      parts.emplace_back();
      continue;
    }
    if (words[i] == '\\' && i + 1 < words.size()) ++i;
    parts.back() += words[i];
  }
  return parts;
}

template <size_t Size>
bool store(std::string_view text, char (&to)[Size]) {
  if (text.size() >= Size) return false;
  copyText(to, text);
  return true;
}

bool takeField(std::string_view part, DsskeyRecord* key) {
  if (part.starts_with(kTitle)) return store(part.substr(kTitle.size()), key->title);
  for (const auto& [name, member] : kNumbers) {
    if (!part.starts_with(name)) continue;
    const auto number = parseNumber<int32_t>(part.substr(name.size()));
    if (number) key->*member = *number;
    return number.has_value();
  }
  return false;
}

}  // namespace

std::optional<vesk_dsskey_value> formatDsskey(const DsskeyRecord& key) {
  std::string words = escape(textOf(key.value));
  for (const auto& [name, member] : kNumbers) {
    if (key.*member != 0) words.append(";").append(name).append(std::to_string(key.*member));
  }
  if (key.title[0] != '\0') words.append(";").append(kTitle).append(escape(textOf(key.title)));

  vesk_dsskey_value value{};
  value.type = key.type;
  if (!store(words, value.text)) return std::nullopt;
  const std::optional<DsskeyRecord> again = parseDsskey(value);
  return again && std::memcmp(&*again, &key, sizeof(key)) == 0 ? std::optional(value) : std::nullopt;
}

std::optional<DsskeyRecord> parseDsskey(const vesk_dsskey_value& words) {
  DsskeyRecord key{};
  key.type = words.type;
  const std::vector<std::string> parts = split(textOf(words.text));
  if (!store(parts[0], key.value)) return std::nullopt;
  for (size_t i = 1; i < parts.size(); ++i) {
    if (!takeField(parts[i], &key)) return std::nullopt;
  }
  return key;
}

}  // namespace sim
