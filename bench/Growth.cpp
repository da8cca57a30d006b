#include "bench/Growth.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

void GrowthReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    all_done_ = all_done_ && !run.error_occurred;
    // Of repeated runs the median counts, where it is asked for; of single ones each its own.
    if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
    times_[run.run_name.function_name][std::atoll(run.run_name.args.c_str())] =
        run.GetAdjustedCPUTime();
  }
}

void GrowthReporter::printGrowth() const {
  std::printf(
      "\nGrowth of the CPU time from one size to the next (what is linear grows as the size "
      "does)\n");
  std::printf("%-16s %8s %10s %8s %10s %7s %7s\n", "", "size", "us", "size", "us", "size x",
              "time x");
  for (const auto& [name, times] : times_) {
    if (times.size() < 2) continue;
    const auto& [small, small_time] = *times.begin();
    const auto& [large, large_time] = *times.rbegin();
    std::printf("%-16s %8lld %10.1f %8lld %10.1f %7.1f %7.1f\n", name.c_str(), small, small_time,
                large, large_time, static_cast<double>(large) / static_cast<double>(small),
                large_time / small_time);
  }
}

}  // namespace bench
