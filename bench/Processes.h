#pragma once

namespace bench {

/// Measures the command `stowline` that lies beside this program on a newly laid-out receiver tree
/// and prints a table: how long its desk takes to the first frame, and a configuration backup as a
/// whole process against the same shell commands alone. Raises std::runtime_error when a run
/// fails.
void measureProcesses();

}  // namespace bench
