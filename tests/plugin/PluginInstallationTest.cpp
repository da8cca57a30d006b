#include "tests/plugin/RestoreListTest.h"
#include "tests/support/Raised.h"

namespace stowline {
namespace {

using namespace expected;

using Lines = std::vector<std::string>;

const std::string kList = "pluginlist_20240305_07-04_solo2.lst";
const std::string kListRead =
    outputRead(kInstalledPlugins) + outputRead("cat " + kDirectory + "/" + kList);

std::string installed(const std::string& package) {
  return print("[QOR-Stowline] Plugin " + package + " is already installed");
}

std::string excluded(const std::string& package) {
  return print("[QOR-Stowline] do not restore excluded package: " + package);
}

std::string screenOpened(const Lines& packages) {
  return packageScreen("session.openWithCallback(keyCancel, ", packages);
}

struct PluginInstallation : RestoreListTest {
  /// Opens the list of plugin lists, presses OK on the one that holds these lines, and forgets the
  /// operations so far.
  void start(const Lines& plugins, const Lines& installed_packages) {
    addFile(kList);
    host.system.outputs[kInstalledPlugins] = installed_packages;
    host.system.outputs["cat " + kDirectory + "/" + kList] = plugins;
    openList("plugininstall");
    list().press("ok");
    record.take();
  }
};

TEST_F(PluginInstallation, InstallsEveryListedPackageThatIsNeitherInstalledNorExcluded) {
  const Lines plugins = {"enigma2-plugin-skin-atile\n", "enigma2-plugin-extensions-a\n",
                         "enigma2-plugin-extensions-xbmc\n", "enigma2-plugin-settings-hotbird\n",
                         "enigma2-plugin-extensions-b"};
  start(plugins, {"enigma2-plugin-skin-atile\n", "enigma2-plugin-extensions-other\n"});
  list().send("EVENT_DONE");
  EXPECT_EQ(record.take(),
            kListRead + installed("enigma2-plugin-skin-atile") +
                excluded("enigma2-plugin-extensions-xbmc") +
                excluded("enigma2-plugin-settings-hotbird") +
                screenOpened({"enigma2-plugin-extensions-a", "enigma2-plugin-extensions-b"}));
  EXPECT_EQ(list().attribute("pluginsinstalledclean"),
            R"(["enigma2-plugin-skin-atile", "enigma2-plugin-extensions-other"])");
  EXPECT_EQ(list().attribute("pluginsinstalled"),
            R"(["enigma2-plugin-skin-atile\n", "enigma2-plugin-extensions-other\n"])");
  EXPECT_EQ(list().attribute("plugins"), described(plain::listOf(plugins)));
  EXPECT_EQ(list().attribute("excludedplugins"),
            R"(["enigma2-plugin-extensions-webbrowser", )"
            R"("enigma2-plugin-systemplugins-factorytest", )"
            R"("enigma2-plugin-extensions-webinterface", "enigma2-plugin-extensions-xbmc"])");
  host.answer();
  EXPECT_EQ(record.take(), "close()\n");
}

TEST_F(PluginInstallation, LeavesNothingOfTheOneBeforeWhenItFails) {
  start({"enigma2-plugin-extensions-b\n"}, {"enigma2-plugin-extensions-a\n"});
  list().call("installPlugins");
  journal.failOn("os.popen(" + quoted(kInstalledPlugins) + ").readlines()",
                 {"OSError", "no process", 11});
  EXPECT_THROW(list().call("installPlugins"), plain::Error);
  EXPECT_EQ(list().attribute("plugins"), "[]");
  EXPECT_EQ(list().attribute("pluginsinstalled"), "[]");
  EXPECT_EQ(list().attribute("pluginsinstalledclean"), "[]");
  EXPECT_EQ(list().attribute("cmdList"), "[]");
}

struct ListLine {
  const char* line;
  const char* queued;    ///< what is queued for it, null for nothing
  const char* excluded;  ///< the name in the exclusion line, null for none
};

/// On a receiver on which enigma2-plugin-extensions-a and enigma2-plugin-settings-old are
/// installed.
constexpr ListLine kListLines[] = {
    {"enigma2-plugin-extensions-b\n", "enigma2-plugin-extensions-b", nullptr},
    {"enigma2-plugin-extensions-b\n\n", "enigma2-plugin-extensions-b", nullptr},
    {"enigma2-plugin-extensions-aa\n", "enigma2-plugin-extensions-aa", nullptr},
    {"enigma2-plugin-extensions-a\r\n", "enigma2-plugin-extensions-a\r", nullptr},
    {"enigma2-plugin-extensions-a \n", "enigma2-plugin-extensions-a ", nullptr},
    {" enigma2-plugin-extensions-a\n", " enigma2-plugin-extensions-a", nullptr},
    {"\n", "", nullptr},
    {"enigma2-plugin-extensions-a\n", nullptr, nullptr},
    {"enigma2-plugin-extensions-a", nullptr, nullptr},
    {"enigma2-plugin-settings-old\n", nullptr, nullptr},  // installed is tested first
    {"enigma2-plugin-extensions-webbrowser\n", nullptr, "enigma2-plugin-extensions-webbrowser"},
    {"enigma2-plugin-extensions-webinterface\n", nullptr, "enigma2-plugin-extensions-webinterface"},
    {"enigma2-plugin-extensions-webinterface-old\n", "enigma2-plugin-extensions-webinterface-old",
     nullptr},
    {"enigma2-plugin-systemplugins-factorytest\n", nullptr,
     "enigma2-plugin-systemplugins-factorytest"},
    {"enigma2-plugin-extensions-xbmc\n", nullptr, "enigma2-plugin-extensions-xbmc"},
    {"enigma2-plugin-extensions-xbmc\r\n", "enigma2-plugin-extensions-xbmc\r", nullptr},
    {"enigma2-plugin-settings-hotbird\n", nullptr, "enigma2-plugin-settings-hotbird"},
    {"enigma2-plugin-settings\r\n", nullptr, "enigma2-plugin-settings\r"},
    {"enigma2-plugin-settingsmanager\n", nullptr, "enigma2-plugin-settingsmanager"},
    {"my-enigma2-plugin-settings\n", "my-enigma2-plugin-settings", nullptr},
};

TEST_F(PluginInstallation, DecidesLineByLineAndStripsNewlinesOnly) {
  for (const ListLine& line : kListLines) {
    SCOPED_TRACE(quoted(line.line));
    start({line.line}, {"enigma2-plugin-extensions-a\n", "enigma2-plugin-settings-old"});
    list().call("installPlugins");
    std::string package = line.line;
    while (package.ends_with('\n')) package.pop_back();
    const std::string printed = line.excluded ? excluded(line.excluded)
                                : line.queued ? ""
                                              : installed(package);
    EXPECT_EQ(record.take(),
              kListRead + printed + screenOpened(line.queued ? Lines{line.queued} : Lines{}));
  }
}

TEST_F(PluginInstallation, OpensAnEmptyPackageScreenForAnUnreadableList) {
  start({}, {"enigma2-plugin-skin-atile\n"});
  list().send("EVENT_DONE");
  EXPECT_EQ(record.take(), kListRead + screenOpened({}));
}

TEST_F(PluginInstallation, StartsOnceForTwoCompletionsAndLeavesOkWithoutEffect) {
  start({"enigma2-plugin-extensions-a\n"}, {});
  list().send("EVENT_DONE");
  EXPECT_EQ(record.take(), kListRead + screenOpened({"enigma2-plugin-extensions-a"}));
  EXPECT_EQ(list().attribute("restoretype"), "\"\"");
  list().send("EVENT_DONE");
  EXPECT_EQ(record.take(), "");
  list().press("ok");
  EXPECT_EQ(record.take(), "self[\"filelist\"].getCurrent()\n" + exists(kDirectory + "/" + kList) +
                               "os_stat(" + quoted(kDirectory + "/" + kList) + ").st_size\n");
}

TEST_F(PluginInstallation, EveryInstallationStartsWithAnEmptyCommandList) {
  start({"enigma2-plugin-extensions-a\n"}, {});
  for (int round = 0; round < 2; ++round) {
    list().call("installPlugins");
    EXPECT_EQ(record.take(), kListRead + screenOpened({"enigma2-plugin-extensions-a"}));
  }
}

TEST_F(PluginInstallation, OtherEventsAndOtherRestoreTypesStartNothing) {
  start({"enigma2-plugin-extensions-a\n"}, {});
  list().send("EVENT_OTHER");
  EXPECT_EQ(record.take(), "");
  for (const char* type : {"installlocalplugin", "installpluginlist", "settingrestore", ""}) {
    list().set("restoretype", std::string(type));
    list().send("EVENT_DONE");
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(list().attribute("restoretype"), quoted(type));
  }
}

TEST_F(PluginInstallation, FailedRefreshEndsInTheMissingSetStatus) {
  start({"enigma2-plugin-extensions-a\n"}, {});
  EXPECT_EQ(raised([&] { list().send("EVENT_ERROR"); }),
            "0 AttributeError: 'StowlineRestore' object has no attribute 'setStatus'");
  EXPECT_EQ(record.take(), "");
  EXPECT_EQ(list().attribute("restoretype"), "\"plugininstall\"");
}

}  // namespace
}  // namespace stowline
