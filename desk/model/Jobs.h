#pragma once

#include <poll.h>
#include <sys/types.h>

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "base/Descriptor.h"

namespace desk {

/// Runs programs without blocking: their output and their end are reported while the loop that owns
/// the jobs waits for them.
class Jobs {
 public:
  using OnOutput = std::function<void(const std::string& text)>;
  using OnEnd = std::function<void(int exit_status)>;

  Jobs() = default;
  ~Jobs();
  Jobs(const Jobs&) = delete;
  Jobs& operator=(const Jobs&) = delete;

  /// Starts the program `argv[0]`, found in PATH, with standard output and error reported to
  /// `on_output` and its end to `on_end`, with its exit status (128 and the signal's number when a
  /// signal ended it). Raises base::SystemError when it cannot be started.
  void start(const std::vector<std::string>& argv, OnOutput on_output, OnEnd on_end);

  /// Whether nothing is running.
  bool idle() const { return running_.empty(); }

  /// Returns what poll(2) has to watch for the running jobs.
  std::vector<pollfd> watched() const;

  /// Reports what has happened since; never blocks. What the callbacks raise passes through.
  void report();

 private:
  struct Job {
    pid_t pid;
    base::Descriptor process;  ///< readable once the program has ended
    base::Descriptor output;
    OnOutput on_output;
    OnEnd on_end;
  };

  static void readOutput(Job& job);
  std::list<Job>::iterator firstEnded();

  std::list<Job> running_;
};

}  // namespace desk
