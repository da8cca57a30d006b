#include "command/scheduled/ScheduledBackup.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "base/SystemError.h"
#include "command/backups/VerifyFile.h"
#include "command/scheduled/Medium.h"
#include "command/scheduled/PackageManager.h"
#include "command/scheduled/Preconditions.h"
#include "command/scheduled/Remains.h"
#include "command/scheduled/System.h"
#include "command/scheduled/Trust.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Error.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Places.h"
#include "plugin/src/Setup.h"

namespace scheduled {
namespace {

using backups::Kind;
using backups::kKinds;
using host::operator""_t;

/// One run on the receiver that this process is in.
class Run {
 public:
  explicit Run(const tarball::BeginProgress& begin) : begin_(begin), host_(system_, settings_) {}

  Report go(const std::vector<std::string>& jobs) {
    if (attempt("", [&] { start(); })) {
      for (const Kind& kind : kKinds) {
        if (std::ranges::find(jobs, kind.job) == jobs.end()) continue;
        attempt(kind.job + std::string(": "), [&] { carryOut(kind); });
        if (!hasMedium()) break;
      }
      if (report_.failure.empty()) keepHouse();
    }
    // The engine may have made the backup directory beneath the medium; it is empty then.
    if (!gone_.empty()) rmdir(start_.directory.c_str());
    report_.deleted = system_.removed();
    return std::move(report_);
  }

 private:
  /// Runs a step. Returns whether it succeeded; if not, its reason is added to the failure, after
  /// `what`.
  template <class Step>
  bool attempt(const std::string& what, const Step& step) {
    try {
      step();
      return true;
    } catch (const std::exception& error) {
      addFailure(what + plain::reasonOf(error));
      return false;
    }
  }

  /// Raises std::exception for what keeps any backup from being made.
  void start() {
    // What the engine logs is in the report instead.
    host_.bind("print", [](host::Arguments) { return host::Object(); });
    stowline::load(host_.module());
    for (const Precondition& precondition : kPreconditions) precondition.require(start_);
    system_.removeOnlyFrom(*start_.held);
  }

  /// Returns why the medium is not there any more, "" when it is. One that was away stays so.
  const std::string& whyGone() {
    if (gone_.empty()) gone_ = start_.held->whyGone(host_);
    return gone_;
  }

  /// Whether the medium is still there; takes note of why not.
  bool hasMedium() {
    if (!whyGone().empty() && !report_.failure.ends_with(gone_)) addFailure(gone_);
    return gone_.empty();
  }

  void carryOut(const Kind& kind) {
    JobReport report{.job = kind.job, .written = {}};
    const bool has_user_files = runEngine(kind);
    const std::string file = plain::textOf(start_.engine.get(kind.file));
    report.written.push_back(examine(file, kind));
    if (has_user_files) {
      report.written.push_back(examine(file + stowline::kUserFilesEnding, backups::kUserFiles));
    }
    if (!std::ranges::all_of(report.written, &std::string::empty, &Written::error)) fail(report);
    report_.jobs.push_back(std::move(report));
  }

  /// Returns whether the engine was to archive the user's files, too.
  bool runEngine(const Kind& kind) {
    bool has_user_files = false;
    attempt(std::string(kind.job) + ": ", [&] {
      start_.engine.call(kind.operation, {});
      has_user_files = !kind.companions.empty() && stowline::userFiles(start_.engine).isTrue();
    });
    return has_user_files;
  }

  Written examine(const std::string& file, const Kind& kind) {
    Written written{.file = file, .size = 0, .verdict = {}, .error = whyGone()};
    if (!written.error.empty()) return written;
    std::error_code ignored;
    if (std::filesystem::symlink_status(file, ignored).type() ==
        std::filesystem::file_type::not_found) {
      const std::string said = system_.whyFailed(file);
      written.error = "was not written" + (said.empty() ? "" : " (" + said + ")");
      return written;
    }
    system_.protect(file);
    try {
      read(written, kind);
      judge(written, kind);
    } catch (const std::exception& error) {
      written.error = "cannot be examined: " + plain::reasonOf(error);
    }
    return written;
  }

  /// Reads the file from its medium.
  void read(Written& written, const Kind& kind) {
    sync(written.file);
    written.size = static_cast<std::uint64_t>(system_.fileSize(written.file));
    written.verdict = backups::verifyFile(written.file, kind, begin_);
  }

  /// Says why what has been read is no backup, where it is none.
  void judge(Written& written, const Kind& kind) {
    const tarball::Verdict& verdict = written.verdict;
    const bool is_taken = kind.restoretype.empty() ||
                          (isListed(host_, written.file, kind) &&
                           backups::isLargeEnough(kind, static_cast<long long>(written.size)));
    if (!verdict.sound()) {
      written.is_odd = !kind.is_list && !verdict.is_damaged && is_taken;
      written.error = "is not sound: " + backups::firstFinding(verdict);
    } else if (!is_taken) {
      written.error = "is too small to be restored";
    } else if (kind.is_list) {
      const std::string reason = whyNotComplete(system_, written.file);
      if (!reason.empty()) written.error = "cannot be trusted: " + reason;
    }
  }

  /// Takes note of why the job has failed, and takes away what it wrote unless that is but odd.
  void fail(const JobReport& report) {
    const std::string& gone = whyGone();
    const std::string medium = gone.empty() ? whyNotWritable(start_.directory) : "";
    const bool is_odd = std::ranges::all_of(report.written, [](const Written& written) {
      return written.error.empty() || written.is_odd;
    });
    for (const Written& written : report.written) {
      if (!written.error.empty() && gone.empty()) {
        addFailure(report.job + ": " + written.file + " " + written.error);
      }
      if (!is_odd) takeBack(written.file);
    }
    const std::string full = medium.empty() ? "" : start_.directory + ": " + medium;
    if (!full.empty() && report_.failure.find(full) == std::string::npos) addFailure(full);
    if (!gone.empty()) addFailure(report.job + ": " + gone);
  }

  void takeBack(const std::string& file) {
    try {
      system_.takeBack(file);
    } catch (const base::SystemError& error) {
      if (error.code() == std::errc::no_such_file_or_directory) return;
      addFailure("it cannot be removed: " + plain::reasonOf(error));
    }
  }

  void addFailure(const std::string& text) {
    if (!report_.failure.empty()) report_.failure += "; ";
    report_.failure += text;
  }

  void keepHouse() {
    const bool is_on_medium =
        attempt("the backups may not be on their medium yet: ", [&] { sync(start_.directory); });
    if (!is_on_medium) return;
    std::vector<std::string> unknown;
    const bool is_safe =
        attempt("", [&] { unknown = requireGoodSurvivors(start_, begin_); }) && hasMedium();
    if (!is_safe) return;
    if (!unknown.empty()) {
      addFailure(std::to_string(unknown.size()) +
                 " of the scheduled backups cannot be looked at: " + unknown.front());
    }
    attempt("old backups cannot be deleted: ", [&] { start_.engine.call("houseKeeping"_t, {}); });
    attempt("what a killed run has left cannot be deleted: ", [&] {
      for (const std::string& name : remains(start_)) {
        system_.remove(start_.directory + "/" + name);
      }
    });
    const std::vector<std::string>& reasons = system_.notRemoved();
    if (!reasons.empty()) {
      addFailure((reasons.size() == 1
                      ? "an old file cannot be deleted: "
                      : std::to_string(reasons.size()) + " old files cannot be deleted: ") +
                 reasons.front());
    }
    hasMedium();
  }

  const tarball::BeginProgress& begin_;
  System system_;
  native::SettingsFile settings_;
  plain::Host host_;
  Start start_{.system = system_, .host = host_};
  std::string gone_;
  Report report_;
};

}  // namespace

std::vector<std::string> jobNames() {
  std::vector<std::string> names;
  for (const Kind& kind : kKinds) names.emplace_back(kind.job);
  return names;
}

Report run(const std::vector<std::string>& jobs, const tarball::BeginProgress& begin) {
  return Run(begin).go(jobs);
}

}  // namespace scheduled
