#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <vector>

namespace vesk::test {

/** Runs a program in place of the child, with the channel as its standard input. */
inline int become(const std::vector<const char*>& command) {
  constexpr int kChannelFd = 3;
  dup2(kChannelFd, STDIN_FILENO);
  dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
  std::vector<char*> argv;
  for (const char* argument : command) argv.push_back(const_cast<char*>(argument));
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  return 127;
}

}  // namespace vesk::test
