#pragma once

#include <string>
#include <string_view>

namespace sim {

/** Base64 with '+' and '/', padded, in one line. */
std::string toBase64(std::string_view bytes);

/** For one segment of a URL's path. */
std::string percentEncode(std::string_view text);

}  // namespace sim
