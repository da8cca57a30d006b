#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Descriptor.h"
#include "command/archive/Verify.h"

namespace archive_test {

using Lines = std::vector<std::string>;

/// Runs a shell command; raises std::runtime_error when it fails.
void shell(const std::string& command);

/// Returns everything that an archive says, a line for each member:
/// "TYPE MODE UID:GID SIZE MODIFIED PATH -> LINK: CONTENT". Raises what reading it raises.
Lines listed(tarball::Reader& reader);

/// An archive in a file of its own, which is in memory and in no directory.
class ArchiveFile {
 public:
  explicit ArchiveFile(const std::string& bytes);

  std::string path() const { return "/proc/self/fd/" + std::to_string(file_.number()); }
  Lines listed() const;

  /// Returns how reading the archive fails, as the error says it; empty when it does not.
  std::string damage() const;

  /// Returns what verify() has to say, a line for each finding ("WHAT: MEMBER"), then for each
  /// note.
  Lines verdict() const;

 private:
  base::Descriptor file_;
};

/// The places of the archives that the tests make.
const tarball::Places& places();

/// Returns the findings and notes of a verdict, a line for each, and how many of them have none.
Lines linesOf(const tarball::Verdict& verdict);

/// Returns the bytes of a small archive of two files and a link, as GNU tar makes it.
std::string smallArchive();

}  // namespace archive_test
