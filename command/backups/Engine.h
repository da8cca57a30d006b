#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command/archive/Places.h"
#include "command/backups/FileKind.h"
#include "host/plain/Host.h"

namespace backups {

/// A job of the engine: its operation, the engine's attribute that names what it wrote, and what
/// that is.
struct Job {
  const char* name;
  host::Text operation;
  host::Text file;
  FileKind kind;
};

extern const Job kJobs[3];

/// The places of each kind of archive, as the module archives them.
struct EnginePlaces {
  tarball::Places settings;
  tarball::Places configuration;
  tarball::Places user_files;         ///< of the two skins
  tarball::Places any;                ///< those of all kinds
  std::vector<std::string> patterns;  ///< those of `any`, as shell patterns
};

/// Returns them, out of the module's tables.
EnginePlaces enginePlaces();

/// Returns the files that a restore of the configuration archive `path` leaves as they are.
std::vector<std::string> keptFiles(const plain::Host& host, const std::string& path);

/// Returns the medium that the settings name, such as "/media/hdd/".
std::string mediumOf(const plain::Host& host);

/// Returns the backup directory on it, which the module makes when it is not there; nothing when it
/// cannot.
std::optional<std::string> backupDirectory(const plain::Host& host);

}  // namespace backups
