#pragma once

#include <string>
#include <vector>

#include "command/preview/Rehearsal.h"
#include "tests/support/TemporaryDirectory.h"

namespace preview_test {

using Lines = std::vector<std::string>;

/// The receiver's directory for backups.
inline const std::string kBackups = "/media/hdd/qor-stowline/";

/// A directory with a receiver's files.
class Files {
 public:
  Files();

  /// The directory beside which nothing may be seen.
  std::string path() const { return directory_ / "receiver"; }
  std::string at(const std::string& path) const { return this->path() + path; }

  /// Makes it a receiver of the model solo2, with a directory for backups.
  void makeReceiver() const;

  /// Makes things on the receiver; the directory that they lie in must be there.
  void write(const std::string& path, const std::string& content, unsigned mode = 0644) const;
  void makeDirectory(const std::string& path) const;
  void makeLink(const std::string& path, const std::string& target) const;
  void makeHardLink(const std::string& path, const std::string& target) const;

  /// Makes a file beside the receiver.
  void writeOutside(const std::string& name, const std::string& content) const;

  /// Returns what the plan and the archives, uncompressed tar archives, change here, in lines:
  /// "ACTION PATH: OLD -> NEW", where a file is its size, and behind that the permissions where
  /// they change.
  Lines told(const preview::Plan& plan, const std::vector<std::string>& archives) const;

 private:
  support::TemporaryDirectory directory_;
};

/// Returns a tar archive of these members.
std::string tarOf(const std::vector<std::string>& members);

}  // namespace preview_test
