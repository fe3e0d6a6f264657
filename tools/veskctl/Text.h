#pragma once

#include <string>
#include <string_view>

namespace veskctl {

/** Formats like printf. */
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

/** The text in double quotes, on one line. Control characters and bytes that are not UTF-8 are
 * escaped. */
std::string quote(std::string_view text);

/** Two hexadecimal digits for each byte. */
std::string hex(std::string_view bytes, const char* separator = "");

/** Rows of 16 bytes, in hexadecimal and as characters. Each row begins with `indent`; repeated rows
 * become one "*". */
std::string hexDump(std::string_view bytes, std::string_view indent);

}  // namespace veskctl
