#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/include/Session.h"
#include "host/look/System.h"
#include "host/look/Widgets.h"
#include "host/native/Host.h"

namespace look {

/// A receiver on which the module can be used without any effect: what its screens ask for is
/// written down, its dialogs stay unanswered, and nobody is at the keys but the caller.
class Host : public native::Host,
             public host::Session,
             private host::Components,
             private host::ChannelDatabase {
 public:
  /// `system` outlives the host. `model`: the receiver's, "" for the one that its files name.
  /// `settings`: the receiver's settings file, "" for the defaults.
  Host(System& system, std::string model, const std::string& settings);

  System& system() { return system_; }
  std::string deviceName() override;
  host::Components& components() override { return *this; }
  host::ChannelDatabase& channels() override { return *this; }

  /// Takes note of a line of the log.
  void print(const std::string& line) override { log_.push_back(line); }

  /// Returns the lines that were logged.
  const std::vector<std::string>& log() const { return log_; }

  /// Returns the dialogs that were opened since this was last asked, in order.
  std::vector<host::Dialog> takeDialogs() { return std::exchange(dialogs_, {}); }

  /// Returns whether the package manager was asked for anything since this was last asked.
  bool takePackageCommand() { return std::exchange(has_package_command_, false); }

  std::unique_ptr<host::OpenedDialog> open(const host::Dialog& dialog) override;
  std::unique_ptr<host::OpenedDialog> openWithCallback(const host::Answer& callback,
                                                       const host::Dialog& dialog) override;

 private:
  std::shared_ptr<host::StaticText> makeStaticText(const std::string& text) override;
  std::shared_ptr<host::Label> makeLabel(const std::string& text) override;
  std::shared_ptr<host::List> makeList(const host::Value::List& entries) override;
  std::shared_ptr<host::MenuList> makeMenuList(const std::vector<std::string>& rows) override;
  std::shared_ptr<host::ActionMap> makeActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ActionMap> makeNumberActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ComConsole> makeComConsole() override;
  std::shared_ptr<host::IpkgComponent> makeIpkgComponent() override;
  host::ObjectRef loadPixmap(const std::string& path, bool cached) override;

  void readTransponders() override {}
  void reloadServicelist() override {}
  void reloadBouquets() override {}
  std::shared_ptr<host::ServiceList> infoBarServicelist() override { return nullptr; }

  System& system_;
  std::string model_;
  std::vector<std::string> log_;
  std::vector<host::Dialog> dialogs_;
  bool has_package_command_ = false;
};

}  // namespace look
