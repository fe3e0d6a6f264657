#pragma once

#include <string>
#include <vector>

#include "Output.h"

/* The commands. Each returns the exit code of the program. */
namespace veskctl {

int listServices(const Settings& settings);
int listMethods(const std::string& interface, const Settings& settings);
int pingServices(const std::vector<std::string>& services, const Settings& settings);
/** `words` are the service, the method and its arguments. `at` is the name to look up; if it is
 * empty, the service's own name. */
int callMethod(const std::vector<std::string>& words, const std::string& at, const Settings& settings);
int watchEvents(const std::vector<std::string>& topics, const Settings& settings);

/** Prints that the service does not run, with a hint at a likely reason. Returns kNotRunning. */
int failNotRunning(const std::string& serviceName);

}  // namespace veskctl
