#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/command/DeskTest.h"
#include "tests/command/Expected.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using PackageTest = DeskTest;

constexpr const char* kListFile = "pluginlist_20240305_07-04_solo2.lst";
constexpr const char* kFromList = "select:plugins ok ok wait ";
constexpr const char* kLocal = "select:local ok wait ";
constexpr const char* kStatus = "/var/lib/opkg/status";

/// What a flashed receiver gets back of the used one's plugins, in the order of its list.
const std::vector<std::string> kRestored = {
    "enigma2-plugin-extensions-enigmalight",
    "enigma2-plugin-extensions-foreca",
    "enigma2-plugin-extensions-hbbtv",
    "enigma2-plugin-extensions-multiquickbutton",
    "enigma2-plugin-extensions-shoutcast",
    "enigma2-plugin-extensions-webradiofs",
    "enigma2-plugin-skin-atile",
    "enigma2-plugin-systemplugins-crashreport",
    "enigma2-plugin-systemplugins-pipservicerelation",
    "enigma2-plugin-systemplugins-vfdskinselector",
};

std::vector<ShownPackage> done(const std::vector<std::string>& names) {
  std::vector<ShownPackage> shown;
  for (const std::string& name : names) shown.push_back({name, "done"});
  return shown;
}

/// What an installation runs before the packages, which a list file or none names.
std::vector<std::string> installation(const std::vector<std::string>& list_commands,
                                      const std::vector<std::string>& packages) {
  std::vector<std::string> commands = {"opkg update", kInstalledPlugins};
  std::ranges::copy(list_commands, std::back_inserter(commands));
  for (const std::string& package : packages) commands.push_back("opkg install " + package);
  return commands;
}

/// The local packages in the order in which their directory lists them, which the screen shows.
std::vector<std::string> namesOf(const Json& packages_frame) {
  std::vector<std::string> names;
  for (const Json& package : packages_frame.at("packages")) names.push_back(package.at("name"));
  return names;
}

std::vector<std::string> installedPackages(const Receiver& receiver) {
  std::vector<std::string> names;
  const std::string key = "Package: ";
  for (const std::string& line : receiver.lines(kStatus)) {
    if (line.starts_with(key)) names.push_back(line.substr(key.size()));
  }
  std::ranges::sort(names);
  return names;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::ranges::count(names, name) > 0;
}

std::size_t pluginFolders(const Receiver& receiver) {
  const std::string plugins = "/usr/lib/enigma2/python/Plugins/";
  return namesIn(receiver.at(plugins + "Extensions")).size() +
         namesIn(receiver.at(plugins + "SystemPlugins")).size();
}

std::vector<std::string> rereadings(const Receiver& receiver) {
  std::vector<std::string> lines = receiver.lines("/var/log/enigma2.log");
  std::erase_if(lines, [](const std::string& line) {
    return line.find("[PluginComponent]") == std::string::npos;
  });
  return lines;
}

TEST_F(PackageTest, BringsAFlashedReceiversPluginsBackFromTheList) {
  receiver().play("backup", "select:installed ok");
  const std::string list = receiver().backup("pluginlist_", ".lst");
  const Snapshot used = receiver().content();
  receiver().flash();
  const std::vector<std::string> image = installedPackages(receiver());

  const Play play = receiver().play("restore", std::string(kFromList) + "ok exit");

  ASSERT_EQ(play.lines.size(), 7U);
  EXPECT_EQ(play.lines[2], listFrame("ok", {list}));
  EXPECT_EQ(play.lines[4], packagesFrame("wait", done(kRestored)));
  EXPECT_EQ(play.lines[5], menuFrame("ok", "restore", 1));
  EXPECT_EQ(play.trace, installation({"cat " + inBackups(list)}, kRestored));
  EXPECT_EQ(
      play.log,
      (std::vector<std::string>{
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-extensions-webinterface",
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-settings-meridian",
          "[QOR-Stowline] Plugin enigma2-plugin-systemplugins-qorpanel is already installed"}));

  std::vector<std::string> expected = image;
  std::ranges::copy(kRestored, std::back_inserter(expected));
  expected.emplace_back("libambient1");  // the light's library, which is no plugin
  std::ranges::sort(expected);
  EXPECT_EQ(installedPackages(receiver()), expected);
  for (const std::string& package : kRestored) {
    const std::vector<std::string> files =
        receiver().lines("/var/lib/opkg/info/" + package + ".list");
    EXPECT_FALSE(files.empty()) << package;
    for (const std::string& file : files) {
      EXPECT_EQ(receiver().read(file), used.at(file.substr(1)).content) << file;
    }
  }
}

TEST_F(PackageTest, FailingPackageLeavesTheOthersToBeInstalled) {
  const std::string notes = "enigma2-plugin-extensions-epgnotes";
  const std::string teletext = "enigma2-plugin-extensions-teletextplus";
  const std::string unknown = "enigma2-plugin-extensions-unknown";
  receiver().write(inBackups(kListFile), teletext + "\n\n" + unknown + "\n" + notes + "\n");
  const std::vector<std::string> before = installedPackages(receiver());

  const Play play = receiver().play("restore", kFromList);

  EXPECT_EQ(
      play.last(),
      packagesFrame("wait",
                    {{teletext, "failed"}, {"", "failed"}, {unknown, "failed"}, {notes, "done"}}));
  EXPECT_EQ(play.trace,
            installation({"cat " + inBackups(kListFile)}, {teletext, "", unknown, notes}));
  std::vector<std::string> expected = before;
  expected.push_back(notes);
  std::ranges::sort(expected);
  EXPECT_EQ(installedPackages(receiver()), expected);
  EXPECT_TRUE(receiver().exists("/usr/lib/enigma2/python/Plugins/Extensions/EPGNotes/plugin.py"));
}

TEST_F(PackageTest, LogsWhatIsInstalledOrExcluded) {
  receiver().write(inBackups(kListFile),
                   "enigma2-plugin-skin-atile\n"
                   "enigma2-plugin-extensions-webinterface\n"
                   "enigma2-plugin-extensions-webbrowser\n"
                   "enigma2-plugin-systemplugins-factorytest\n"
                   "enigma2-plugin-extensions-xbmc\n"
                   "enigma2-plugin-settings-solstice\n");

  const Play play = receiver().play("restore", kFromList);

  EXPECT_EQ(play.last(), packagesFrame("wait", {}));
  EXPECT_EQ(
      play.log,
      (std::vector<std::string>{
          "[QOR-Stowline] Plugin enigma2-plugin-skin-atile is already installed",
          "[QOR-Stowline] Plugin enigma2-plugin-extensions-webinterface is already installed",
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-extensions-webbrowser",
          "[QOR-Stowline] do not restore excluded package: "
          "enigma2-plugin-systemplugins-factorytest",
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-extensions-xbmc",
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-settings-solstice"}));
}

TEST_F(PackageTest, FailingFeedUpdateInstallsNothing) {
  receiver().write(inBackups(kListFile), "enigma2-plugin-extensions-epgnotes\n");
  fs::remove_all(receiver().at("/srv/feed"));
  const std::string before = receiver().read(kStatus);

  const std::string list_error =
      "AttributeError: 'StowlineRestore' object has no attribute 'setStatus'";
  const Play list = receiver().play("restore", kFromList);
  EXPECT_EQ(list.events(), (std::vector<Json>{{{"event", "error"}, {"text", list_error}}}));
  EXPECT_EQ(list.lines[list.lines.size() - 2], list.events()[0]);
  EXPECT_EQ(list.last(), listFrame("wait", {kListFile}));
  EXPECT_EQ(list.trace, std::vector<std::string>{"opkg update"});
  EXPECT_EQ(list.log, std::vector<std::string>{"error: " + list_error});

  const std::string menu_error = "AttributeError: 'Stowline' object has no attribute 'setStatus'";
  const Play local = receiver().play("restore", kLocal);
  EXPECT_EQ(local.events(), (std::vector<Json>{{{"event", "error"}, {"text", menu_error}}}));
  EXPECT_EQ(local.last(), menuFrame("wait", "restore", 4));
  EXPECT_EQ(local.trace, std::vector<std::string>{"opkg update"});

  EXPECT_EQ(receiver().read(kStatus), before);
}

TEST_F(PackageTest, InstallsLocalPackagesAndQueuesThemAgain) {
  fs::rename(receiver().at(inBackups("plugins/enigma2-plugin-extensions-hallclock_0.7-r0_all.ipk")),
             receiver().at(inBackups("plugins/hall clock.ipk")));
  for (const std::string other : {"b.IPK", "c.ipk.txt"}) {
    receiver().write(inBackups("plugins/" + other), "");
  }
  const Play play = receiver().play("restore", std::string(kLocal) + "ok " + kLocal + "exit down");

  ASSERT_EQ(play.lines.size(), 10U);
  const std::vector<std::string> once = namesOf(play.lines[3]);
  std::vector<std::string> sorted = once;
  std::ranges::sort(sorted);
  EXPECT_EQ(sorted,
            (std::vector<std::string>{
                inBackups("plugins/enigma2-plugin-systemplugins-remotenotes_1.0-r0_all.ipk"),
                inBackups("plugins/hall clock.ipk")}));
  std::vector<std::string> twice = once;
  std::ranges::copy(once, std::back_inserter(twice));
  EXPECT_EQ(play.lines[3], packagesFrame("wait", done(once)));
  EXPECT_EQ(play.lines[4], menuFrame("ok", "restore", 4));
  EXPECT_EQ(play.lines[7], packagesFrame("wait", done(twice)));
  EXPECT_EQ(play.lines[8], menuFrame("exit", "restore", 4));
  std::vector<std::string> expected = installation({}, once);
  std::ranges::copy(installation({}, twice), std::back_inserter(expected));
  EXPECT_EQ(play.trace, expected);
  EXPECT_EQ(play.log, std::vector<std::string>());

  EXPECT_TRUE(contains(installedPackages(receiver()), "enigma2-plugin-extensions-hallclock"));
  EXPECT_TRUE(receiver().exists("/usr/lib/enigma2/python/Plugins/Extensions/HallClock/plugin.py"));
}

TEST_F(PackageTest, NoLocalPackagesNoScreen) {
  fs::remove_all(receiver().at(inBackups("plugins")));
  const Play missing = receiver().play("restore", kLocal);
  EXPECT_EQ(missing.last(), menuFrame("wait", "restore", 4));
  EXPECT_EQ(missing.trace, installation({}, {}));

  fs::create_directory(receiver().at(inBackups("plugins")));
  const Play empty = receiver().play("restore", kLocal);
  EXPECT_EQ(empty.last(), menuFrame("wait", "restore", 4));
  EXPECT_EQ(empty.trace, installation({}, {}));
}

TEST_F(PackageTest, ClosingTheMenuRereadsThePluginsAfterAPluginListOnly) {
  receiver().play("restore", "select:channel ok red red");
  receiver().play("restore", std::string(kLocal) + "ok exit");
  receiver().play("backup", "select:installed ok ok exit");
  EXPECT_EQ(rereadings(receiver()), std::vector<std::string>());

  receiver().play("restore", "select:plugins ok exit exit");
  EXPECT_EQ(rereadings(receiver()),
            std::vector<std::string>{"[PluginComponent] " +
                                     std::to_string(pluginFolders(receiver())) + " plugins"});
}

}  // namespace
}  // namespace command_test
