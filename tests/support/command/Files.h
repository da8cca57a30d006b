#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace command_test {

/// Returns the whole content of a file. Raises std::runtime_error when it cannot be read.
std::string readFile(const std::filesystem::path& path);

/// Writes a file, with the directories above it. Raises std::runtime_error when it cannot.
void writeFile(const std::filesystem::path& path, const std::string& content);

/// Returns the names in a directory, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& dir);

/// Returns the names of an archive's members, sorted, as this machine's tar lists them.
std::vector<std::string> membersOf(const std::filesystem::path& archive);

}  // namespace command_test
