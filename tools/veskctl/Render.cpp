#include "Render.h"

#include <cstring>
#include <utility>

#include "Layouts.h"
#include "Text.h"

namespace veskctl {

namespace {

/** The bytes of a record of unknown layout that are shown on one line. */
constexpr size_t kBriefBytes = 16;

int32_t int32At(std::string_view bytes, size_t offset) {
  int32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof(value));
  return value;
}

std::string_view textAt(std::string_view bytes, const Field& field) {
  const std::string_view field_ = bytes.substr(field.offset, field.textSize);
  return field_.substr(0, field_.find('\0'));
}

/** The words that are not zero after the text of a field that may hold more: (offset, value). */
std::vector<std::pair<size_t, int32_t>> wordsAfterText(std::string_view bytes, const Field& field) {
  std::vector<std::pair<size_t, int32_t>> words;
  if (!field.holdsMore) return words;
  const size_t textEnd = field.offset + textAt(bytes, field).size();
  for (size_t at = (textEnd + sizeof(int32_t)) / sizeof(int32_t) * sizeof(int32_t);
       at + sizeof(int32_t) <= field.offset + field.textSize; at += sizeof(int32_t)) {
    if (const int32_t word = int32At(bytes, at); word != 0) words.emplace_back(at, word);
  }
  return words;
}

/** line=1 chan=2 name="Alice" number="200" [356]=4 */
std::string fieldsOf(const Layout& layout, std::string_view bytes) {
  std::string text;
  for (const Field& field : layout.fields) {
    if (!text.empty()) text += " ";
    text += std::string(field.name) + "=";
    text += field.textSize > 0 ? quote(textAt(bytes, field)) : std::to_string(int32At(bytes, field.offset));
    for (const auto& [offset, word] : wordsAfterText(bytes, field)) text += format(" [%zu]=%d", offset, word);
  }
  return text;
}

std::string join(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
  return "[" + text + "]";
}

std::string briefly(const Parameter&, int32_t value) { return std::to_string(value); }
std::string briefly(const Parameter&, bool value) { return value ? "true" : "false"; }
std::string briefly(const Parameter&, const std::string& value) { return quote(value); }
std::string briefly(const Parameter& parameter, const Record& value) {
  if (const Layout* layout = findLayout(parameter.name, value.bytes.size())) {
    return "{" + fieldsOf(*layout, value.bytes) + "}";
  }
  const std::string_view bytes = value.bytes;
  std::string text = "{" + std::to_string(bytes.size()) + " bytes";
  if (!bytes.empty()) text += ": " + hex(bytes.substr(0, kBriefBytes), " ");
  return text + (bytes.size() > kBriefBytes ? " ...}" : "}");
}
std::string briefly(const Parameter&, const android::sp<android::IBinder>& value) {
  return value == nullptr ? "null" : "listener";
}
template <class T>
std::string briefly(const Parameter& parameter, const std::vector<T>& values) {
  std::vector<std::string> items;
  items.reserve(values.size());
  for (const T& value : values) items.push_back(briefly(parameter, value));
  return join(items);
}

Json json(const Parameter&, int32_t value) { return value; }
Json json(const Parameter&, bool value) { return value; }
Json json(const Parameter&, const std::string& value) { return value; }
Json json(const Parameter& parameter, const Record& value) {
  Json result = {{"size", value.bytes.size()}, {"hex", hex(value.bytes)}};
  if (const Layout* layout = findLayout(parameter.name, value.bytes.size())) {
    for (const Field& field : layout->fields) {
      Json& target = result["fields"][field.name];
      if (field.textSize > 0) {
        target = std::string(textAt(value.bytes, field));
      } else {
        target = int32At(value.bytes, field.offset);
      }
    }
  }
  return result;
}
Json json(const Parameter&, const android::sp<android::IBinder>&) { return nullptr; }
template <class T>
Json json(const Parameter& parameter, const std::vector<T>& values) {
  Json result = Json::array();
  for (const T& value : values) result.push_back(json(parameter, value));
  return result;
}

std::string recordInFull(const Parameter& parameter, const Record& record, std::string_view indent) {
  std::string text = std::to_string(record.bytes.size()) + " bytes\n";
  if (const Layout* layout = findLayout(parameter.name, record.bytes.size())) {
    text += std::string(indent) + fieldsOf(*layout, record.bytes) + "\n";
  }
  return text + hexDump(record.bytes, indent);
}

}  // namespace

std::string brief(const Parameter& parameter, const Value& value) {
  return std::visit([&](const auto& one) { return briefly(parameter, one); }, value);
}

std::string inFull(const Parameter& parameter, const Value& value, size_t nameWidth) {
  std::string text =
      format("  %-*s  %-8s  ", static_cast<int>(nameWidth), parameter.name, nameOf(parameter.type));
  if (const auto* record = std::get_if<Record>(&value)) {
    return text + recordInFull(parameter, *record, "    ");
  }
  if (const auto* records = std::get_if<std::vector<Record>>(&value)) {
    text += std::to_string(records->size()) + (records->size() == 1 ? " record\n" : " records\n");
    for (size_t i = 0; i < records->size(); ++i) {
      text += format("    [%zu] ", i) + recordInFull(parameter, (*records)[i], "      ");
    }
    return text;
  }
  if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) {
    text += std::to_string(texts->size()) + (texts->size() == 1 ? " text\n" : " texts\n");
    for (size_t i = 0; i < texts->size(); ++i) text += format("    [%zu] ", i) + quote((*texts)[i]) + "\n";
    return text;
  }
  return text + brief(parameter, value) + "\n";
}

Json toJson(const Parameter& parameter, const Value& value) {
  return std::visit([&](const auto& one) { return json(parameter, one); }, value);
}

}  // namespace veskctl
