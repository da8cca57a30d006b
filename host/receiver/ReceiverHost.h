#pragma once

#include <string>
#include <string_view>

#include "host/include/Host.h"
#include "host/receiver/Channels.h"
#include "host/receiver/Components.h"
#include "host/receiver/Configuration.h"
#include "host/receiver/Names.h"
#include "host/receiver/System.h"

namespace receiver {

/// The host made of the GUI's interpreter: every operation goes through what was bound at load.
class ReceiverHost : public host::Host {
 public:
  /// `dictionary`: the module's, which the names are bound in.
  explicit ReceiverHost(PyObject* dictionary) : names_(dictionary) {}

  const Names& names() const { return names_; }

  void bind(const host::Binding& binding) override { names_.bind(binding); }
  host::OperatingSystem& os() override { return system_; }
  host::Components& components() override { return components_; }
  host::Config& config() override { return configuration_; }
  host::ChannelDatabase& channels() override { return channels_; }
  std::string translate(std::string_view text) override;
  void print(const std::string& line) override;
  bool fileExists(const std::string& path) override;
  std::string resolveFilename(host::Scope scope, const std::string& relative) override;
  std::string deviceName() override;
  void clearPluginList() override;
  void readPluginList(const std::string& directory) override;

 private:
  Names names_;
  System system_{names_};
  Components components_{names_};
  Configuration configuration_{names_};
  Channels channels_{names_};
};

}  // namespace receiver
