#pragma once

#include <string>
#include <vector>

#include "Output.h"

/* What veskctl does; each command gives the exit code. */
namespace veskctl {

int listServices(const Settings& settings);
int listMethods(const std::string& interface, const Settings& settings);
int pingServices(const std::vector<std::string>& services, const Settings& settings);
/** `words`: service, method, arguments. `at`: the name under which to look for the service, if it isn't its
 * own. */
int callMethod(const std::vector<std::string>& words, const std::string& at, const Settings& settings);
int watchEvents(const std::vector<std::string>& topics, const Settings& settings);

/** Says that nothing of that name runs, and where that may come from; gives kNotRunning. */
int failNotRunning(const std::string& serviceName);

}  // namespace veskctl
