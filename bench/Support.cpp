#include "Support.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace vesk::bench {

PrivateRuntimeDir::PrivateRuntimeDir()
    : path_((std::filesystem::temp_directory_path() / "vesk-bench-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) fatal("mkdtemp");
  ::setenv("BINDER_RUNTIME_DIR", path_.c_str(), 1);
  ::setenv("ANDROID_LOG_TAGS", "*:S", 1);
}

PrivateRuntimeDir::~PrivateRuntimeDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

Child::Child(const std::function<void()>& work) : pid_(::fork()) {
  if (pid_ < 0) fatal("fork");
  if (pid_ > 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  work();
  ::_exit(0);
}

Child::~Child() {
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

double cpuSeconds(pid_t pid) {
  clockid_t clock;
  timespec time;
  if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &time) != 0) fatal("clock_gettime");
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double percentile(std::vector<double>* values, double share) {
  if (values->empty()) return 0;
  const auto index = static_cast<std::ptrdiff_t>(share * static_cast<double>(values->size() - 1));
  std::nth_element(values->begin(), values->begin() + index, values->end());
  return (*values)[static_cast<size_t>(index)];
}

void fatal(const char* what) {
  std::fprintf(stderr, "%s: %s\n", what, std::strerror(errno));
  std::_Exit(1);
}

}  // namespace vesk::bench
