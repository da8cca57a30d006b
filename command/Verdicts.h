#pragma once

#include <filesystem>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

#include "command/archive/Verify.h"
#include "command/backups/FileKind.h"

namespace command {

using Json = nlohmann::ordered_json;

/// A backup that was read to its end, or could not be read.
struct Verified {
  std::filesystem::path file;
  backups::FileKind kind;
  std::string error;  ///< why it could not be read; "" when it could
  tarball::Verdict verdict;

  bool isSound() const { return error.empty() && verdict.sound(); }
};

/// Reads a backup to its end. `begin` hears how far an archive has been read.
Verified verifyOne(const std::filesystem::path& file, const tarball::BeginProgress& begin);

/// Prints what was found, for people.
void print(std::ostream& out, const Verified& verified);

/// Returns the same for programs.
Json jsonOf(const Verified& verified);

}  // namespace command
