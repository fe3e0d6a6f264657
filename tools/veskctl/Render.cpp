#include "Render.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <type_traits>
#include <utility>

#include "Layouts.h"

namespace veskctl {

namespace {

using android::binder::Status;

/** How much of a record of unknown layout stands on one line. */
constexpr size_t kBriefBytes = 16;

std::string hex(std::string_view bytes, const char* separator = "") {
  std::string text;
  for (const char c : bytes) {
    if (!text.empty()) text += separator;
    text += format("%02x", static_cast<unsigned char>(c));
  }
  return text;
}

/** The length of the printable UTF-8 character at the beginning; 0 if there is none. */
size_t characterLength(std::string_view text) {
  const auto at = [text](size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
  const unsigned first = at(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7f ? 1 : 0;
  const size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return 0;
  unsigned code = first & (0xffu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xc0u) != 0x80) return 0;
    code = code << 6 | (at(i) & 0x3fu);
  }
  constexpr unsigned kLeast[] = {0, 0, 0xa0, 0x800, 0x10000};  // below 0xa0 are further control characters
  const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
  return code >= kLeast[length] && code <= 0x10ffff && !isSurrogate ? length : 0;
}

int32_t int32At(std::string_view bytes, size_t offset) {
  int32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof(value));
  return value;
}

std::string_view textAt(std::string_view bytes, const Field& field) {
  const std::string_view room = bytes.substr(field.offset, field.textSize);
  return room.substr(0, room.find('\0'));
}

/** What is not zero behind the text of a field that may hold more, word by word: (offset, value). */
std::vector<std::pair<size_t, int32_t>> wordsBehind(std::string_view bytes, const Field& field) {
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
    for (const auto& [offset, word] : wordsBehind(bytes, field)) text += format(" [%zu]=%d", offset, word);
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

std::string format(const char* pattern, ...) {
  va_list args;
  va_list again;
  va_start(args, pattern);
  va_copy(again, args);
  std::string text(static_cast<size_t>(std::max(std::vsnprintf(nullptr, 0, pattern, args), 0)), '\0');
  std::vsnprintf(text.data(), text.size() + 1, pattern, again);
  va_end(again);
  va_end(args);
  return text;
}

std::string quote(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const size_t length = characterLength(text);
    if (text[0] == '"' || text[0] == '\\') quoted += '\\';
    if (length > 0) {
      quoted += text.substr(0, length);
    } else if (text[0] == '\n') {
      quoted += "\\n";
    } else if (text[0] == '\t') {
      quoted += "\\t";
    } else {
      quoted += format("\\x%02x", static_cast<unsigned char>(text[0]));
    }
    text.remove_prefix(std::max<size_t>(length, 1));
  }
  return quoted + "\"";
}

std::string hexDump(std::string_view bytes, std::string_view indent) {
  constexpr size_t kRow = 16;
  std::string text;
  std::string_view previous;
  bool repeats = false;
  for (size_t offset = 0; offset < bytes.size(); offset += kRow) {
    const std::string_view row = bytes.substr(offset, kRow);
    const bool isLast = offset + kRow >= bytes.size();
    if (row == previous && !isLast) {
      if (!std::exchange(repeats, true)) text += std::string(indent) + "*\n";
      continue;
    }
    repeats = false;
    previous = row;
    const std::string left = hex(row.substr(0, kRow / 2), " ");
    const std::string right = row.size() > kRow / 2 ? hex(row.substr(kRow / 2), " ") : "";
    std::string characters(row);
    std::ranges::replace_if(
        characters, [](char c) { return c < ' ' || c > '~'; }, '.');
    text += std::string(indent) + format("%04zx  %-23s  %-23s  |", offset, left.c_str(), right.c_str());
    text += characters + "|\n";
  }
  return text;
}

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

const char* exceptionName(int32_t code) {
  switch (code) {
#define VESKCTL_NAME(exception) \
  case Status::exception:       \
    return #exception
    VESKCTL_NAME(EX_NONE);
    VESKCTL_NAME(EX_SECURITY);
    VESKCTL_NAME(EX_BAD_PARCELABLE);
    VESKCTL_NAME(EX_ILLEGAL_ARGUMENT);
    VESKCTL_NAME(EX_NULL_POINTER);
    VESKCTL_NAME(EX_ILLEGAL_STATE);
    VESKCTL_NAME(EX_NETWORK_MAIN_THREAD);
    VESKCTL_NAME(EX_UNSUPPORTED_OPERATION);
    VESKCTL_NAME(EX_SERVICE_SPECIFIC);
    VESKCTL_NAME(EX_PARCELABLE);
    VESKCTL_NAME(EX_TRANSACTION_FAILED);
#undef VESKCTL_NAME
    default:
      return "an exception of unknown code";
  }
}

std::string toText(const Status& status) {
  if (status.isOk()) return "ok";
  const int32_t code = status.exceptionCode();
  std::string text = exceptionName(code);
  if (code == Status::EX_TRANSACTION_FAILED) {
    return text + ": " + android::statusToString(status.transactionError());
  }
  text += code == Status::EX_SERVICE_SPECIFIC ? format(" %d", status.serviceSpecificErrorCode())
                                              : format(" (%d)", code);
  const std::string message = status.exceptionMessage().c_str();
  return message.empty() ? text : text + ": " + quote(message);
}

Json toJson(const Status& status) {
  const int32_t code = status.exceptionCode();
  Json result = {{"exception", exceptionName(code)}, {"code", code}};
  if (code == Status::EX_TRANSACTION_FAILED) {
    result["transport"] = {{"name", android::statusToString(status.transactionError())},
                           {"code", status.transactionError()}};
  } else if (!status.isOk()) {
    result["message"] = std::string(status.exceptionMessage().c_str());
  }
  if (code == Status::EX_SERVICE_SPECIFIC) result["serviceSpecific"] = status.serviceSpecificErrorCode();
  return result;
}

std::string dump(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace veskctl
