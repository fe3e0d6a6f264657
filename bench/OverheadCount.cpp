/*
 * OverheadCount: lists the cases of OverheadBench with their numbers of allocations.
 * OverheadCount CASE library|by_hand CALLS: makes that many calls of one case within countedCalls(), for
 * callgrind to count their instructions.
 */
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "Overhead.h"
#include "Support.h"

using namespace vesk::bench;

extern "C" [[gnu::noinline]] void countedCalls(void (*call)(), int calls) {
  for (int i = 0; i < calls; ++i) call();
}

int main(int argc, char** argv) {
  if (argc != 1 && argc != 4) {
    std::fprintf(stderr, "usage: OverheadCount [CASE library|by_hand CALLS]\n");
    return 2;
  }
  if (argc == 1) {
    for (const OverheadCase& one : overheadCases()) std::printf("%s %zu\n", one.name, one.allocations);
    return 0;
  }
  const PrivateRuntimeDir runtimeDir;
  connectToLocalServices();
  for (const OverheadCase& one : overheadCases()) {
    if (std::string_view(argv[1]) != one.name) continue;
    void (*const call)() = std::string_view(argv[2]) == "library" ? one.library : one.byHand;
    // The first call also resolves symbols, so it is not counted.
    call();
    countedCalls(call, std::atoi(argv[3]));
    return 0;
  }
  std::fprintf(stderr, "no case %s\n", argv[1]);
  return 2;
}
