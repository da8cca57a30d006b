#include "command/doctor/Tools.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "base/SystemError.h"
#include "command/archive/Damaged.h"
#include "command/archive/Reader.h"
#include "command/scheduled/CapturedOutput.h"
#include "command/scheduled/PackageManager.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

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

/// A directory that goes with all that is in it.
class Scratch {
 public:
  Scratch() {
    std::string path = "/tmp/stowline-XXXXXX";
    if (!mkdtemp(path.data())) throw base::SystemError(errno, "/tmp");
    path_ = path;
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

std::set<std::string> membersOf(const std::string& archive) {
  std::set<std::string> members;
  tarball::Reader reader(archive);
  while (const auto member = reader.next()) members.insert(member->path);
  return members;
}

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

Check checkExclusions(plain::System& os) {
  constexpr const char* kName = "tar's exclusions";
  const Scratch scratch;
  const std::string files = scratch.path() + "/files";
  fs::create_directory(files);
  for (const char* name : {"kept", "left_out"}) std::ofstream(files + "/" + name) << name;
  const std::string archive = scratch.path() + "/archive";
  const std::string members = files.substr(1);
  {
    const scheduled::CapturedOutput output;
    os.system("tar czf " + archive + " " + files + "/* --exclude " + members + "/left*");
  }
  const std::set<std::string> found = membersOf(archive);
  if (!found.contains(members + "/kept")) return {kName, State::failed, "tar archives nothing"};
  if (!found.contains(members + "/left_out")) return {kName, State::ok, "honoured"};
  return {kName, State::warning,
          "not honoured after the file list: configuration backups will hold channel data and "
          "keys"};
}

Check checkPackageManager(plain::System& os) {
  const std::string reason = scheduled::whyNoPackages(os);
  if (reason.empty()) return {"package manager", State::ok, "answers"};
  return {"package manager", State::failed, reason};
}

}  // namespace doctor
