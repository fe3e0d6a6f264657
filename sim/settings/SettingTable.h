#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "settings/Method.h"

namespace sim {

/** A record, of zeros until it is set. */
struct RecordOf {
  size_t size;
};

/**
 * A value of the device that methods read and set by its type alone. It is kept for each combination of the
 * arguments that are not the value itself, in order; a setter's value is its last record, or else its last
 * argument.
 */
struct Setting {
  /** Either may be none. */
  Method getter;
  Method setter;
  /** Until it is set. Switches are numbers. */
  std::variant<int32_t, std::string_view, RecordOf> preset;
  /** There is one value, whatever the other arguments are. */
  bool shared = false;

  /** The key of the value for no arguments, and the beginning of all others. */
  std::string key() const;
  std::string presetBytes() const;
  /** Whether the value may be `size` bytes long. */
  bool accepts(size_t size) const;
};

/** The setting that `method` reads or sets; null if it does neither. */
const Setting* findSetting(Method method);

}  // namespace sim
