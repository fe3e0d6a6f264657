#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Support.h"

namespace vesk::bench {

/** Measures the processor time that a benchmark's calls take in this process and in others. */
class CpuMeter {
 public:
  CpuMeter(benchmark::State* state, const std::vector<pid_t>& others)
      : state_(state), others_(others), before_(now()) {}
  ~CpuMeter() {
    state_->counters["cpu_us"] =
        benchmark::Counter((now() - before_) * 1e6, benchmark::Counter::kAvgIterations);
  }
  CpuMeter(const CpuMeter&) = delete;
  CpuMeter& operator=(const CpuMeter&) = delete;

 private:
  double now() const {
    double sum = cpuSeconds(0);
    for (const pid_t other : others_) sum += cpuSeconds(other);
    return sum;
  }

  benchmark::State* state_;
  const std::vector<pid_t>& others_;
  double before_;
};

/** Registers a call to other processes twice: back to back, and once in two milliseconds. */
inline void registerCalls(const std::string& name, const std::string& way, const std::vector<pid_t>& others,
                          const std::function<void()>& call) {
  benchmark::RegisterBenchmark(("back_to_back/" + name + "/" + way).c_str(), [=](benchmark::State& state) {
    const CpuMeter meter(&state, others);
    for (auto _ : state) call();
  })->UseRealTime();
  benchmark::RegisterBenchmark(("seldom/" + name + "/" + way).c_str(),
                               [=](benchmark::State& state) {
                                 const CpuMeter meter(&state, others);
                                 for (auto _ : state) {
                                   std::this_thread::sleep_for(std::chrono::milliseconds(2));
                                   const auto start = std::chrono::steady_clock::now();
                                   call();
                                   const std::chrono::duration<double> took =
                                       std::chrono::steady_clock::now() - start;
                                   state.SetIterationTime(took.count());
                                 }
                               })
      ->UseManualTime()
      ->Iterations(100);
}

/** Registers a call that several threads make at once. `call` receives the number of the thread. */
inline void registerThreads(const std::string& name, const std::string& way,
                            const std::vector<int>& threadCounts, const std::function<void(size_t)>& call) {
  for (const int threads : threadCounts) {
    auto latencies = std::make_shared<std::vector<std::vector<double>>>(static_cast<size_t>(threads));
    std::string title = name;
    title.append("/").append(std::to_string(threads)).append("/").append(way);
    benchmark::RegisterBenchmark(title.c_str(),
                                 [=](benchmark::State& state) {
                                   const auto thread = static_cast<size_t>(state.thread_index());
                                   std::vector<double>& own = (*latencies)[thread];
                                   own.clear();
                                   own.reserve(static_cast<size_t>(state.max_iterations));
                                   for (auto _ : state) {
                                     const auto start = std::chrono::steady_clock::now();
                                     call(thread);
                                     const std::chrono::duration<double, std::micro> took =
                                         std::chrono::steady_clock::now() - start;
                                     own.push_back(took.count());
                                   }
                                   state.SetItemsProcessed(state.iterations());
                                   // The end of the loop is a barrier for all threads.
                                   if (thread != 0) return;
                                   std::vector<double> all;
                                   for (const std::vector<double>& some : *latencies)
                                     all.insert(all.end(), some.begin(), some.end());
                                   state.counters["p50_us"] = percentile(&all, 0.5);
                                   state.counters["p99_us"] = percentile(&all, 0.99);
                                   state.counters["p99.9_us"] = percentile(&all, 0.999);
                                 })
        ->Threads(threads)
        ->UseRealTime();
  }
}

inline int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace vesk::bench
