#pragma once

#include <binder/IBinder.h>
#include <binder/Parcel.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Names.h"

namespace veskctl {

/** The bytes of a CommonParcelable. */
struct Record {
  std::string bytes;
  bool operator==(const Record&) const = default;
};

/** One argument or result; the alternatives are in the order of Type. Texts are UTF-8. */
using Value = std::variant<int32_t, bool, std::string, std::vector<int32_t>, std::vector<std::string>, Record,
                           std::vector<Record>, android::sp<android::IBinder>>;

/**
 * Parses an argument of any type but listener:
 *
 *   int32     12, -1, 0x1f
 *   bool      true, false, yes, no, on, off, 1, 0
 *   string    any UTF-8
 *   int32[]   1,2,3 or [1,2,3]; empty or [] for none
 *   record    @FILE, @- for the standard input, hex:01ff, zero:SIZE
 *
 * On failure returns nothing and sets `error`.
 */
std::optional<Value> parse(Type type, const std::string& text, std::string* error);

/** Writes the value as the library's proxies do. */
android::status_t write(android::Parcel* parcel, const Value& value);
/** Reads a value as the library's stubs do. `value` changes only on success. */
android::status_t read(const android::Parcel& parcel, Type type, Value* value);

}  // namespace veskctl
