#include <algorithm>
#include <sstream>

#include "tests/desk/tree/TreeFixture.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

/// A flashed receiver that knows its feed.
class PackageManager : public Tree {
 protected:
  void SetUp() override {
    Tree::SetUp();
    if (IsSkipped()) return;
    flash(tree_);
    ASSERT_EQ(run("opkg update").status, 0);
  }

  bool installed(const std::string& package) {
    return run("opkg list-installed | cut -d ' ' -f 1 | grep -qx " + package).status == 0;
  }

  bool exists(const std::string& path) { return fs::exists(tree_.string() + path); }
};

constexpr const char* kForeca = "enigma2-plugin-extensions-foreca";
constexpr const char* kForecaPlugin = "/usr/lib/enigma2/python/Plugins/Extensions/Foreca/plugin.py";

TEST_F(PackageManager, ListsWhatTheImageBrings) {
  EXPECT_EQ(run("opkg list-installed").output,
            "enigma2 - 3.4-r2\n"
            "enigma2-plugin-systemplugins-qorpanel - 1.3-r0\n"
            "qor-image-base - 1.3-r0\n");
}

TEST_F(PackageManager, ListsADozenPackagesOfAUsedReceiver) {
  layOut(dir_ / "used", "solo2");
  const std::string list = runIn(dir_ / "used", "opkg list-installed").output;
  EXPECT_GE(std::ranges::count(list, '\n'), 12);
  EXPECT_NE(list.find("enigma2-plugin-skin-atile - 3.2-r0\n"), std::string::npos);
}

TEST_F(PackageManager, UpdateReadsTheFeed) {
  fs::remove_all(tree_ / "var/lib/opkg/lists");
  EXPECT_EQ(run("opkg list").output, "");
  EXPECT_EQ(run("opkg update").output,
            "Downloading file:///srv/feed/Packages.gz.\n"
            "Updated list of available packages in /var/lib/opkg/lists/qor.\n");
  const std::string list = run("opkg list").output;
  EXPECT_GE(std::ranges::count(list, '\n'), 12);
  EXPECT_NE(list.find("enigma2-plugin-extensions-foreca - 2.8-r0 - Weather forecast\n"),
            std::string::npos);
}

TEST_F(PackageManager, UpdateFailsWithoutAFeedAndKeepsTheOldList) {
  const std::string before = run("opkg list").output;
  fs::remove(tree_ / "srv/feed/Packages.gz");
  const Outcome update = run("opkg update");
  EXPECT_EQ(update.status, 255);
  EXPECT_TRUE(update.output.ends_with(
      "Collected errors:\n"
      " * opkg_update_cmd: Failed to download file:///srv/feed/Packages.gz.\n"))
      << update.output;
  EXPECT_EQ(run("opkg list").output, before);
}

TEST_F(PackageManager, InstallsFromTheFeed) {
  const Outcome install = run("opkg install enigma2-plugin-extensions-foreca");
  EXPECT_EQ(install.output,
            "Downloading file:///srv/feed/enigma2-plugin-extensions-foreca_2.8-r0_all.ipk.\n"
            "Installing enigma2-plugin-extensions-foreca (2.8-r0) to root...\n"
            "Configuring enigma2-plugin-extensions-foreca.\n");
  EXPECT_EQ(install.status, 0);
  EXPECT_TRUE(installed(kForeca));
  EXPECT_TRUE(exists(kForecaPlugin));
  EXPECT_TRUE(fs::is_empty(tree_ / "tmp"));
}

TEST_F(PackageManager, InstallingTwiceIsASuccess) {
  run("opkg install enigma2-plugin-extensions-foreca");
  const Outcome again = run("opkg install enigma2-plugin-extensions-foreca");
  EXPECT_EQ(again.output,
            "Package enigma2-plugin-extensions-foreca (2.8-r0) installed in root is up to date.\n");
  EXPECT_EQ(again.status, 0);
}

TEST_F(PackageManager, InstallsTheSameAsANewReceiverHas) {
  layOut(dir_ / "used", "solo2");
  const Snapshot expected = snapshot(dir_ / "used/var/lib/opkg/info");
  ASSERT_EQ(run("opkg install $(opkg list | cut -d ' ' -f 1 | "
                "grep -v -e epgnotes -e teletextplus -e webbrowser -e xbmc -e factorytest)")
                .status,
            0);
  EXPECT_EQ(snapshot(tree_ / "var/lib/opkg/info"), expected);
  EXPECT_EQ(run("opkg list-installed").output, runIn(dir_ / "used", "opkg list-installed").output);

  for (const auto& [name, record] : expected) {
    if (!name.ends_with(".list")) continue;
    std::istringstream paths(read(tree_ / "var/lib/opkg/info" / name));
    for (std::string path; std::getline(paths, path);)
      EXPECT_EQ(read(tree_.string() + path), read(dir_.string() + "/used" + path)) << path;
  }
}

TEST_F(PackageManager, UnknownPackageFails) {
  for (const char* name : {"'no-such-package'", "''", "'no such package'"}) {
    const Outcome install = run(std::string("opkg install ") + name);
    EXPECT_TRUE(install.output.starts_with("Unknown package " + std::string(name) + ".\n"))
        << install.output;
    EXPECT_EQ(install.status, 255);
  }
}

TEST_F(PackageManager, OneBadNameDoesNotKeepTheOthersOut) {
  EXPECT_EQ(run("opkg install no-such-package enigma2-plugin-extensions-foreca").status, 255);
  EXPECT_TRUE(installed(kForeca));
}

TEST_F(PackageManager, InstallsWhatAPackageDependsOnFirst) {
  const Outcome install = run("opkg install enigma2-plugin-extensions-enigmalight");
  EXPECT_EQ(install.output,
            "Downloading file:///srv/feed/enigma2-plugin-extensions-enigmalight_0.9-r1_all.ipk.\n"
            "Downloading file:///srv/feed/libambient1_1.0-r0_all.ipk.\n"
            "Installing libambient1 (1.0-r0) to root...\n"
            "Configuring libambient1.\n"
            "Installing enigma2-plugin-extensions-enigmalight (0.9-r1) to root...\n"
            "Configuring enigma2-plugin-extensions-enigmalight.\n");
  EXPECT_EQ(install.status, 0);
  EXPECT_TRUE(installed("libambient1"));
}

TEST_F(PackageManager, UnmetDependencyInstallsNothing) {
  const Snapshot before = snapshot(tree_);
  const Outcome install = run("opkg install enigma2-plugin-extensions-teletextplus");
  EXPECT_EQ(install.status, 255);
  EXPECT_EQ(install.output,
            "Downloading file:///srv/feed/"
            "enigma2-plugin-extensions-teletextplus_0.2-r0_all.ipk.\n"
            "Collected errors:\n"
            " * satisfy_dependencies_for: Cannot satisfy the following dependencies for "
            "enigma2-plugin-extensions-teletextplus: libteletext2\n");
  EXPECT_EQ(snapshot(tree_), before);
}

TEST_F(PackageManager, InstallsAFileWhosePathHasBlanks) {
  const fs::path plugins = tree_ / "media/hdd/qor-stowline/plugins";
  fs::create_directory(tree_ / "media/usb/my own");
  fs::copy_file(plugins / "enigma2-plugin-extensions-hallclock_0.7-r0_all.ipk",
                tree_ / "media/usb/my own/hall  clock's.ipk");
  const Outcome install = run("opkg install \"/media/usb/my own/hall  clock's.ipk\"");
  EXPECT_EQ(install.output,
            "Installing enigma2-plugin-extensions-hallclock (0.7-r0) to root...\n"
            "Configuring enigma2-plugin-extensions-hallclock.\n");
  EXPECT_EQ(install.status, 0);
  EXPECT_TRUE(installed("enigma2-plugin-extensions-hallclock"));
}

TEST_F(PackageManager, InstallsEveryLocalPackage) {
  EXPECT_EQ(run("cd /media/hdd/qor-stowline/plugins && opkg install *.ipk").status, 0);
  EXPECT_TRUE(installed("enigma2-plugin-extensions-hallclock"));
  EXPECT_TRUE(installed("enigma2-plugin-systemplugins-remotenotes"));
}

TEST_F(PackageManager, DamagedOrMissingFileFails) {
  writeFile(tree_ / "media/usb/broken.ipk", "no archive");
  const Snapshot before = snapshot(tree_);
  for (const char* file : {"/media/usb/broken.ipk", "/media/usb/none.ipk"}) {
    const Outcome install = run(std::string("opkg install ") + file);
    EXPECT_EQ(install.status, 255) << file;
    EXPECT_TRUE(
        install.output.ends_with("Collected errors:\n * opkg_install_cmd: Cannot install package " +
                                 std::string(file) + ".\n"))
        << install.output;
    EXPECT_EQ(snapshot(tree_), before) << file;
  }
}

TEST_F(PackageManager, AnotherVersionReplacesTheInstalledOne) {
  run("opkg install enigma2-plugin-extensions-foreca");
  ASSERT_EQ(run("cd /tmp && mkdir new && cd new && mkdir -p usr/share/foreca && "
                "echo map > usr/share/foreca/map && tar czf data.tar.gz ./usr && "
                "printf 'Package: enigma2-plugin-extensions-foreca\\nVersion: 3.0\\n"
                "Architecture: all\\n' > control && tar czf control.tar.gz ./control && "
                "echo 2.0 > debian-binary && "
                "tar czf /tmp/foreca.ipk ./debian-binary ./control.tar.gz ./data.tar.gz")
                .status,
            0);
  EXPECT_EQ(run("opkg install /tmp/foreca.ipk").output,
            "Upgrading enigma2-plugin-extensions-foreca on root from 2.8-r0 to 3.0...\n"
            "Configuring enigma2-plugin-extensions-foreca.\n");
  EXPECT_FALSE(exists(kForecaPlugin));
  EXPECT_EQ(read(tree_ / "var/lib/opkg/info" / (std::string(kForeca) + ".list")),
            "/usr/share/foreca/map\n");
  EXPECT_EQ(run("opkg list-installed | grep foreca").output,
            "enigma2-plugin-extensions-foreca - 3.0\n");
}

TEST_F(PackageManager, RemoveLeavesNothingOfAPackage) {
  const Snapshot before = snapshot(tree_);
  run("opkg install enigma2-plugin-extensions-foreca");
  ASSERT_NE(snapshot(tree_), before);
  const Outcome remove = run("opkg remove enigma2-plugin-extensions-foreca");
  EXPECT_EQ(remove.output, "Removing package enigma2-plugin-extensions-foreca from root...\n");
  EXPECT_EQ(remove.status, 0);
  EXPECT_EQ(snapshot(tree_), before);
}

TEST_F(PackageManager, RemoveOfWhatIsNotInstalledSaysSo) {
  const Outcome remove = run("opkg remove enigma2-plugin-extensions-foreca");
  EXPECT_EQ(remove.output, "No packages removed.\n");
  EXPECT_EQ(remove.status, 0);
}

TEST_F(PackageManager, UnknownOperationIsAnsweredWithTheKnownOnes) {
  const Outcome outcome = run("opkg polish");
  EXPECT_EQ(outcome.output,
            "usage: opkg update | list | list-installed | install NAME|FILE.ipk... | "
            "remove NAME...\n");
  EXPECT_EQ(outcome.status, 1);
}

}  // namespace
}  // namespace desk
