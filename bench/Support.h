#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace vesk::bench {

/** A meeting place of this program and its children alone, where nothing is logged. To be made first. */
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

/** Another process, which does `work` and ends with this one. To be made while this one has no thread yet and
 * has not called anybody. */
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

/** Processor time that a process, with all its threads, has used; 0 is this one. */
double cpuSeconds(pid_t pid);

/** How long calls took, and the value below which that share of them stayed. */
double percentile(std::vector<double>* values, double share);

[[noreturn]] void fatal(const char* what);

}  // namespace vesk::bench
