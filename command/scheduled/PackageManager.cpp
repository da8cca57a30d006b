#include "command/scheduled/PackageManager.h"

#include "plugin/src/Packages.h"

namespace scheduled {
namespace {

std::vector<std::string> installedPlugins(System& os) {
  return os.popen(std::string(stowline::kInstalledPlugins.characters()));
}

}  // namespace

std::string whyNoPackages(System& os) {
  if (os.system("opkg list-installed") == 0) return "";
  const std::string said = os.whyFailed("opkg");
  return "opkg does not answer" + (said.empty() ? "" : ": " + said);
}

bool hasNoPlugins(System& os) {
  return whyNoPackages(os).empty() && installedPlugins(os).empty();
}

std::string whyNotComplete(System& os, const std::string& list) {
  std::string reason = whyNoPackages(os);
  if (!reason.empty()) return reason;
  return os.open(list) == installedPlugins(os) ? ""
                                               : "it does not name the plugins that are installed";
}

}  // namespace scheduled
