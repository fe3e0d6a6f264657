#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace vesk::bench {

/** A BINDER_RUNTIME_DIR for this program and its children; also turns the log off. To be made
 * first. */
class PrivateRuntimeDir {
 public:
  PrivateRuntimeDir();
  ~PrivateRuntimeDir();
  PrivateRuntimeDir(const PrivateRuntimeDir&) = delete;
  PrivateRuntimeDir& operator=(const PrivateRuntimeDir&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/** A child process that runs `work`, and is killed when this process ends. To be made before this
 * process has started a thread or made a call. */
class Child {
 public:
  explicit Child(const std::function<void()>& work);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t pid() const { return pid_; }

 private:
  pid_t pid_;
};

/** The processor time that all threads of a process have used; 0 stands for this process. */
double cpuSeconds(pid_t pid);

/** The value below which that share of the values lies. Reorders them. */
double percentile(std::vector<double>* values, double share);

[[noreturn]] void fatal(const char* what);

}  // namespace vesk::bench
