#pragma once

#include <map>
#include <optional>
#include <string>

#include "host/plain/Config.h"

namespace native {

/// The file that holds the receiver's settings.
inline constexpr const char* kSettingsFile = "/etc/enigma2/settings";

/// Settings in a file: one PATH=VALUE a line, for values other than the default only. Lines that
/// are about no setting of the tree stay as they are, in their places.
class SettingsFile : public plain::Settings {
 public:
  /// A file that is not there is an empty one.
  explicit SettingsFile(std::string file = kSettingsFile) : file_(std::move(file)) {}

  std::optional<std::string> stored(const std::string& path) override;

  /// Writes the file anew, beside the old one and then in its place. Raises
  /// base::SystemError when that fails; the old file is whole then.
  void store(const std::map<std::string, std::optional<std::string>>& values) override;

 private:
  std::string file_;
};

}  // namespace native
