#pragma once

#include <string>

#include "Json.h"
#include "Names.h"
#include "Value.h"

/* Values as text for people and as JSON for programs. */
namespace veskctl {

/** On one line: the fields of a record if its layout is known, else its first bytes. */
std::string brief(const Parameter& parameter, const Value& value);

/** Name, type and value for the answer to a call; records with all their bytes. Ends with a
 * newline. */
std::string inFull(const Parameter& parameter, const Value& value, size_t nameWidth);

/** A record becomes {size, hex, fields}. */
Json toJson(const Parameter& parameter, const Value& value);

}  // namespace veskctl
