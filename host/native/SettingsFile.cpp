#include "host/native/SettingsFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "host/native/NativeSystem.h"

namespace native {
namespace {

/// Returns the lines of the settings file, each with its newline; none when there is no such file.
std::vector<std::string> readLines(const std::string& file) {
  NativeSystem os;
  return os.exists(file) ? os.open(file) : std::vector<std::string>{};
}

/// Writes `text` to a new file `path` and waits until it is on the medium.
void writeFile(const std::string& path, const std::string& text) {
  const base::Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  if (!file) throw base::SystemError(errno, path);
  base::writeAll(file.number(), text, path);
  if (fsync(file.number()) != 0) throw base::SystemError(errno, path);
}

/// Puts a file holding `text` in the place of `path`, which is whole at every moment.
void replaceFile(const std::string& path, const std::string& text) {
  const std::string beside = path + ".new";
  try {
    writeFile(beside, text);
    if (rename(beside.c_str(), path.c_str()) != 0) throw base::SystemError(errno, path);
  } catch (const base::SystemError&) {
    unlink(beside.c_str());
    throw;
  }
}

/// Whether a line of the file is about the setting `path`.
bool isAbout(const std::string& line, const std::string& path) {
  return line.starts_with(path + "=");
}

}  // namespace

std::optional<std::string> SettingsFile::stored(const std::string& path) {
  std::optional<std::string> value;
  for (const std::string& line : readLines(file_)) {
    if (isAbout(line, path))
      value = line.substr(path.size() + 1, line.find('\n') - path.size() - 1);
  }
  return value;
}

void SettingsFile::store(const std::map<std::string, std::optional<std::string>>& values) {
  std::string text;
  for (const std::string& line : readLines(file_)) {
    const bool is_ours =
        std::ranges::any_of(values, [&](const auto& value) { return isAbout(line, value.first); });
    if (!is_ours) text += line.ends_with('\n') ? line : line + "\n";
  }
  for (const auto& [path, value] : values) {
    if (value) text += path + "=" + *value + "\n";
  }
  replaceFile(file_, text);
}

}  // namespace native
