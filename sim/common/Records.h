#pragma once

#include <com/qv/CommonParcelable.h>

#include <cstring>
#include <optional>
#include <string_view>
#include <type_traits>

namespace sim {

/* Between the records of the interfaces and their bytes. */

/** Cut to fit, always with a zero at the end; the record has to be zeroed before. */
template <size_t Size>
void copyText(char (&to)[Size], std::string_view text) {
  text.copy(to, Size - 1);
}

/** Up to the zero, or all of it. */
template <size_t Size>
std::string_view textOf(const char (&from)[Size]) {
  return {from, strnlen(from, Size)};
}

/** As long as the record is there. */
template <typename Record>
std::string_view bytesOf(const Record& record) {
  static_assert(std::has_unique_object_representations_v<Record>, "padding would cross uninitialised");
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

template <typename Record>
com::qv::CommonParcelable pack(const Record& record) {
  return {bytesOf(record).data(), sizeof(record)};
}

/** Nothing if the size is another one. */
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
