// Prints every figure about speed:
//
//   1. the module's own work at two sizes each, by Google Benchmark (its options are taken, such as
//      --benchmark_filter=REGEX and --benchmark_repetitions=N);
//   2. how the times grow from the one size to the other;
//   3. whole processes on a receiver tree of its own: the desk's first frame, and a configuration
//      backup against the same tar commands without us.
//
// Build it in release, or the figures mean little. --modules leaves the whole processes out.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "bench/Growth.h"
#include "bench/Processes.h"

namespace {

/// Takes the option `name` off the command line. Returns whether it was there.
bool takeOption(int& argc, char** argv, std::string_view name) {
  for (int index = 1; index < argc; ++index) {
    if (argv[index] != name) continue;
    for (; index < argc; ++index) argv[index] = argv[index + 1];
    --argc;
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const bool modules_only = takeOption(argc, argv, "--modules");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  bench::GrowthReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.printGrowth();
  if (modules_only) return reporter.allDone() ? EXIT_SUCCESS : EXIT_FAILURE;
  try {
    bench::measureProcesses();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "stowline_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
  return reporter.allDone() ? EXIT_SUCCESS : EXIT_FAILURE;
}
