#pragma once

#include <string>
#include <utility>
#include <vector>

#include "desk/model/Jobs.h"
#include "desk/model/Observer.h"
#include "desk/model/Translations.h"
#include "host/native/NativeSystem.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Host.h"

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
class Host : public plain::Host {
 public:
  Host(Jobs& jobs, Observer& observer);

  /// From now on texts are translated.
  void setTranslations(Translations translations) { translations_ = std::move(translations); }

 private:
  std::string translated(const std::string& text) const;
  void readPluginList(const std::string& directory);

  System system_;
  native::SettingsFile settings_;
  std::vector<std::string> plugins_;
  Translations translations_;
};

}  // namespace desk
