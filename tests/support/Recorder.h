#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/plain/Host.h"
#include "host/plain/Screen.h"
#include "host/plain/Session.h"
#include "tests/support/Journal.h"
#include "tests/support/MemorySystem.h"

namespace support {

/// Settings in memory. What is stored for a path is its value there.
struct MemorySettings : plain::Settings {
  std::optional<std::string> stored(const std::string& path) override;
  void store(const std::map<std::string, std::optional<std::string>>& new_values) override {
    values = new_values;
  }

  std::map<std::string, std::optional<std::string>> values;
};

/// Something of the framework's that the module only keeps and hands back.
struct NamedObject : plain::Node {
  explicit NamedObject(std::string name_) : name(std::move(name_)) {}
  std::string className() const override { return "object"; }
  std::string str() const override { return name; }

  const std::string name;
};

/// A plain host in memory of which every use is journaled, as the framework's language writes it,
/// before it has any effect. What the journal raises is what the use raises.
class Recorder : public plain::Host {
 public:
  explicit Recorder(Journal& journal);
  ~Recorder();

  MemorySystem system;
  MemorySettings settings;
  std::map<std::string, std::string> translations;
  std::string model = "solo2";
  std::set<std::string> missing_pictures;
  bool has_info_bar = true;

  /// The dialogs and screens that the module has opened, oldest first. The test answers them.
  std::vector<plain::Dialog> opened;

  /// The session for the module's screens.
  const host::Object& session() const { return session_; }

  /// Closes the dialog last opened with a callback: hands `result` to the callback.
  void answer(const host::Object& result = {});

 private:
  host::Object recorded(const std::string& expression, plain::Function::Run run,
                        const std::string& suffix = "");
  host::Object open(const plain::Dialog& dialog);
  void recordFunctions();
  void recordSettings();
  void recordWidgets();
  void recordScreens();
  void recordChannels();

  Journal& journal_;
  host::Object session_;
  host::Object callback_;
};

}  // namespace support
