#include "plugin/src/Packages.h"

namespace stowline {

void addPackageManager(const Call& call) {
  const auto& [module, self, given] = call;
  self["cmdList"_t] = list();
  self["Console"_t] = module["ComConsole"_t]();
  self["ipkg"_t] = module["IpkgComponent"_t]();
  self["ipkg"_t]["addCallback"_t]({self["ipkgCallback"_t]});
}

void listInstalledPlugins(const Call& call) {
  const auto& [module, self, given] = call;
  self["pluginsinstalled"_t] = list();
  self["pluginsinstalledclean"_t] = list();
  self["pluginsinstalled"_t] = linesOfCommand(module, kInstalledPlugins);
  for (const Object& line : Items(self["pluginsinstalled"_t])) {
    self.get("pluginsinstalledclean"_t).append(line["rstrip"_t]({"\n"_t}));
  }
}

bool reportInstalled(const Call& call, const Set& installed, const Object& package) {
  if (!installed.contains(package)) return false;
  print(call.module, "[QOR-Stowline] Plugin %s is already installed"_t % package);
  return true;
}

void queueInstallation(const Call& call, const Object& package) {
  const Object commands = call.self["cmdList"_t];
  const Object install = call.module["IpkgComponent"_t]["CMD_INSTALL"_t];
  commands.append(tuple({install, dictionary({{"package"_t, package}})}));
}

void continueInstallation(const Call& call, Text restoretype, Text install) {
  const auto& [module, self, given] = call;
  const Object& event = given[0];
  if (event == module["IpkgComponent"_t].get("EVENT_ERROR"_t)) {
    self["setStatus"_t]({"error"_t});
  } else if (event == module["IpkgComponent"_t].get("EVENT_DONE"_t) &&
             self.get("restoretype"_t) == restoretype) {
    self["restoretype"_t] = ""_t;
    self.call(install, {});
  }
}

}  // namespace stowline
