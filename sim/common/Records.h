#pragma once

#include <com/qv/CommonParcelable.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace sim {

/* Conversion between the records of the interfaces and their bytes. */

/** Copies a text, truncated to fit. Writes no terminating zero, so `to` must contain zeros. */
template <size_t Size>
void copyText(char (&to)[Size], std::string_view text) {
  text.copy(to, Size - 1);
}

/** Returns a copy of `record` with another text in one field. */
template <typename Record, size_t Size>
Record with(char (Record::*field)[Size], std::string_view text, Record record = {}) {
  std::fill(std::begin(record.*field), std::end(record.*field), '\0');
  copyText(record.*field, text);
  return record;
}

/** The text of a field, up to its zero byte or the end of the field. */
template <size_t Size>
std::string_view textOf(const char (&from)[Size]) {
  return {from, strnlen(from, Size)};
}

/** The bytes of a record, valid as long as the record. */
template <typename Record>
std::string_view bytesOf(const Record& record) {
  static_assert(std::has_unique_object_representations_v<Record>, "padding would be sent uninitialised");
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

/** Returns a copy with `extraBytes` zeros added, or with bytes removed if `extraBytes` is
 * negative. */
inline std::string resized(std::string_view bytes, int32_t extraBytes) {
  std::string result(bytes);
  const int64_t size = static_cast<int64_t>(bytes.size()) + extraBytes;
  result.resize(static_cast<size_t>(std::max<int64_t>(size, 0)));
  return result;
}

template <typename Record>
com::qv::CommonParcelable pack(const Record& record) {
  return {bytesOf(record).data(), sizeof(record)};
}

/** The record with these bytes; empty if the size does not match. */
template <typename Record>
std::optional<Record> unpack(std::string_view bytes) {
  Record record;
  if (bytes.size() != sizeof(record)) return std::nullopt;
  std::memcpy(&record, bytes.data(), sizeof(record));
  return record;
}
template <typename Record>
std::optional<Record> unpack(const com::qv::CommonParcelable& record) {
  return unpack<Record>(std::string_view(record.blob().c_str(), record.blob().length()));
}

}  // namespace sim
