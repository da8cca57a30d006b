#include "PackageManager.h"

#include "CapturedOutput.h"

namespace scheduled {

std::string whyNoPackages(host::OperatingSystem& os) {
  const CapturedOutput output;
  if (os.system("opkg list-installed") == 0) return "";
  const std::string said = output.lastLine();
  return "opkg does not answer" + (said.empty() ? "" : ": " + said);
}

}  // namespace scheduled
