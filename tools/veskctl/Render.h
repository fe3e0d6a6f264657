#pragma once

#include <string>

#include "Json.h"
#include "Names.h"
#include "Value.h"

/* Values as text for people and as JSON for programs. */
namespace veskctl {

/** The value on one line. A record is shown as its fields if its layout is known, otherwise as its
 * first bytes. */
std::string brief(const Parameter& parameter, const Value& value);

/** The name, type and value of a result of a call, with all bytes of a record. Ends with a
 * newline. */
std::string inFull(const Parameter& parameter, const Value& value, size_t nameWidth);

/** A record becomes {size, hex, fields}. */
Json toJson(const Parameter& parameter, const Value& value);

}  // namespace veskctl
