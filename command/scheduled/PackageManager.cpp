#include "command/scheduled/PackageManager.h"

#include "command/scheduled/CapturedOutput.h"
#include "plugin/src/Packages.h"

namespace scheduled {

std::string whyNoPackages(plain::System& os) {
  const CapturedOutput output;
  if (os.system("opkg list-installed") == 0) return "";
  const std::string said = output.lastLine();
  return "opkg does not answer" + (said.empty() ? "" : ": " + said);
}

std::string whyNotComplete(plain::System& os, const std::string& list) {
  std::string reason = whyNoPackages(os);
  if (!reason.empty()) return reason;
  const CapturedOutput output;
  const bool is_complete =
      os.open(list) == os.popen(std::string(stowline::kInstalledPlugins.characters()));
  return is_complete ? "" : "it does not name the plugins that are installed";
}

}  // namespace scheduled
