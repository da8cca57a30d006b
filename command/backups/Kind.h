#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "command/archive/Places.h"
#include "host/include/Object.h"
#include "plugin/src/Places.h"

namespace backups {

/// What a file in a backup directory can be, with all that depends on it.
struct Kind {
  using Texts = std::span<const char* const>;

  const char* word;                   ///< what it is called, such as "settings"
  const char* last_good = nullptr;    ///< what the newest good one is called
  std::string_view restoretype = "";  ///< the list of the restore menu that it is in, "" for none
  const char* job = nullptr;          ///< what the job that writes it is called
  host::Text operation;               ///< the engine's for that job ...
  host::Text file;                    ///< ... and its attribute that names what it wrote
  Texts places = {};                  ///< shell patterns of what it holds
  std::span<const stowline::SkinFiles> skins = {};  ///< whose users' files it holds
  Texts exclusions = {};                            ///< what it leaves out of its places
  Texts companions = {};      ///< the endings of the archives that are restored with it
  Texts deleted_first = {};   ///< shell patterns of what a restore deletes first
  bool is_confirmed = false;  ///< whether a restore asks first and keeps some files
  bool is_list = false;       ///< whether it is a list of packages and no archive
};

/// All kinds: first those of backups, which have a list of the restore menu and a job.
extern const Kind kFileKinds[5];
inline constexpr std::span<const Kind> kKinds(kFileKinds, 3);
inline constexpr const Kind& kUserFiles = kFileKinds[3];  ///< what lies beside a configuration
inline constexpr const Kind& kUnknown = kFileKinds[4];

/// Whether the list of `kind` shows a file of this name on some receiver.
bool isOfKind(const std::string& name, const Kind& kind);

/// Whether OK on a listed file of this size, in bytes, does anything.
bool isLargeEnough(const Kind& kind, long long size);

/// Returns what a file is by its name, as the module's own lists take it, whatever receiver it is
/// for.
const Kind& kindOf(const std::string& name);

/// Returns the shell patterns of what a kind may hold, those of all kinds for an unknown one.
std::vector<std::string> patternsOf(const Kind& kind);

/// Returns the places that an archive of a kind may hold.
tarball::Places placesOf(const Kind& kind);

}  // namespace backups
