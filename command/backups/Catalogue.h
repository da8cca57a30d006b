#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "command/backups/Kind.h"
#include "command/backups/SetName.h"

namespace backups {

/// A file in a backup directory.
struct File {
  std::string name;
  long long size = 0;        ///< in bytes, 0 for what is no regular file
  bool exists = false;       ///< whether the name leads to something: a link may lead to nothing
  bool is_regular = false;   ///< whether that is a regular file
  bool is_outdated = false;  ///< whether the next scheduled backup deletes it
  int error = 0;             ///< the errno of what keeps the above from being known, 0 for nothing
};

/// What the restore list of a receiver makes of a backup.
enum class Restore {
  yes,
  too_small,    ///< it is listed, and OK does nothing
  other_model,  ///< it is not listed
  no_file,      ///< it is listed, and is a directory, a link to nothing or the like
  odd_name,     ///< OK takes it, and the shell of the restore takes its name apart
  unreadable,   ///< what it is cannot be known
};

/// A backup with what belongs to it.
struct BackupSet {
  const Kind* kind;
  File file;
  std::vector<std::string> keeps;  ///< the files that a restore of it leaves as they are
  std::vector<File> companions;    ///< the archives that are restored with it
  Restore restore;                 ///< other_model only where a model was asked for

  /// Returns what its name says, where it says anything.
  std::optional<SetName> said() const { return parseSetName(file.name); }
};

/// What lies in the backup directory of a medium.
struct Catalogue {
  std::string directory;        ///< the backup directory
  std::vector<BackupSet> sets;  ///< by kind, each as the restore list orders them
  std::vector<File> others;     ///< the other files, sorted by name
  long long size = 0;           ///< of all sets with their companions, in bytes
};

/// Reads the catalogue of the medium that is found in the directory `medium`. `model`: the model to
/// decide for, "" for none. Nothing is written, and nothing is said of what is outdated. Raises
/// std::runtime_error when there is no backup directory, and base::SystemError when it cannot be
/// read or it or the medium does not answer.
Catalogue readCatalogue(const std::filesystem::path& medium, const std::string& model);

}  // namespace backups
