#include "Value.h"

#include <com/qv/CommonParcelable.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace veskctl {

namespace {

using android::Parcel;
using android::status_t;
using com::qv::CommonParcelable;

/** A larger record would not fit in a transaction. */
constexpr size_t kMaxRecord = 1024 * 1024;

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

std::optional<int32_t> parseInt32(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  std::string_view digits = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
  const bool isHex = digits.starts_with("0x") || digits.starts_with("0X");
  if (isHex) digits.remove_prefix(2);
  uint32_t magnitude = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, magnitude, isHex ? 16 : 10);
  // Hexadecimal numbers may set all 32 bits.
  const uint32_t limit = isNegative ? 0x80000000u : isHex ? 0xffffffffu : 0x7fffffffu;
  if (error != std::errc() || stop != end || magnitude > limit) return std::nullopt;
  return static_cast<int32_t>(isNegative ? 0u - magnitude : magnitude);
}

std::optional<Value> asInt32(const std::string& text, std::string* error) {
  const std::optional<int32_t> number = parseInt32(text);
  if (number) return *number;
  *error = quoted(text) + " is not a number of 32 bits";
  return std::nullopt;
}

std::optional<Value> asBool(const std::string& text, std::string* error) {
  for (const char* word : {"true", "yes", "on", "1"}) {
    if (text == word) return true;
  }
  for (const char* word : {"false", "no", "off", "0"}) {
    if (text == word) return false;
  }
  *error = quoted(text) + " is neither true nor false";
  return std::nullopt;
}

std::optional<Value> asString(const std::string& text, std::string* error) {
  Parcel parcel;
  if (parcel.writeUtf8AsUtf16(text) == android::OK) return text;
  *error = "the text is not UTF-8";
  return std::nullopt;
}

std::optional<Value> asInt32s(const std::string& text, std::string* error) {
  std::string_view rest = text;
  if (rest.starts_with('[') && rest.ends_with(']')) rest = rest.substr(1, rest.size() - 2);
  std::vector<int32_t> numbers;
  for (bool more = !rest.empty(); more;) {
    const size_t comma = rest.find(',');
    const std::optional<int32_t> number = parseInt32(rest.substr(0, comma));
    if (!number) {
      *error = quoted(text) + " is not a list of numbers, such as 1,2,3";
      return std::nullopt;
    }
    numbers.push_back(*number);
    more = comma != std::string_view::npos;
    if (more) rest.remove_prefix(comma + 1);
  }
  return numbers;
}

std::optional<Value> recordFromFile(const std::string& path, std::string* error) {
  const auto close = [](FILE* file) {
    if (file != stdin) std::fclose(file);
  };
  errno = 0;
  const std::unique_ptr<FILE, decltype(close)> file(path == "-" ? stdin : std::fopen(path.c_str(), "rbe"),
                                                    close);
  std::string bytes;
  char block[65536];
  if (file != nullptr) {
    for (size_t count;
         bytes.size() <= kMaxRecord && (count = std::fread(block, 1, sizeof(block), file.get())) > 0;) {
      bytes.append(block, count);
    }
  }
  if (file == nullptr || std::ferror(file.get()) != 0) {
    *error = "can't read " + quoted(path) + ": " + std::strerror(errno);
    return std::nullopt;
  }
  if (bytes.size() > kMaxRecord) {
    *error = quoted(path) + " is larger than a record can be, 1 MiB";
    return std::nullopt;
  }
  return Record{std::move(bytes)};
}

std::optional<Value> recordFromHex(std::string_view text, std::string* error) {
  std::string digits;
  for (const char c : text) {
    if (c == ' ' || c == ':' || c == '_') continue;
    if (std::isxdigit(static_cast<unsigned char>(c)) == 0) {
      *error = quoted(std::string(1, c)) + " is not a hexadecimal digit";
      return std::nullopt;
    }
    digits += c;
  }
  if (digits.size() % 2 != 0) {
    *error = "an odd number of hexadecimal digits: " + std::to_string(digits.size());
    return std::nullopt;
  }
  std::string bytes(digits.size() / 2, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) {
    unsigned char byte = 0;
    std::from_chars(&digits[2 * i], &digits[2 * i] + 2, byte, 16);
    bytes[i] = static_cast<char>(byte);
  }
  return Record{std::move(bytes)};
}

std::optional<Value> asRecord(const std::string& text, std::string* error) {
  constexpr std::string_view kHex = "hex:";
  constexpr std::string_view kZero = "zero:";
  if (text.starts_with('@')) return recordFromFile(text.substr(1), error);
  if (text.starts_with(kHex)) return recordFromHex(std::string_view(text).substr(kHex.size()), error);
  if (text.starts_with(kZero)) {
    const std::optional<int32_t> size = parseInt32(std::string_view(text).substr(kZero.size()));
    if (size && *size >= 0 && static_cast<size_t>(*size) <= kMaxRecord) {
      return Record{std::string(static_cast<size_t>(*size), '\0')};
    }
    *error = quoted(text) + ": the size is not a number from 0 to " + std::to_string(kMaxRecord);
    return std::nullopt;
  }
  *error = quoted(text) + " is not a record: @FILE, hex:DIGITS or zero:SIZE";
  return std::nullopt;
}

/* The format of each alternative in a parcel. */

status_t writeOne(Parcel* parcel, int32_t value) { return parcel->writeInt32(value); }
status_t writeOne(Parcel* parcel, bool value) { return parcel->writeBool(value); }
status_t writeOne(Parcel* parcel, const std::string& value) { return parcel->writeUtf8AsUtf16(value); }
status_t writeOne(Parcel* parcel, const std::vector<int32_t>& value) {
  return parcel->writeInt32Vector(value);
}
status_t writeOne(Parcel* parcel, const Record& value) {
  return parcel->writeParcelable(CommonParcelable(value.bytes.data(), value.bytes.size()));
}
status_t writeOne(Parcel* parcel, const android::sp<android::IBinder>& value) {
  return parcel->writeStrongBinder(value);
}
template <class OnlyRead>
status_t writeOne(Parcel*, const OnlyRead&) {
  return android::INVALID_OPERATION;
}

status_t readOne(const Parcel& parcel, int32_t* value) { return parcel.readInt32(value); }
status_t readOne(const Parcel& parcel, bool* value) { return parcel.readBool(value); }
status_t readOne(const Parcel& parcel, std::string* value) { return parcel.readUtf8FromUtf16(value); }
status_t readOne(const Parcel& parcel, std::vector<int32_t>* value) { return parcel.readInt32Vector(value); }

status_t readOne(const Parcel& parcel, std::vector<std::string>* value) {
  std::vector<android::String16> texts;
  const status_t status = parcel.readString16Vector(&texts);
  for (const android::String16& text : texts) {
    const android::String8 utf8(text);
    value->emplace_back(utf8.c_str(), utf8.length());
  }
  return status;
}

status_t readOne(const Parcel& parcel, Record* value) {
  CommonParcelable record;
  const status_t status = parcel.readParcelable(&record);
  value->bytes.assign(record.blob().c_str(), record.blob().length());
  return status;
}

status_t readOne(const Parcel& parcel, std::vector<Record>* value) {
  int32_t count = 0;
  status_t status = parcel.readInt32(&count);
  if (status == android::OK && count < 0) return android::UNEXPECTED_NULL;
  for (int32_t i = 0; status == android::OK && i < count; ++i) {
    status = readOne(parcel, &value->emplace_back());
  }
  return status;
}

template <class T>
status_t readAs(const Parcel& parcel, Value* value) {
  T result{};
  const status_t status = readOne(parcel, &result);
  if (status == android::OK) *value = std::move(result);
  return status;
}

}  // namespace

std::optional<Value> parse(Type type, const std::string& text, std::string* error) {
  switch (type) {
    case Type::kInt32:
      return asInt32(text, error);
    case Type::kBool:
      return asBool(text, error);
    case Type::kString:
      return asString(text, error);
    case Type::kInt32s:
      return asInt32s(text, error);
    case Type::kRecord:
      return asRecord(text, error);
    case Type::kStrings:
    case Type::kRecords:
    case Type::kListener:
      break;
  }
  *error = std::string(nameOf(type)) + " cannot be an argument";
  return std::nullopt;
}

status_t write(Parcel* parcel, const Value& value) {
  return std::visit([parcel](const auto& one) { return writeOne(parcel, one); }, value);
}

status_t read(const Parcel& parcel, Type type, Value* value) {
  switch (type) {
    case Type::kInt32:
      return readAs<int32_t>(parcel, value);
    case Type::kBool:
      return readAs<bool>(parcel, value);
    case Type::kString:
      return readAs<std::string>(parcel, value);
    case Type::kInt32s:
      return readAs<std::vector<int32_t>>(parcel, value);
    case Type::kStrings:
      return readAs<std::vector<std::string>>(parcel, value);
    case Type::kRecord:
      return readAs<Record>(parcel, value);
    case Type::kRecords:
      return readAs<std::vector<Record>>(parcel, value);
    case Type::kListener:
      break;
  }
  return android::INVALID_OPERATION;
}

}  // namespace veskctl
