#pragma once

#include <cstdint>
#include <string_view>

namespace sim {

/** The methods of the config service, by code. */
enum class ConfigMethod : int32_t {
  none = 0,
#define METHOD(code, name, ...) name = code,
#include <com/qv/ConfigService.def>
#undef METHOD
};

/** By code. */
inline constexpr std::string_view kMethodNames[] = {
    "",
#define METHOD(code, name, ...) #name,
#include <com/qv/ConfigService.def>
#undef METHOD
};

constexpr std::string_view nameOf(ConfigMethod method) { return kMethodNames[static_cast<size_t>(method)]; }

}  // namespace sim
