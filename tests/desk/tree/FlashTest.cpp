#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desk/tree/TreeFixture.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

class Flash : public Directory {
 protected:
  Flash() { layOut(tree_, "solo2"); }

  const fs::path tree_ = dir_ / "tree";
};

/// Files that only a user has, and files that look different in factory state.
constexpr const char* kUsersOwn[] = {
    "/etc/CCrelay.cfg",
    "/etc/auto.network_qor",
    "/etc/enigma2/timers.xml",
    "/etc/enigma2/userbouquet.sport.tv",
    "/etc/wpa_supplicant.wlan0.conf",
    "/usr/keys/SoftCam.Key",
    "/usr/scam/cardrelay.conf",
    "/usr/share/enigma2/AtileHD/colors_atile_Blue.xml",
    "/usr/share/enigma2/AtileHD/colors_atile_Harbour.xml",
    "/usr/share/enigma2/skin_default/spinner/wait7.png",
    "/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
};
constexpr const char* kChanged[] = {
    "/etc/enigma2/lamedb",
    "/etc/enigma2/bouquets.tv",
    "/etc/enigma2/settings",
    "/etc/fstab",
    "/etc/hostname",
    "/etc/init.d/current_cam.sh",
    "/etc/network/interfaces",
    "/etc/passwd",
    "/etc/samba/smb.conf",
    "/etc/shadow",
    "/usr/share/enigma2/radio.mvi",
    "/usr/share/enigma2/skin_default/spinner/wait1.png",
    "/usr/share/vuplus-bootlogo/bootlogo.mvi",
    "/var/lib/opkg/status",
};

TEST_F(Flash, TakesAwayWhatAUserHasSetUp) {
  std::map<std::string, std::string> used;
  for (const char* path : kUsersOwn) EXPECT_TRUE(fs::exists(tree_.string() + path)) << path;
  for (const char* path : kChanged) used[path] = read(tree_.string() + path);

  flash(tree_);
  requireTree(tree_);

  for (const char* path : kUsersOwn) EXPECT_FALSE(fs::exists(tree_.string() + path)) << path;
  for (const char* path : kChanged) EXPECT_NE(read(tree_.string() + path), used[path]) << path;
}

TEST_F(Flash, MakesTheResolverALinkAgain) {
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(tree_ / "etc/resolv.conf")));
  flash(tree_);
  EXPECT_EQ(fs::read_symlink(tree_ / "etc/resolv.conf"), "/var/run/resolv.conf");
  EXPECT_TRUE(fs::exists(tree_ / "var/run/resolv.conf"));
}

TEST_F(Flash, GivesTheSameTreeWhateverWasThere) {
  layOut(dir_ / "other", "solo2");
  flash(dir_ / "other");

  fs::remove_all(tree_ / "bin");
  fs::remove_all(tree_ / "usr/share");
  writeFile(tree_ / "usr/share", "a file in the place of a directory");
  writeFile(tree_ / "etc/hostname", "changed");
  writeFile(tree_ / "of the user/and more.txt", "new");
  fs::permissions(tree_ / "etc/passwd", fs::perms(0777));
  flash(tree_);

  EXPECT_EQ(snapshot(tree_), snapshot(dir_ / "other"));
}

TEST_F(Flash, KeepsTheMediaByteForByte) {
  writeFile(tree_ / "media/usb/a film\n\xff.ts", std::string("\0\xff\r\n", 4));
  writeFile(tree_ / "media/net/autofs/nas/deep/down/below.txt", "kept");
  fs::remove(tree_ / "media/hdd/qor-stowline/restore_hello.sh");
  fs::permissions(tree_ / "media/usb", fs::perms(0700));
  fs::create_symlink("/etc/passwd", tree_ / "media/hdd/link");
  fs::create_symlink("nowhere", tree_ / "media/hdd/dangling");
  const Snapshot before = snapshot(tree_ / "media");

  flash(tree_);

  EXPECT_EQ(snapshot(tree_ / "media"), before);
}

TEST_F(Flash, KeepsTheModel) {
  layOut(dir_ / "duo", "duo");
  flash(dir_ / "duo");
  EXPECT_EQ(read(dir_ / "duo/proc/stb/info/model"), "duo\n");
}

TEST_F(Flash, FollowsNoLinkOutOfTheTree) {
  writeFile(dir_ / "outside/letter.txt", "mine");
  const Snapshot before = snapshot(dir_ / "outside");
  fs::create_directory_symlink(dir_ / "outside", tree_ / "home/root/outside");
  fs::create_directory_symlink(dir_ / "outside", tree_ / "outside");
  fs::remove_all(tree_ / "etc/enigma2");
  fs::create_directory_symlink(dir_ / "outside", tree_ / "etc/enigma2");
  fs::remove(tree_ / "etc/hostname");
  fs::create_symlink(dir_ / "outside/letter.txt", tree_ / "etc/hostname");
  fs::create_symlink(dir_ / "outside/letter.txt", tree_ / ".stowline-receiver.new");

  flash(tree_);

  EXPECT_EQ(snapshot(dir_ / "outside"), before);
  EXPECT_EQ(read(tree_ / "etc/hostname"), "receiver\n");
  EXPECT_TRUE(fs::is_directory(fs::symlink_status(tree_ / "etc/enigma2")));
}

TEST_F(Flash, KeepsAMediaLinkAsItIs) {
  fs::rename(tree_ / "media", dir_ / "media");
  fs::create_directory_symlink(dir_ / "media", tree_ / "media");
  const Snapshot before = snapshot(dir_ / "media");
  flash(tree_);
  EXPECT_EQ(fs::read_symlink(tree_ / "media"), dir_ / "media");
  EXPECT_EQ(snapshot(dir_ / "media"), before);
}

/// Runs the steps in a process with mounts of its own; returns what they return, or nothing when
/// this machine allows no mounts.
template <typename Steps>
std::string withMounts(const Steps& steps) {
  int ends[2];
  if (pipe(ends) != 0) return "";
  const pid_t child = fork();
  if (child == 0) {
    std::string result;
    if (unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0)
      result = steps();
    const bool written = ::write(ends[1], result.data(), result.size()) >= 0;
    _exit(written ? 0 : 1);
  }
  close(ends[1]);
  char block[1024];
  const ssize_t size = ::read(ends[0], block, sizeof block);
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return {block, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

std::string bind(const fs::path& from, const fs::path& to) {
  return mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0 ? "" : "no mount";
}

TEST_F(Flash, LeavesAMountedMediumAlone) {
  writeFile(dir_ / "stick/photo.jpg", "photo");
  const std::string result = withMounts([&] {
    std::string failure = bind(dir_ / "stick", tree_ / "media/usb");
    if (!failure.empty()) return failure;
    flash(tree_);
    return "still mounted: " + read(tree_ / "media/usb/photo.jpg");
  });
  if (result.empty()) GTEST_SKIP() << "not allowed to mount";
  EXPECT_EQ(result, "still mounted: photo");
  EXPECT_EQ(read(dir_ / "stick/photo.jpg"), "photo");
}

TEST_F(Flash, RefusesATreeWithAMountElsewhere) {
  writeFile(dir_ / "stick/photo.jpg", "photo");
  fs::create_directory(tree_ / "a mount");
  const Snapshot before = snapshot(tree_);
  const std::string result = withMounts([&] {
    std::string failure = bind(dir_ / "stick", tree_ / "a mount");
    return failure.empty() ? refusal([&] { flash(tree_); }) : failure;
  });
  if (result.empty()) GTEST_SKIP() << "not allowed to mount";
  EXPECT_EQ(result, inQuotes(fs::canonical(tree_) / "a mount") +
                        " is a mount point: unmount it before the flash");
  EXPECT_EQ(read(dir_ / "stick/photo.jpg"), "photo");
  EXPECT_EQ(snapshot(tree_), before);
}

}  // namespace
}  // namespace desk
