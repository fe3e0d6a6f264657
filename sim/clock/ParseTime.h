#pragma once

#include <optional>
#include <string_view>

#include "clock/TimerQueue.h"
#include "common/ParseNumber.h"

namespace sim {

/** Parses a non-negative number with the unit s or ms, of at most a million seconds. */
inline std::optional<Time> parseTime(std::string_view text) {
  constexpr double kLimitMs = 1e9;
  double unit = 0;
  if (text.ends_with("ms")) {
    unit = 1;
    text.remove_suffix(2);
  } else if (text.ends_with("s")) {
    unit = 1000;
    text.remove_suffix(1);
  }
  const std::optional<double> number = parseNumber<double>(text);
  if (unit == 0 || !number || !(*number >= 0 && *number * unit <= kLimitMs)) return std::nullopt;
  return Time(static_cast<Time::rep>(*number * unit));
}

}  // namespace sim
