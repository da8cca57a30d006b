#include "desk/model/Host.h"

#include <iostream>

#include "desk/model/Channels.h"
#include "desk/model/Components.h"
#include "desk/model/Opkg.h"

namespace desk {

int System::system(const std::string& command) {
  observer_.onCommand(command);
  return NativeSystem::system(command);
}

std::vector<std::string> System::popen(const std::string& command) {
  observer_.onCommand(command);
  return NativeSystem::popen(command);
}

Host::Host(Jobs& jobs, Observer& observer) : plain::Host(system_, settings_), system_(observer) {
  using host::Arguments;
  using host::Object;
  const auto text = [](Arguments given) { return plain::textOf(plain::argument(given, 0)); };
  bind("_", [this, text](Arguments given) { return Object(translated(text(given))); });
  bind("print", [&observer, text](Arguments given) {
    std::cout << text(given) << std::endl;
    observer.onLogLine(text(given));
    return Object();
  });
  const auto clear = [this](Arguments) { return plugins_.clear(), Object(); };
  const auto read = [this, text](Arguments given) { return readPluginList(text(given)), Object(); };
  bind("plugins", plain::instance("PluginComponent", {{"clearPluginList", plain::function(clear)},
                                                      {"readPluginList", plain::function(read)}}));
  // A picture is its path here.
  bind("LoadPixmap", [this](Arguments given) {
    const Object path = plain::argument(given, 0, "path");
    return system_.exists(plain::textOf(path)) ? path : Object();
  });
  bind("List", [](Arguments given) {
    return plain::make<ListWidget>(plain::argument(given, 0), &rowOfTuple);
  });
  bind("MenuList", [](Arguments given) {
    return plain::make<ListWidget>(plain::argument(given, 0), &rowOfName);
  });
  bindPackageManager(*this, jobs, observer);
  bindChannels(*this);
}

std::string Host::translated(const std::string& text) const {
  const auto found = translations_.find(text);
  return found == translations_.end() ? text : found->second;
}

void Host::readPluginList(const std::string& directory) {
  for (const char* category : {"Extensions", "SystemPlugins"}) {
    const std::string folder = directory + category;
    if (!system_.exists(folder)) continue;
    for (const std::string& name : system_.listdir(folder)) plugins_.push_back(name);
  }
  std::cout << "[PluginComponent] " << plugins_.size() << " plugins" << std::endl;
}

}  // namespace desk
