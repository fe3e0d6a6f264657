#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "commands/Commands.h"

/* The commands that have services fail, and heal. Each takes the words after it; nothing if they are not
 * understood, with the reason in `error` unless the usage tells it. */
namespace sim {

std::optional<Command> failCalls(const std::vector<std::string>& words, std::string* error);
std::optional<Command> delayCalls(const std::vector<std::string>& words, std::string* error);
std::optional<Command> distortRecords(const std::vector<std::string>& words, std::string* error);
std::optional<Command> die(const std::vector<std::string>& words, std::string* error);
std::optional<Command> heal(const std::vector<std::string>& words, std::string* error);

/** The place in kServices of the service with that name, which may be the short one. */
std::optional<size_t> findService(const std::string& name);

}  // namespace sim
