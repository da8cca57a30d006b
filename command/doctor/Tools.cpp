#include "command/doctor/Tools.h"

#include <string>

#include "command/scheduled/PackageManager.h"

namespace doctor {
namespace {

/// What the module's commands run, with what runs them and what tar runs.
constexpr const char* kPrograms[] = {"sh",
                                     "tar",
                                     "gzip",
                                     "opkg",
                                     "grep",
                                     "cut",
                                     "cat",
                                     "mv",
                                     "rm",
                                     "mkdir",
                                     "chmod",
                                     "ln",
                                     "echo",
                                     "sleep",
                                     "[",
                                     "killall",
                                     "/bin/sync",
                                     "/etc/init.d/networking",
                                     "/etc/init.d/current_cam.sh"};

}  // namespace

Check checkTools(plain::System& os) {
  std::string missing;
  for (const char* program : kPrograms) {
    if (os.popen(std::string("command -v ") + program).empty()) {
      missing += std::string(" ") + program;
    }
  }
  if (missing.empty()) return {"tools", State::ok, "all there"};
  return {"tools", State::failed, "missing:" + missing};
}

Check checkPackageManager(scheduled::System& os) {
  const std::string reason = scheduled::whyNoPackages(os);
  if (reason.empty()) return {"package manager", State::ok, "answers"};
  return {"package manager", State::failed, reason};
}

}  // namespace doctor
