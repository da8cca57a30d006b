#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "desk/model/Channels.h"
#include "desk/model/Jobs.h"
#include "desk/model/Observer.h"
#include "desk/model/Translations.h"
#include "host/native/Host.h"
#include "host/native/NativeSystem.h"

namespace desk {

/// The operating system of this process, with every shell command told to the observer.
class System : public native::NativeSystem {
 public:
  explicit System(Observer& observer) : observer_(observer) {}
  int system(const std::string& command) override;
  std::vector<std::string> popen(const std::string& command) override;

 private:
  Observer& observer_;
};

/// The stand-in receiver, as the module sees it.
class Host : public native::Host, private host::Components {
 public:
  Host(Jobs& jobs, Observer& observer);

  host::Components& components() override { return *this; }
  host::ChannelDatabase& channels() override { return channels_; }
  /// From now on texts are translated.
  void setTranslations(Translations translations) { translations_ = std::move(translations); }

  std::string translate(std::string_view text) override;
  void print(const std::string& line) override;
  void clearPluginList() override;
  void readPluginList(const std::string& directory) override;

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

  Jobs& jobs_;
  Observer& observer_;
  System os_;
  Channels channels_;
  std::vector<std::string> plugins_;
  Translations translations_;
};

}  // namespace desk
