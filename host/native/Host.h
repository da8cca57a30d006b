#pragma once

#include <string>
#include <string_view>

#include "host/include/Host.h"
#include "host/native/SettingsConfig.h"

namespace native {

/// The file that holds the receiver's settings.
inline constexpr const char* kSettingsFile = "/etc/enigma2/settings";

/// A receiver without its GUI: its files, its commands, its settings and its model. What only a GUI
/// has raises host::Error ("RuntimeError"). Nothing is translated.
class Host : public host::Host {
 public:
  /// `os` outlives the host and is not used before the first operation. `settings`: the settings
  /// file, read by this process.
  explicit Host(host::OperatingSystem& os, const std::string& settings = kSettingsFile);

  /// Every name is there: the host is linked with the module.
  void bind(const host::Binding& binding) override;
  host::OperatingSystem& os() override { return os_; }
  host::Components& components() override;
  host::Config& config() override { return config_; }
  host::ChannelDatabase& channels() override;
  std::string translate(std::string_view text) override { return std::string(text); }
  void print(const std::string& line) override;
  bool fileExists(const std::string& path) override { return os_.exists(path); }
  std::string resolveFilename(host::Scope scope, const std::string& relative) override;
  std::string deviceName() override;
  void clearPluginList() override;
  void readPluginList(const std::string& directory) override;

 private:
  host::OperatingSystem& os_;
  SettingsConfig config_;
};

}  // namespace native
