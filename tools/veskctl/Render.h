#pragma once

#include <binder/Status.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "Names.h"
#include "Value.h"

/* Values and outcomes as text for people and as JSON for programs. */
namespace veskctl {

using Json = nlohmann::ordered_json;

/** As printf prints it. */
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

/** In double quotes, on one line: control characters and what is not UTF-8 are escaped. */
std::string quote(std::string_view text);

/** Rows of 16 bytes, in hexadecimal and as characters, each with `indent` before it; repeated rows become one
 * "*". */
std::string hexDump(std::string_view bytes, std::string_view indent);

/** On one line, records in brief, as far as their fields are known. */
std::string brief(const Parameter& parameter, const Value& value);

/** For the answer to a call: name, type and value; records with their bytes. Ends with a newline. */
std::string inFull(const Parameter& parameter, const Value& value, size_t nameWidth);

/** An int32 as a number, a record as {size, hex, fields} and so on. */
Json toJson(const Parameter& parameter, const Value& value);

/** EX_SECURITY and the like. */
const char* exceptionName(int32_t code);

/** "ok", "EX_SERVICE_SPECIFIC 17: busy", "EX_TRANSACTION_FAILED: DEAD_OBJECT" */
std::string toText(const android::binder::Status& status);
Json toJson(const android::binder::Status& status);

/** What programs read: `indent` as of Json::dump. Never fails; what is not UTF-8 becomes U+FFFD. */
std::string dump(const Json& json, int indent);

}  // namespace veskctl
