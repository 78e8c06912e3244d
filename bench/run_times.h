// Runs the benchmarks named on the command line (all by default) with the
// console report, and gives back each one's adjusted real time (in the
// benchmark's own unit) by name, so that a program can print its time over
// a peer's measured in the same process.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace zv::bench {

inline std::map<std::string, double> runBenchmarks(int& argc, char** argv) {
  class TimesReporter : public benchmark::ConsoleReporter {
   public:
    void ReportRuns(const std::vector<Run>& runs) override {
      for (const Run& run : runs)
        times[run.benchmark_name()] = run.GetAdjustedRealTime();
      ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
  };
  benchmark::Initialize(&argc, argv);
  TimesReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return std::move(reporter.times);
}

}  // namespace zv::bench
