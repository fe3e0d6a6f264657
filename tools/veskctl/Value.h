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
 * An argument as the user writes it, but for listeners:
 *
 *   int32     12, -1, 0x1f
 *   bool      true, false, yes, no, on, off, 1, 0
 *   string    as it stands
 *   int32[]   1,2,3 or [1,2,3]; nothing or [] for none
 *   record    @FILE, @- for the standard input, hex:01ff, zero:SIZE
 *
 * On failure nothing, and `error` says why.
 */
std::optional<Value> parse(Type type, const std::string& text, std::string* error);

/** In the form in which the library's proxies send it. */
android::status_t write(android::Parcel* parcel, const Value& value);
/** What the library's stubs send; `value` is touched only if that succeeds. */
android::status_t read(const android::Parcel& parcel, Type type, Value* value);

}  // namespace veskctl
