#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace command_test {

/// Returns the program and arguments that run what is appended to them in a mount namespace of
/// its own, after the shell commands `mounts`, or exit with 125 where those fail; `afterwards` runs
/// there when it has ended, before the mounts are gone.
std::vector<std::string> inMountNamespace(const std::string& mounts,
                                          const std::string& afterwards = "true");

/// Says why the shell commands `mounts` cannot be carried out so here; nothing when they can.
std::optional<std::string> whyNot(const std::string& mounts);

/// Says why no small file system can be mounted here over `dir`; nothing when one can.
std::optional<std::string> whyNoMounts(const std::filesystem::path& dir);

/// Mounts a file system of these options on `dir`.
std::string mountSmall(const std::filesystem::path& dir, const std::string& options);

/// Mounts a file system on `dir` whose server is gone: all that is asked of it fails (ENOTCONN).
std::string mountDead(const std::filesystem::path& dir);

/// Mounts a file system on `dir` whose server never answers.
std::string mountSilent(const std::filesystem::path& dir);

/// Makes `dir` read-only.
std::string mountReadOnly(const std::filesystem::path& dir);

}  // namespace command_test
