#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace desk {

/// Returns the path as a line for the user writes it.
std::string inQuotes(const std::filesystem::path& path);

/// Writes the file, with the directories it needs; one that is there already is replaced. Raises
/// std::filesystem::filesystem_error.
void write(const std::filesystem::path& path, const std::string& content);

/// Returns what the file holds. Raises std::filesystem::filesystem_error.
std::string read(const std::filesystem::path& path);

/// Lays out below `root` what a gzip-compressed tar archive holds, with the modes that it says;
/// what is in the place of a file or a link is replaced. Raises std::filesystem::filesystem_error,
/// or std::runtime_error when the archive is damaged.
void unpack(std::string_view packed, const std::filesystem::path& root);

}  // namespace desk
