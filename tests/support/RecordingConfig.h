#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "host/include/Config.h"
#include "tests/support/Journal.h"

namespace support {

/// A configuration tree in memory. It starts with the control panel's branch.
class RecordingConfig : public host::Config {
 public:
  explicit RecordingConfig(Journal& journal) : journal_(journal) {}

  /// The branches that are there, by path.
  std::set<std::string> branches = {"plugins", "plugins.qorpanel"};

  /// The values of the text settings, those of the settings file among them, by path.
  std::map<std::string, std::string> values;

  void attachSubsection(const std::string& path) override;
  host::ConfigSubsection& subsection(const std::string& path) override;
  void save() override;

 private:
  void require(const std::string& path) const;

  Journal& journal_;
  std::unique_ptr<host::ConfigSubsection> subsection_;
};

}  // namespace support
