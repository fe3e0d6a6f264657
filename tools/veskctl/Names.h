#pragma once

#include <span>
#include <string>
#include <string_view>

#include "interfaces/Interfaces.h"

namespace veskctl {

namespace interfaces = vesk::interfaces;
using interfaces::Interface;
using interfaces::Method;
using interfaces::Parameter;
using interfaces::Type;

/* Find interfaces and methods by the names that users type, ignoring case. A failed search returns
 * null and sets `error` to a message with the nearest names. */

/** By its short name, the name of its service, its descriptor or its class. */
const Interface* findInterface(std::span<const Interface> among, std::string_view name, std::string* error);

/** By its name or its code. */
const Method* findMethod(const Interface& interface, std::string_view nameOrCode, std::string* error);

}  // namespace veskctl
