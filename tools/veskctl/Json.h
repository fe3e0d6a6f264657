#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace veskctl {

using Json = nlohmann::ordered_json;

/** The text of a value, with a newline at the end; `indent` is that of Json::dump(). Bytes that are
 * not UTF-8 become U+FFFD. */
inline std::string dump(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace veskctl
