#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints the runs as they end and keeps their times, to show how they grow with the size.
class GrowthReporter : public benchmark::ConsoleReporter {
 public:
  GrowthReporter() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  /// Prints a row for every benchmark that ran with two sizes.
  void printGrowth() const;

  /// Whether every benchmark has done its work.
  bool allDone() const { return all_done_; }

 private:
  /// The CPU time of one round in microseconds, by the size: what else the machine does is not in
  /// it.
  using Times = std::map<long long, double>;

  std::map<std::string, Times> times_;
  bool all_done_ = true;
};

}  // namespace bench
