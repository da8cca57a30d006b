#pragma once

#include <string>
#include <vector>

namespace backups {

/// What a file in a backup directory is.
enum class FileKind { settings, configuration, user_files, plugin_list, unknown };

/// Returns what a file is by its name, as the module's own lists take it, whatever receiver it is
/// for.
FileKind kindOf(const std::string& name);

/// Returns how the names of the archives end, after a configuration archive's, that are restored
/// with it.
std::vector<std::string> companionEndings();

/// Returns the word for a kind, such as "settings".
const char* wordOf(FileKind kind);

}  // namespace backups
