#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "settings/ConfigMethod.h"
#include "settings/Settings.h"

namespace sim {

/** A record that begins with a text and otherwise contains zeros. */
struct RecordOf {
  size_t size;
  std::string_view text = {};
};

/** The number of values that are set for another getter. */
struct CountOf {
  ConfigMethod getter;
};

/**
 * A value that one method sets and another returns. The value is the last record of the setter or,
 * without a record, its last argument. There is a separate value for each combination of the other
 * arguments.
 */
struct Setting {
  /** Either may be ConfigMethod::none. */
  ConfigMethod getter;
  ConfigMethod setter;
  /** The value before it is set. Switches are numbers. */
  std::variant<int32_t, std::string_view, RecordOf, CountOf> preset;
  /** True if there is one value for all combinations of the other arguments. */
  bool shared = false;

  /** The key of the value without arguments, and the prefix of all others. */
  std::string key() const;
  std::string presetBytes(const Values& values) const;
  /** Whether the value may be `size` bytes long. */
  bool accepts(size_t size) const;
};

/** The setting that `method` returns or sets; null without one. */
const Setting* findSetting(ConfigMethod method);

}  // namespace sim
