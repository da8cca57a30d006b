#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Descriptor.h"
#include "command/archive/Stream.h"
#include "command/archive/Verify.h"

namespace archive_test {

using Lines = std::vector<std::string>;

/// Runs a shell command; raises std::runtime_error when it fails.
void shell(const std::string& command);

/// Returns everything that an archive says, a line for each member:
/// "TYPE MODE UID:GID SIZE MODIFIED PATH -> LINK: CONTENT". Raises what reading it raises.
Lines listed(tarball::Reader& reader);

/// A tar archive in memory that nobody has compressed, read in pieces of at most this size.
class Bytes : public tarball::Stream {
 public:
  explicit Bytes(std::string bytes, std::size_t piece = 65536)
      : bytes_(std::move(bytes)), piece_(piece) {}

  std::string_view read() override;
  std::uint64_t compressed() const override { return at_; }

 private:
  std::string bytes_;
  std::size_t piece_;
  std::size_t at_ = 0;
};

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
