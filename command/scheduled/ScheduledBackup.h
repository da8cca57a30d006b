#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "command/archive/GzipFile.h"
#include "command/archive/Verify.h"

namespace scheduled {

/// A file that a job has written.
struct Written {
  std::string file;
  std::uint64_t size = 0;  ///< bytes; 0 for one that is not there
  tarball::Verdict verdict;
  std::string error;    ///< why it is no backup; "" when it was read and is sound
  bool is_odd = false;  ///< whether that is all: it can be read and restored, and stays
};

/// What came of a job.
struct JobReport {
  std::string job;
  std::vector<Written> written;
};

/// What came of a run.
struct Report {
  std::vector<JobReport> jobs;
  std::vector<std::string> deleted;  ///< the old backups, and remains of runs, that went, in order
  std::string failure;               ///< what has gone wrong; "" when all went well
};

/// The jobs that there are, in their order.
std::vector<std::string> jobNames();

/// Runs a scheduled backup on the receiver that this process is in: each of `jobs` with one stamp,
/// each result read to its end; then the oldest scheduled backups and remains() go, but only when
/// every job has brought a sound backup that the receiver's restore list takes. What is none is
/// removed again, so that it is never taken for the newest. When the medium goes away meanwhile,
/// the run ends, nothing old goes, and what was written beneath the medium is removed. Whatever
/// goes wrong is in the report; one without jobs has not begun: another run is under way, or there
/// is no model, no medium that can be written, or a clock that is behind the backups there are.
/// `begin` hears how far the results have been read.
Report run(const std::vector<std::string>& jobs, const tarball::BeginProgress& begin);

}  // namespace scheduled
