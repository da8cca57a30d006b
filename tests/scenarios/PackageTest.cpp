#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Expected.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using PackageTest = DeskTest;

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

TEST_F(PackageTest, BringsAFlashedReceiversPluginsBackFromTheListThenThoseOfTheMedium) {
  fs::rename(receiver().at(inBackups("plugins/enigma2-plugin-extensions-hallclock_0.7-r0_all.ipk")),
             receiver().at(inBackups("plugins/hall clock.ipk")));
  receiver().play("backup", "select:installed ok");
  const std::string list = receiver().backup("pluginlist_", ".lst");
  const Snapshot used = receiver().content();
  receiver().flash();
  std::vector<std::string> expected = installedPackages(receiver());

  const Play play =
      receiver().play("restore", "select:plugins ok ok wait ok select:local ok wait ok exit");

  ASSERT_EQ(play.lines.size(), 11U);
  EXPECT_EQ(play.lines[2], listFrame("ok", {list}));
  EXPECT_EQ(play.lines[4], packagesFrame("wait", done(kRestored)));
  EXPECT_EQ(play.lines[5], menuFrame("ok", "restore", 1));
  const std::vector<std::string> local = namesOf(play.lines[8]);
  std::vector<std::string> sorted = local;
  std::ranges::sort(sorted);
  EXPECT_EQ(sorted,
            (std::vector<std::string>{
                inBackups("plugins/enigma2-plugin-systemplugins-remotenotes_1.0-r0_all.ipk"),
                inBackups("plugins/hall clock.ipk")}));
  EXPECT_EQ(play.lines[8], packagesFrame("wait", done(local)));
  EXPECT_EQ(play.lines[9], menuFrame("ok", "restore", 4));
  std::vector<std::string> commands = installation({"cat " + inBackups(list)}, kRestored);
  std::ranges::copy(installation({}, local), std::back_inserter(commands));
  EXPECT_EQ(play.trace, commands);
  EXPECT_EQ(
      play.log,
      (std::vector<std::string>{
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-extensions-webinterface",
          "[QOR-Stowline] do not restore excluded package: enigma2-plugin-settings-meridian",
          "[QOR-Stowline] Plugin enigma2-plugin-systemplugins-qorpanel is already installed"}));

  std::ranges::copy(kRestored, std::back_inserter(expected));
  expected.emplace_back("libambient1");  // the light's library, which is no plugin
  expected.emplace_back("enigma2-plugin-extensions-hallclock");
  expected.emplace_back("enigma2-plugin-systemplugins-remotenotes");
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
  EXPECT_TRUE(receiver().exists("/usr/lib/enigma2/python/Plugins/Extensions/HallClock/plugin.py"));
  EXPECT_EQ(rereadings(receiver()),
            std::vector<std::string>{"[PluginComponent] " +
                                     std::to_string(pluginFolders(receiver())) + " plugins"});
}

TEST_F(PackageTest, FailingFeedUpdateIsAnErrorAndInstallsNothing) {
  const std::string list = "pluginlist_20240305_07-04_solo2.lst";
  receiver().write(inBackups(list), "enigma2-plugin-extensions-epgnotes\n");
  fs::remove_all(receiver().at("/srv/feed"));
  const std::string before = receiver().read(kStatus);

  const Play play = receiver().play("restore", "select:plugins ok ok wait");

  const std::string text = "AttributeError: 'StowlineRestore' object has no attribute 'setStatus'";
  const Json error = {{"event", "error"}, {"text", text}};
  EXPECT_EQ(play.events(), std::vector<Json>{error});
  EXPECT_EQ(play.lines[play.lines.size() - 2], error);
  EXPECT_EQ(play.last(), listFrame("wait", {list}));
  EXPECT_EQ(play.trace, std::vector<std::string>{"opkg update"});
  EXPECT_EQ(play.log, std::vector<std::string>{"error: " + text});
  EXPECT_EQ(receiver().read(kStatus), before);
}

}  // namespace
}  // namespace command_test
