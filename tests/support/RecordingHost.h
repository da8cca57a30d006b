#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/include/Host.h"
#include "tests/support/Journal.h"
#include "tests/support/RecordingComponents.h"
#include "tests/support/RecordingConfig.h"
#include "tests/support/RecordingSystem.h"

namespace support {

class RecordingServiceList : public host::ServiceList {
 public:
  explicit RecordingServiceList(Journal& journal) : journal_(journal) {}
  host::ObjectRef getRoot() override;
  host::ObjectRef getCurrentSelection() override;
  void setRoot(const host::ObjectRef& root) override;
  void setCurrentSelection(const host::ObjectRef& service) override;

 private:
  Journal& journal_;
};

class RecordingChannels : public host::ChannelDatabase {
 public:
  explicit RecordingChannels(Journal& journal) : journal_(journal) {}

  bool hasInfoBar = true;  ///< whether there is an InfoBar instance

  void readTransponders() override;
  void reloadServicelist() override;
  void reloadBouquets() override;
  std::shared_ptr<host::ServiceList> infoBarServicelist() override;

 private:
  Journal& journal_;
};

/// A host in memory that hands every operation to a journal before it has any effect. What the
/// journal raises is what the operation raises. Expected lines can be read off the operations'
/// names: each is written as the framework spells it.
class RecordingHost : public host::Host {
 public:
  explicit RecordingHost(Journal& journal)
      : system(journal),
        configuration(journal),
        widgets(journal),
        channelDatabase(journal),
        journal_(journal) {}

  RecordingSystem system;
  RecordingConfig configuration;
  RecordingComponents widgets;
  RecordingChannels channelDatabase;
  std::map<std::string, std::string> translations;
  std::string model = "solo2";

  void bind(const host::Binding& binding) override;
  host::OperatingSystem& os() override { return system; }
  host::Components& components() override { return widgets; }
  host::Config& config() override { return configuration; }
  host::ChannelDatabase& channels() override { return channelDatabase; }
  std::string translate(std::string_view original) override;
  void print(const std::string& line) override;
  bool fileExists(const std::string& path) override;
  std::string resolveFilename(host::Scope scope, const std::string& relative) override;
  std::string deviceName() override;
  void clearPluginList() override;
  void readPluginList(const std::string& directory) override;

 private:
  Journal& journal_;
};

}  // namespace support
