#pragma once

#include <string>
#include <vector>

#include "Output.h"

/* The commands. Each returns the exit code of the program. */
namespace veskctl {

int listServices(const Settings& settings);
int listMethods(const std::string& interface, const Settings& settings);
int pingServices(const std::vector<std::string>& services, const Settings& settings);
/** `words`: service, method, arguments. `at`: the name to look the service up by, or empty for its
 * own. */
int callMethod(const std::vector<std::string>& words, const std::string& at, const Settings& settings);
int watchEvents(const std::vector<std::string>& topics, const Settings& settings);

/** Prints that no such service runs, with a hint at a likely reason. Returns kNotRunning. */
int failNotRunning(const std::string& serviceName);

}  // namespace veskctl
