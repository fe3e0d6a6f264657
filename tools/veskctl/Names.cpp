#include "Names.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <numeric>
#include <utility>
#include <vector>

namespace veskctl {

namespace {

constexpr size_t kMaxSuggestions = 3;

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

/** The Levenshtein distance: the least number of insertions, deletions and replacements. */
size_t distance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = std::exchange(row[0], i + 1);
    for (size_t j = 0; j < b.size(); ++j) {
      const size_t exchanged = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

/** "; did you mean x, y?" with the nearest of the names; empty if none is near. */
std::string suggestion(std::string_view wanted, const std::vector<const char*>& names) {
  const std::string lower = lowerCase(wanted);
  std::vector<std::pair<size_t, const char*>> near;
  for (const char* name : names) {
    const std::string candidate = lowerCase(name);
    // A part of a name suggests every name that contains it.
    const bool contains = lower.size() >= 3 && candidate.find(lower) != std::string::npos;
    const size_t difference = contains ? 1 : distance(lower, candidate);
    if (difference <= std::max<size_t>(2, lower.size() / 4)) near.emplace_back(difference, name);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  if (near.size() > kMaxSuggestions) near.resize(kMaxSuggestions);
  std::string text;
  for (const auto& [difference, name] : near)
    text += (text.empty() ? "; did you mean " : ", ") + std::string(name);
  return text.empty() ? text : text + "?";
}

}  // namespace

const Interface* findInterface(std::span<const Interface> among, std::string_view name, std::string* error) {
  const std::string wanted = lowerCase(name);
  std::vector<const char*> names;
  for (const Interface& interface : among) {
    const std::string className = interface.className;
    for (const std::string& known : {std::string(interface.name), interface.serviceName(),
                                     interface.descriptor(), className, "I" + className}) {
      if (wanted == lowerCase(known)) return &interface;
    }
    names.push_back(interface.name);
  }
  *error = "there is no service '" + std::string(name) + "'";
  const std::string near = suggestion(name, names);
  if (near.empty()) {
    *error += "; there are";
    for (const char* known : names) *error += std::string(known == names.front() ? " " : ", ") + known;
  }
  *error += near;
  return nullptr;
}

const Method* findMethod(const Interface& interface, std::string_view nameOrCode, std::string* error) {
  uint32_t code = 0;
  const char* const end = nameOrCode.data() + nameOrCode.size();
  const auto parsed = std::from_chars(nameOrCode.data(), end, code);
  if (parsed.ec == std::errc() && parsed.ptr == end) {
    if (const Method* method = interface.find(code)) return method;
    *error = interface.descriptor() + " has no method " + std::string(nameOrCode) + "; its codes are 1 to " +
             std::to_string(interface.methods.size());
    return nullptr;
  }

  const std::string wanted = lowerCase(nameOrCode);
  std::vector<const char*> names;
  for (const Method& method : interface.methods) {
    if (wanted == lowerCase(method.name)) return &method;
    names.push_back(method.name);
  }
  *error = interface.descriptor() + " has no method '" + std::string(nameOrCode) + "'" +
           suggestion(nameOrCode, names);
  return nullptr;
}

}  // namespace veskctl
