#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/include/Config.h"

namespace native {

/// A configuration tree whose values live in a settings file: one `config.PATH=VALUE` a line, for
/// values other than the default only. Lines that are not about a setting of this tree stay as they
/// are, in their places.
class SettingsConfig : public host::Config {
 public:
  /// `file`: the settings file; one that is not there is an empty one. `branches`: the paths of the
  /// branches that exist from the start.
  SettingsConfig(std::string file, const std::vector<std::string>& branches);
  ~SettingsConfig() override;

  void attachSubsection(const std::string& path) override;
  host::ConfigSubsection& subsection(const std::string& path) override;

  /// Writes the file anew, beside the old one and then in its place. Raises host::Error ("OSError")
  /// when that fails; the old file is whole then.
  void save() override;

 private:
  class Text;
  class Subsection;

  std::string file_;
  std::map<std::string, std::unique_ptr<Subsection>> branches_;
};

}  // namespace native
