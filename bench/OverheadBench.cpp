/* The overhead of the library: C calls to services of the same process, compared with the same
 * transactions written by hand. */
#include <benchmark/benchmark.h>

#include <string>

#include "Overhead.h"
#include "Support.h"

using namespace vesk::bench;

int main(int argc, char** argv) {
  const PrivateRuntimeDir runtimeDir;
  connectToLocalServices();
  for (const OverheadCase& one : overheadCases()) {
    const auto add = [&](const char* way, void (*call)()) {
      benchmark::RegisterBenchmark((std::string(one.name) + "/" + way).c_str(),
                                   [call](benchmark::State& state) {
                                     for (auto _ : state) call();
                                   });
    };
    add("by_hand", one.byHand);
    add("library", one.library);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
