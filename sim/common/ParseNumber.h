#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace sim {

/** Parses a number; empty if `text` is anything else. */
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace sim
