#include "tests/support/command/Namespace.h"

#include <unistd.h>

#include "tests/support/command/Process.h"

namespace command_test {
namespace {

std::string quoted(const std::filesystem::path& path) {
  return "'" + path.string() + "'";
}

}  // namespace

std::vector<std::string> inMountNamespace(const std::string& mounts,
                                          const std::string& afterwards) {
  std::vector<std::string> argv = {"unshare", "--mount"};
  if (geteuid() != 0) argv.push_back("--map-root-user");
  for (const std::string& word :
       {std::string("sh"), std::string("-c"),
        mounts + " || exit 125; \"$@\"; status=$?; " + afterwards + "; exit $status",
        std::string("sh")}) {
    argv.push_back(word);
  }
  return argv;
}

std::optional<std::string> whyNot(const std::string& mounts) {
  std::vector<std::string> probe = inMountNamespace(mounts);
  probe.push_back("true");
  const Outcome outcome = run(probe);
  if (outcome.status == 0) return std::nullopt;
  return "no such file system can be mounted here: " + outcome.errors;
}

std::optional<std::string> whyNoMounts(const std::filesystem::path& dir) {
  return whyNot(mountSmall(dir, "size=4k"));
}

std::string mountSmall(const std::filesystem::path& dir, const std::string& options) {
  return "mount -t tmpfs -o " + options + " tmpfs " + quoted(dir);
}

std::string mountDead(const std::filesystem::path& dir) {
  return mountSilent(dir) + " && exec 8>&-";
}

std::string mountSilent(const std::filesystem::path& dir) {
  return "[ -w /dev/fuse ] && exec 8<>/dev/fuse && mount -i -t fuse -o "
         "fd=8,rootmode=40000,user_id=0,group_id=0 silent " +
         quoted(dir);
}

std::string mountReadOnly(const std::filesystem::path& dir) {
  return "mount --bind " + quoted(dir) + " " + quoted(dir) + " && mount -o remount,bind,ro " +
         quoted(dir);
}

}  // namespace command_test
