#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Host.h"
#include "host/include/Screen.h"
#include "host/include/Session.h"

namespace bench {

/// A host in memory whose operations cost next to nothing, so that what is measured is the module.
/// Every path exists; what is read is handed out once, without a copy.
class MemoryHost : public host::Host,
                   private host::OperatingSystem,
                   private host::Components,
                   private host::Config,
                   private host::ConfigSubsection,
                   private host::ConfigText {
 public:
  using Lines = std::vector<std::string>;

  /// What the next listing of a directory, the next reading of a file or the next piped command
  /// gives, by its path or command; nothing when it is not set.
  std::map<std::string, Lines> next;

  long long removed = 0;  ///< how many files were removed
  long long printed = 0;  ///< how many lines were printed

  host::OperatingSystem& os() override { return *this; }

 private:
  void bind(const host::Binding&) override {}
  host::Components& components() override { return *this; }
  host::Config& config() override { return *this; }
  host::ChannelDatabase& channels() override;
  std::string translate(std::string_view text) override { return std::string(text); }
  void print(const std::string&) override { ++printed; }
  bool fileExists(const std::string&) override { return true; }
  std::string resolveFilename(host::Scope, const std::string& relative) override;
  std::string deviceName() override { return "solo2"; }
  void clearPluginList() override {}
  void readPluginList(const std::string&) override {}

  int system(const std::string&) override { return 0; }
  Lines popen(const std::string& command) override { return take(command); }
  Lines open(const std::string& path) override { return take(path); }
  Lines listdir(const std::string& path) override { return take(path); }
  bool exists(const std::string&) override { return true; }
  std::string join(const std::string& directory, const std::string& name) override;
  long long fileSize(const std::string&) override { return 0; }
  void makedirs(const std::string&) override {}
  void remove(const std::string&) override { ++removed; }
  void chmod(const std::string&, int) override {}
  host::LocalTime localtime() override;

  std::shared_ptr<host::StaticText> makeStaticText(const std::string&) override;
  std::shared_ptr<host::Label> makeLabel(const std::string&) override;
  std::shared_ptr<host::List> makeList(const host::Value::List&) override;
  std::shared_ptr<host::MenuList> makeMenuList(const Lines&) override;
  std::shared_ptr<host::ActionMap> makeActionMap(const host::ActionMapping&) override;
  std::shared_ptr<host::ActionMap> makeNumberActionMap(const host::ActionMapping&) override;
  std::shared_ptr<host::ComConsole> makeComConsole() override;
  std::shared_ptr<host::IpkgComponent> makeIpkgComponent() override;
  host::ObjectRef loadPixmap(const std::string&, bool) override { return nullptr; }

  void attachSubsection(const std::string&) override {}
  host::ConfigSubsection& subsection(const std::string&) override { return *this; }
  void attachText(const std::string&, const host::ConfigText::Options&) override {}
  host::ConfigText& text(const std::string&) override { return *this; }
  std::string value() override { return "/media/hdd/"; }
  void setValue(const std::string&) override {}
  void save() override {}

  Lines take(const std::string& name);
};

/// The framework's side of a screen: takes everything, does nothing.
class MemoryPeer : public host::ScreenPeer {
 public:
  void init(host::Session&) override {}
  void setItem(std::string_view, const host::ComponentPtr&) override {}
  std::shared_ptr<host::Label> label(std::string_view) override;
  std::shared_ptr<host::List> list(std::string_view) override;
  std::shared_ptr<host::MenuList> menuList(std::string_view) override;
  void setAttribute(std::string_view, const std::string&) override {}
  void appendOnLayoutFinish(const host::Action&) override {}
  void close(const host::Value&) override {}
  void callOperation(std::string_view, const host::Value&) override {}
};

/// A session that opens nothing.
class MemorySession : public host::Session {
 public:
  std::unique_ptr<host::OpenedDialog> open(const host::Dialog&) override;
  std::unique_ptr<host::OpenedDialog> openWithCallback(const host::Answer&,
                                                       const host::Dialog&) override;
};

}  // namespace bench
