#pragma once

#include <string>

namespace backups {

/// What a file in a backup directory is.
enum class FileKind { settings, configuration, user_files, plugin_list, unknown };

/// A kind of backup: what it is called here and which list of the restore menu it is in.
struct Kind {
  const char* name;
  const char* restoretype;
  const char* last_good;  ///< what the newest good backup of it is called
};

inline constexpr Kind kKinds[] = {
    {"settings", "settingrestore", "last good settings"},
    {"configuration", "configrestore", "last good configuration"},
    {"plugins", "plugininstall", "last good plugins"},
};

/// Whether the list of `kind` shows a file of this name on some receiver.
bool isOfKind(const std::string& name, const Kind& kind);

/// Whether OK on a listed file of this size, in bytes, does anything.
bool isLargeEnough(const Kind& kind, long long size);

/// Returns what a file is by its name, as the module's own lists take it, whatever receiver it is
/// for.
FileKind kindOf(const std::string& name);

/// Returns the word for a kind, such as "settings".
const char* wordOf(FileKind kind);

}  // namespace backups
