#include "ScheduledBackup.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "BackupActions.h"
#include "CapturedOutput.h"
#include "Medium.h"
#include "RunLock.h"
#include "Setup.h"
#include "backups/VerifyFile.h"
#include "host/Error.h"
#include "native/Host.h"
#include "native/NativeSystem.h"

namespace scheduled {
namespace {

using backups::FileKind;
using stowline::BackupActions;

/// A file that a job writes: what it is, how its name ends after the engine's own, and whether it
/// may be missing.
struct Product {
  FileKind kind;
  const char* suffix;
  bool is_optional;
};

/// A job by its name: the engine's operation, where that keeps the path of what it wrote, and what
/// it writes.
struct Job {
  const char* name;
  host::Value (BackupActions::*run)();
  std::string BackupActions::*file;
  std::vector<Product> products;
};

const std::vector<Job>& allJobs() {
  static const std::vector<Job> jobs = {
      {"settings",
       &BackupActions::createSettingFile,
       &BackupActions::settingfile,
       {{FileKind::settings, "", false}}},
      {"config",
       &BackupActions::createConfigFile,
       &BackupActions::configfile,
       {{FileKind::configuration, "", false}, {FileKind::user_files, "_user_files", true}}},
      {"plugins",
       &BackupActions::createPluginList,
       &BackupActions::pluginfile,
       {{FileKind::plugin_list, "", false}}},
  };
  return jobs;
}

/// The receiver. What the engine logs is in the report.
class Host : public native::Host {
 public:
  using native::Host::Host;
  void print(const std::string& /*line*/) override {}
};

/// The operating system, with what is removed and why a directory cannot be made written down.
class System : public native::NativeSystem {
 public:
  void remove(const std::string& path) override {
    NativeSystem::remove(path);
    removed.push_back(path);
  }
  void makedirs(const std::string& path) override {
    try {
      NativeSystem::makedirs(path);
    } catch (const host::Error& error) {
      why_not_made = error.message();
      throw;
    }
  }

  std::vector<std::string> removed;
  std::string why_not_made;
};

/// One run on the receiver that this process is in.
class Run {
 public:
  explicit Run(const Begin& begin) : begin_(begin), host_(system_) {
    stowline::load(host_);
    requireMounted(host_);
    const auto directory = stowline::getBackupRestorePath(host_);
    if (!directory) {
      throw std::runtime_error("there is no backup directory: " + system_.why_not_made);
    }
    directory_ = *directory;
    requireWritable();
    engine_.emplace(host_, "auto");
    requireNewStamp();
  }

  Report go(const std::vector<std::string>& jobs) {
    for (const Job& job : allJobs()) {
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

  /// The engine replaces what has its stamp; a second run within a minute shall not.
  void requireNewStamp() {
    for (const std::string& name : system_.listdir(directory_)) {
      if (name.find(engine_->executiontime + ".") != std::string::npos) {
        throw std::runtime_error("there is a scheduled backup of this minute already: " + name);
      }
    }
  }

  void carryOut(const Job& job) {
    JobReport report{.job = job.name, .written = {}};
    const std::string printed = runEngine(job);
    bool is_sound = true;
    for (const Product& product : job.products) {
      const std::string file = (*engine_).*job.file + product.suffix;
      if (product.is_optional && !system_.exists(file)) continue;
      report.written.push_back(examine(file, product.kind, printed));
      is_sound = is_sound && report.written.back().error.empty();
    }
    if (!is_sound) fail(report);
    report_.jobs.push_back(std::move(report));
  }

  /// Returns the last line that the job's commands printed.
  std::string runEngine(const Job& job) {
    const CapturedOutput output;
    try {
      ((*engine_).*job.run)();
    } catch (const host::Error& error) {
      addFailure(std::string(job.name) + ": " + error.message());
    }
    return output.lastLine();
  }

  Written examine(const std::string& file, FileKind kind, const std::string& printed) {
    Written written{.file = file, .size = 0, .verdict = {}, .error = {}};
    if (!system_.exists(file)) {
      written.error = "was not written";
    } else {
      written.size = static_cast<std::uint64_t>(system_.fileSize(file));
      written.verdict = backups::verifyFile(file, kind, begin_(file, written.size));
      if (!written.verdict.sound()) {
        const tarball::Finding& first = written.verdict.findings.front();
        written.error = "is not sound: " + first.what;
        if (!first.member.empty()) written.error += ": " + first.member;
      } else if (kind == FileKind::plugin_list && written.size == 0 && !packageManagerAnswers()) {
        written.error = "is empty, and opkg does not answer";
      }
    }
    if (!written.error.empty() && !printed.empty()) written.error += " (" + printed + ")";
    return written;
  }

  bool packageManagerAnswers() {
    const CapturedOutput output;
    return system_.system("opkg list-installed") == 0;
  }

  /// Takes note of why the job has failed, and takes away what it wrote.
  void fail(const JobReport& report) {
    const std::string medium = whyNotWritable(directory_);
    for (const Written& written : report.written) {
      if (!written.error.empty()) {
        addFailure(report.job + ": " + written.file + " " + written.error);
      }
      if (system_.exists(written.file)) system_.NativeSystem::remove(written.file);
    }
    if (!medium.empty()) addFailure(directory_ + ": " + medium);
  }

  void addFailure(const std::string& text) {
    if (!report_.failure.empty()) report_.failure += "; ";
    report_.failure += text;
  }

  void keepHouse() {
    try {
      engine_->houseKeeping();
    } catch (const host::Error& error) {
      addFailure("an old backup cannot be deleted: " + error.message());
    }
    report_.deleted = system_.removed;
  }

  const Begin& begin_;
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
  for (const Job& job : allJobs()) names.emplace_back(job.name);
  return names;
}

Report run(const std::vector<std::string>& jobs, const Begin& begin) {
  return Run(begin).go(jobs);
}

}  // namespace scheduled
