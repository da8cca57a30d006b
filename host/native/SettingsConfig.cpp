#include "host/native/SettingsConfig.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

#include "host/include/Error.h"
#include "host/native/Descriptor.h"
#include "host/native/NativeSystem.h"
#include "host/native/OsError.h"

namespace native {
namespace {

/// Returns the lines of the settings file, each with its newline; none when there is no such file.
std::vector<std::string> readLines(const std::string& file) {
  NativeSystem os;
  return os.exists(file) ? os.open(file) : std::vector<std::string>{};
}

void writeAll(int descriptor, const std::string& text, const std::string& path) {
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t count = write(descriptor, text.data() + written, text.size() - written);
    if (count < 0 && errno != EINTR) throw osError(errno, path);
    if (count > 0) written += static_cast<std::size_t>(count);
  }
}

/// Writes `text` to a new file `path` and waits until it is on the medium.
void writeFile(const std::string& path, const std::string& text) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  if (!file) throw osError(errno, path);
  writeAll(file.number(), text, path);
  if (fsync(file.number()) != 0) throw osError(errno, path);
}

/// Puts a file holding `text` in the place of `path`, which is whole at every moment.
void replaceFile(const std::string& path, const std::string& text) {
  const std::string beside = path + ".new";
  try {
    writeFile(beside, text);
    if (rename(beside.c_str(), path.c_str()) != 0) throw osError(errno, path);
  } catch (const host::Error&) {
    unlink(beside.c_str());
    throw;
  }
}

}  // namespace

class SettingsConfig::Text : public host::ConfigText {
 public:
  Text(std::string default_value, std::optional<std::string> stored)
      : default_value_(std::move(default_value)),
        value_(stored.value_or(default_value_)),
        saved_(std::move(stored)) {}

  std::string value() override { return value_; }
  void setValue(const std::string& value) override { value_ = value; }
  void save() override { saved_ = value_ == default_value_ ? std::nullopt : std::optional(value_); }

  /// What the settings file holds for this setting; nothing for the default.
  const std::optional<std::string>& saved() const { return saved_; }

 private:
  std::string default_value_;
  std::string value_;
  std::optional<std::string> saved_;
};

class SettingsConfig::Subsection : public host::ConfigSubsection {
 public:
  Subsection(std::string prefix, std::string file)
      : prefix_(std::move(prefix)), file_(std::move(file)) {}

  void attachText(const std::string& key, const host::ConfigText::Options& options) override {
    texts_.insert_or_assign(key, Text(options.default_value, stored(key)));
  }

  host::ConfigText& text(const std::string& key) override {
    const auto found = texts_.find(key);
    if (found == texts_.end()) throw host::Error("AttributeError", prefix_ + key);
    return found->second;
  }

  void save() override {
    for (auto& [key, text] : texts_) text.save();
  }

  /// Returns the setting that `line` of the settings file is about, null when it is none of ours.
  const Text* settingOf(const std::string& line) const {
    for (const auto& [key, text] : texts_) {
      if (line.starts_with(prefix_ + key + "=")) return &text;
    }
    return nullptr;
  }

  /// Returns the lines of all settings that are not at their default.
  std::string lines() const {
    std::string result;
    for (const auto& [key, text] : texts_) {
      if (text.saved()) result += prefix_ + key + "=" + *text.saved() + "\n";
    }
    return result;
  }

 private:
  std::optional<std::string> stored(const std::string& key) const {
    const std::string start = prefix_ + key + "=";
    std::optional<std::string> value;
    for (const std::string& line : readLines(file_)) {
      if (line.starts_with(start))
        value = line.substr(start.size(), line.find('\n') - start.size());
    }
    return value;
  }

  std::string prefix_;
  std::string file_;
  std::map<std::string, Text> texts_;
};

SettingsConfig::SettingsConfig(std::string file, const std::vector<std::string>& branches)
    : file_(std::move(file)) {
  for (const std::string& path : branches) {
    branches_[path] = std::make_unique<Subsection>("config." + path + ".", file_);
  }
}

SettingsConfig::~SettingsConfig() = default;

void SettingsConfig::attachSubsection(const std::string& path) {
  subsection(path.substr(0, path.rfind('.')));
  branches_[path] = std::make_unique<Subsection>("config." + path + ".", file_);
}

host::ConfigSubsection& SettingsConfig::subsection(const std::string& path) {
  const auto found = branches_.find(path);
  if (found == branches_.end()) throw host::Error("AttributeError", "config." + path);
  return *found->second;
}

void SettingsConfig::save() {
  std::string text;
  for (const std::string& line : readLines(file_)) {
    bool ours = false;
    for (const auto& [path, branch] : branches_) ours = ours || branch->settingOf(line);
    if (!ours) text += line.ends_with('\n') ? line : line + "\n";
  }
  for (const auto& [path, branch] : branches_) text += branch->lines();
  replaceFile(file_, text);
}

}  // namespace native
