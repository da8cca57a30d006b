#include "tests/plugin/MenuTest.h"
#include "tests/support/Raised.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kPlugins = kDirectory + "/plugins";
const std::string kQueried = outputRead(kInstalledPlugins);

std::string screenOpened(std::vector<std::string> names) {
  for (std::string& name : names) name = kPlugins + "/" + name;
  return packageScreen("session.open(", names);
}

struct LocalPackages : MenuTest {
  LocalPackages() { host.system.addDirectory(kDirectory); }

  /// Opens the restore menu and starts the installation of local packages.
  void start() {
    openMenu("restore");
    select("installlocalplugin"_t);
    menu().press("ok");
    record.take();
  }
};

TEST_F(LocalPackages, HandsEveryPackageFileToThePackageScreenInListingOrder) {
  host.system.addDirectory(
      kPlugins, {"b.ipk", "a.ipk", "b.IPK", "c.ipk.txt", "two words.ipk", ".ipk", "ipk"});
  start();
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"b.ipk", "a.ipk", "two words.ipk", ".ipk"}));
  EXPECT_EQ(menu().attribute("path"), quoted(kPlugins));
  EXPECT_EQ(menu().attribute("ipklist"),
            described(plain::listOf({kPlugins + "/b.ipk", kPlugins + "/a.ipk",
                                     kPlugins + "/two words.ipk", kPlugins + "/.ipk"})));
  EXPECT_EQ(menu().attribute("restoretype"), "\"\"");
}

TEST_F(LocalPackages, LeaveNothingOfTheOnesBeforeWhenTheirInstallationFails) {
  host.system.outputs[kInstalledPlugins] = {"a\n"};
  host.system.addDirectory(kPlugins, {"b.ipk"});
  start();
  menu().call("installLocalPlugins");
  journal.failOn("os.popen(" + quoted(kInstalledPlugins) + ").readlines()",
                 {"OSError", "no process", 11});
  EXPECT_THROW(menu().call("installLocalPlugins"), plain::Error);
  EXPECT_EQ(menu().attribute("ipklist"), "[]");
  EXPECT_EQ(menu().attribute("pluginsinstalled"), "[]");
  EXPECT_EQ(menu().attribute("pluginsinstalledclean"), "[]");
}

TEST_F(LocalPackages, AreQueuedEvenWhenTheirPackageIsInstalled) {
  host.system.outputs[kInstalledPlugins] = {"a\n", "a.ipk\n", "enigma2-plugin-extensions-a\n"};
  host.system.addDirectory(kPlugins, {"a.ipk", "enigma2-plugin-extensions-a.ipk"});
  start();
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"a.ipk", "enigma2-plugin-extensions-a.ipk"}));
  EXPECT_EQ(menu().attribute("pluginsinstalledclean"),
            R"(["a", "a.ipk", "enigma2-plugin-extensions-a"])");
}

TEST_F(LocalPackages, AreQueuedAgainByASecondInstallationOfTheSameMenu) {
  host.system.addDirectory(kPlugins, {"a.ipk"});
  start();
  menu().send("EVENT_DONE");
  record.take();
  select("installlocalplugin"_t);
  menu().press("ok");
  record.take();
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"a.ipk", "a.ipk"}));
  EXPECT_EQ(menu().attribute("ipklist"), "[" + quoted(kPlugins + "/a.ipk") + "]");
}

TEST_F(LocalPackages, OpenNoScreenWhenThereIsNone) {
  host.system.addDirectory(kPlugins, {"readme.txt"});
  start();
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins));
}

TEST_F(LocalPackages, SayWhenTheMediumIsNotWriteableWithoutAnyTitle) {
  start();
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(),
            backupDirectory() + box("Sorry, your backup destination is not writeable.\n\nPlease "
                                    "choose another one.",
                                    "TYPE_INFO"));
  EXPECT_EQ(menu().attribute("path"), "None");
}

TEST_F(LocalPackages, StartOnceForTwoCompletions) {
  host.system.addDirectory(kPlugins, {"a.ipk"});
  start();
  menu().send("EVENT_DONE");
  record.take();
  menu().send("EVENT_DONE");
  EXPECT_EQ(record.take(), "");
}

TEST_F(LocalPackages, OtherEventsAndOtherRestoreTypesStartNothing) {
  start();
  menu().send("EVENT_OTHER");
  EXPECT_EQ(record.take(), "");
  for (const char* type : {"plugininstall", "settingrestore", ""}) {
    menu().set("restoretype", std::string(type));
    menu().send("EVENT_DONE");
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(menu().attribute("restoretype"), quoted(type));
  }
}

TEST_F(LocalPackages, FailedRefreshEndsInTheMissingSetStatus) {
  start();
  EXPECT_EQ(raised([&] { menu().send("EVENT_ERROR"); }),
            "0 AttributeError: 'Stowline' object has no attribute 'setStatus'");
  EXPECT_EQ(record.take(), "");
  EXPECT_EQ(menu().attribute("restoretype"), "\"installlocalplugin\"");
}

}  // namespace
}  // namespace stowline
