#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// A file of a receiver. `path` is below the receiver's root, without a leading "/".
struct File {
  std::string path;
  std::string content;
  bool executable = false;
};

using Files = std::vector<File>;

/// Returns the path as a line for the user writes it.
std::string inQuotes(const std::filesystem::path& path);

/// Writes the files below `root`, with the directories they need; a file that is there already is
/// replaced. Raises std::filesystem::filesystem_error.
void write(const std::filesystem::path& root, const Files& files);

/// Returns what the file holds. Raises std::filesystem::filesystem_error.
std::string read(const std::filesystem::path& path);

/// Returns the files as a gzip-compressed tar archive; equal files give an equal archive.
std::string pack(const Files& files);

/// Returns the regular files of a gzip-compressed tar archive.
Files unpack(std::string_view archive);

/// Returns the text compressed as gzip does it.
std::string gzip(const std::string& text);

}  // namespace desk
