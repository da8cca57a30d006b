#include "command/scheduled/ScheduledBackup.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "command/backups/VerifyFile.h"
#include "command/scheduled/CapturedOutput.h"
#include "command/scheduled/Medium.h"
#include "command/scheduled/PackageManager.h"
#include "command/scheduled/RunLock.h"
#include "command/scheduled/Systems.h"
#include "command/scheduled/Trust.h"
#include "host/include/Error.h"
#include "host/native/OsError.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Setup.h"

namespace scheduled {
namespace {

using backups::FileKind;
using stowline::BackupActions;

/// A job by its name: the engine's operation, where that keeps the path of what it wrote, and what
/// that is. An archive may have companions.
struct Job {
  const char* name;
  host::Value (BackupActions::*run)();
  std::string BackupActions::*file;
  FileKind kind;
};

constexpr Job kJobs[] = {
    {"settings", &BackupActions::createSettingFile, &BackupActions::settingfile,
     FileKind::settings},
    {"config", &BackupActions::createConfigFile, &BackupActions::configfile,
     FileKind::configuration},
    {"plugins", &BackupActions::createPluginList, &BackupActions::pluginfile,
     FileKind::plugin_list},
};

/// One run on the receiver that this process is in.
class Run {
 public:
  explicit Run(const tarball::BeginProgress& begin) : begin_(begin), host_(system_) {
    stowline::load(host_);
    requireMounted(host_);
    const auto directory = stowline::getBackupRestorePath(host_);
    if (!directory) {
      throw std::runtime_error("there is no backup directory: " + system_.whyNotMade());
    }
    directory_ = *directory;
    requireWritable();
    engine_.emplace(host_, "auto");
    requireNewestStamp(host_, directory_, engine_->executiontime);
  }

  Report go(const std::vector<std::string>& jobs) {
    for (const Job& job : kJobs) {
      if (std::ranges::find(jobs, job.name) != jobs.end()) carryOut(job);
    }
    if (report_.failure.empty()) keepHouse();
    return std::move(report_);
  }

 private:
  void requireWritable() const {
    const std::string reason = whyNotWritable(directory_);
    if (!reason.empty()) {
      throw std::runtime_error("cannot write to " + directory_ + ": " + reason);
    }
  }

  void carryOut(const Job& job) {
    JobReport report{.job = job.name, .written = {}};
    const std::string printed = runEngine(job);
    const std::string& file = (*engine_).*job.file;
    report.written.push_back(examine(file, job.kind, printed));
    for (const std::string& ending : backups::companionEndings()) {
      if (!system_.wasToWrite(file + ending)) continue;
      report.written.push_back(examine(file + ending, FileKind::user_files, printed));
    }
    if (!std::ranges::all_of(report.written, &std::string::empty, &Written::error)) fail(report);
    report_.jobs.push_back(std::move(report));
  }

  /// Returns the last line that the job's commands printed.
  std::string runEngine(const Job& job) {
    const CapturedOutput output;
    try {
      ((*engine_).*job.run)();
    } catch (const host::Error& error) {
      addFailure(std::string(job.name) + ": " + native::reasonOf(error));
    }
    return output.lastLine();
  }

  Written examine(const std::string& file, FileKind kind, const std::string& printed) {
    Written written{.file = file, .size = 0, .verdict = {}, .error = {}};
    if (!system_.exists(file)) {
      written.error = "was not written" + (printed.empty() ? "" : " (" + printed + ")");
      return written;
    }
    system_.protect(file);
    try {
      read(written, kind);
    } catch (const host::Error& error) {
      written.error = "cannot be read again: " + native::reasonOf(error);
    }
    if (!written.error.empty()) return written;
    const tarball::Verdict& verdict = written.verdict;
    const bool is_taken = kind == FileKind::user_files || isRestorable(host_, nameOf(file), kind);
    if (!verdict.sound()) {
      written.is_odd = kind != FileKind::plugin_list && !verdict.is_damaged && is_taken;
      written.error = "is not sound: " + verdict.findings.front().what;
      const std::string& member = verdict.findings.front().member;
      if (!member.empty()) written.error += ": " + member;
    } else if (!is_taken) {
      written.error = "is too small to be restored";
    } else if (kind == FileKind::plugin_list) {
      const std::string reason = whyNotComplete(system_, file);
      if (!reason.empty()) written.error = "cannot be trusted: " + reason;
    }
    return written;
  }

  /// Reads the file from its medium.
  void read(Written& written, FileKind kind) {
    sync(written.file);
    written.size = static_cast<std::uint64_t>(system_.fileSize(written.file));
    written.verdict = backups::verifyFile(written.file, kind, begin_);
  }

  static std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

  /// Takes note of why the job has failed, and takes away what it wrote unless that is but odd.
  void fail(const JobReport& report) {
    const std::string medium = whyNotWritable(directory_);
    const bool is_odd = std::ranges::all_of(report.written, [](const Written& written) {
      return written.error.empty() || written.is_odd;
    });
    for (const Written& written : report.written) {
      if (!written.error.empty()) {
        addFailure(report.job + ": " + written.file + " " + written.error);
      }
      if (!is_odd) takeBack(written.file);
    }
    if (!medium.empty()) addFailure(directory_ + ": " + medium);
  }

  void takeBack(const std::string& file) {
    if (!system_.exists(file)) return;
    try {
      system_.takeBack(file);
    } catch (const host::Error& error) {
      addFailure("it cannot be removed: " + native::reasonOf(error));
    }
  }

  void addFailure(const std::string& text) {
    if (!report_.failure.empty()) report_.failure += "; ";
    report_.failure += text;
  }

  void keepHouse() {
    try {
      sync(directory_);
    } catch (const host::Error& error) {
      addFailure("the backups may not be on their medium yet: " + native::reasonOf(error));
      return;
    }
    try {
      requireGoodSurvivors(host_, directory_, begin_);
      engine_->houseKeeping();
    } catch (const host::Error& error) {
      addFailure("an old backup cannot be deleted: " + native::reasonOf(error));
    } catch (const std::runtime_error& error) {
      addFailure(error.what());
    }
    report_.deleted = system_.removed();
  }

  const tarball::BeginProgress& begin_;
  RunLock lock_;
  System system_;
  Host host_;
  std::string directory_;
  std::optional<BackupActions> engine_;
  Report report_;
};

}  // namespace

std::vector<std::string> jobNames() {
  std::vector<std::string> names;
  for (const Job& job : kJobs) names.emplace_back(job.name);
  return names;
}

Report run(const std::vector<std::string>& jobs, const tarball::BeginProgress& begin) {
  return Run(begin).go(jobs);
}

}  // namespace scheduled
