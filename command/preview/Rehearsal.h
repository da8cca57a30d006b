#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/Descriptor.h"
#include "base/Root.h"

namespace preview {

/// What a restore does to files, in the order of these fields. What commands of other kinds change
/// is not part of it.
struct Plan {
  std::vector<std::string> deleted_first = {};  ///< shell patterns of the files that are deleted
  std::vector<std::string> archives = {};       ///< what is unpacked, in order
  std::vector<std::string> torn = {};           ///< archives whose names the shell takes apart
  std::vector<std::string> removed_again = {};  ///< what is deleted afterwards, with all below it
  std::vector<std::string> kept = {};           ///< files that are put back as they were
};

/// The directory that an archive lies in, as the receiver finds it.
struct Medium {
  base::Root root;        ///< what holds it: the receiver's files, or the directory itself
  std::string mounted;    ///< the receiver's path of that: "" for the receiver's own files
  std::string directory;  ///< the receiver's path of the directory

  /// Opens the file that the receiver names `path`. Raises base::SystemError.
  base::Descriptor open(const std::string& path) const {
    return root.open(path.substr(mounted.size()));
  }
};

/// What comes of a restore that the module does where nothing happens.
struct Rehearsal {
  std::string model;                  ///< the receiver's
  Medium medium;                      ///< where the archive lies
  std::string archive;                ///< the archive's path on the receiver
  std::string refusal;                ///< why it is not restored, in a line; "" when it is
  std::vector<std::string> commands;  ///< the shell commands, in order
  Plan plan;                          ///< what they do to files
};

/// Lets the module restore the archive `file` on the receiver whose files lie below `receiver`: out
/// of that directory when it is one of the receiver's backup directories, or else as if it were
/// the receiver's own backup directory. Nothing is written. Raises std::runtime_error when there is
/// no receiver, and base::SystemError for what cannot be read.
Rehearsal rehearse(const std::filesystem::path& file, const std::filesystem::path& receiver);

}  // namespace preview
