#include "command/scheduled/PackageManager.h"

#include "command/scheduled/CapturedOutput.h"
#include "plugin/src/Packages.h"

namespace scheduled {
namespace {

std::vector<std::string> installedPlugins(plain::System& os) {
  return os.popen(std::string(stowline::kInstalledPlugins.characters()));
}

}  // namespace

std::string whyNoPackages(plain::System& os) {
  const CapturedOutput output;
  if (os.system("opkg list-installed") == 0) return "";
  const std::string said = output.lastLine();
  return "opkg does not answer" + (said.empty() ? "" : ": " + said);
}

bool hasNoPlugins(plain::System& os) {
  return whyNoPackages(os).empty() && installedPlugins(os).empty();
}

std::string whyNotComplete(plain::System& os, const std::string& list) {
  std::string reason = whyNoPackages(os);
  if (!reason.empty()) return reason;
  const CapturedOutput output;
  return os.open(list) == installedPlugins(os) ? ""
                                               : "it does not name the plugins that are installed";
}

}  // namespace scheduled
