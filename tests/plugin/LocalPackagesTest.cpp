#include "tests/plugin/MenuTest.h"

namespace stowline {
namespace {

using namespace expected;

using Lines = std::vector<std::string>;

const std::string kPlugins = kDirectory + "/plugins";
const std::string kQueried = outputRead(kInstalledPlugins);

std::string screenOpened(Lines names) {
  for (std::string& name : names) name = kPlugins + "/" + name;
  return packageScreen("session.open(", names);
}

struct LocalPackages : MenuTest {
  LocalPackages() { host.system.addDirectory(kDirectory); }

  /// Opens the restore menu and starts the installation of local packages.
  void start() {
    openMenu("restore");
    select("installlocalplugin");
    peer().press("ok");
    record.take();
  }

  void send(host::IpkgEvent event) {
    dynamic_cast<RecordingIpkgComponent&>(*menu().ipkg).callback->call(event, {});
  }
};

TEST_F(LocalPackages, HandsEveryPackageFileToThePackageScreenInListingOrder) {
  host.system.addDirectory(
      kPlugins, {"b.ipk", "a.ipk", "b.IPK", "c.ipk.txt", "two words.ipk", ".ipk", "ipk"});
  start();
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"b.ipk", "a.ipk", "two words.ipk", ".ipk"}));
  EXPECT_EQ(menu().path, kPlugins);
  EXPECT_EQ(menu().ipklist, (Lines{kPlugins + "/b.ipk", kPlugins + "/a.ipk",
                                   kPlugins + "/two words.ipk", kPlugins + "/.ipk"}));
  EXPECT_EQ(menu().restoretype, "");
}

TEST_F(LocalPackages, LeaveNothingOfTheOnesBeforeWhenTheirInstallationFails) {
  host.system.outputs[kInstalledPlugins] = {"a\n"};
  host.system.addDirectory(kPlugins, {"b.ipk"});
  start();
  menu().installLocalPlugins();
  journal.failOn("os.popen(" + quoted(kInstalledPlugins) + ").readlines()",
                 {"OSError", "no process", 11});
  EXPECT_THROW(menu().installLocalPlugins(), host::Error);
  EXPECT_EQ(menu().ipklist, Lines{});
  EXPECT_EQ(menu().pluginsinstalled, Lines{});
  EXPECT_EQ(menu().pluginsinstalledclean, Lines{});
}

TEST_F(LocalPackages, AreQueuedEvenWhenTheirPackageIsInstalled) {
  host.system.outputs[kInstalledPlugins] = {"a\n", "a.ipk\n", "enigma2-plugin-extensions-a\n"};
  host.system.addDirectory(kPlugins, {"a.ipk", "enigma2-plugin-extensions-a.ipk"});
  start();
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"a.ipk", "enigma2-plugin-extensions-a.ipk"}));
  EXPECT_EQ(menu().pluginsinstalledclean, (Lines{"a", "a.ipk", "enigma2-plugin-extensions-a"}));
}

TEST_F(LocalPackages, AreQueuedAgainByASecondInstallationOfTheSameMenu) {
  host.system.addDirectory(kPlugins, {"a.ipk"});
  start();
  send(host::IpkgEvent::EVENT_DONE);
  record.take();
  select("installlocalplugin");
  peer().press("ok");
  record.take();
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins) +
                               screenOpened({"a.ipk", "a.ipk"}));
  EXPECT_EQ(menu().ipklist, Lines{kPlugins + "/a.ipk"});
}

TEST_F(LocalPackages, OpenNoScreenWhenThereIsNone) {
  host.system.addDirectory(kPlugins, {"readme.txt"});
  start();
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(), backupDirectory() + kQueried + exists(kPlugins) + listdir(kPlugins));
}

TEST_F(LocalPackages, SayWhenTheMediumIsNotWriteableWithoutAnyTitle) {
  start();
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(),
            backupDirectory() + box("Sorry, your backup destination is not writeable.\n\nPlease "
                                    "choose another one.",
                                    "TYPE_INFO"));
  EXPECT_EQ(menu().path, std::nullopt);
}

TEST_F(LocalPackages, StartOnceForTwoCompletions) {
  host.system.addDirectory(kPlugins, {"a.ipk"});
  start();
  send(host::IpkgEvent::EVENT_DONE);
  record.take();
  send(host::IpkgEvent::EVENT_DONE);
  EXPECT_EQ(record.take(), "");
}

TEST_F(LocalPackages, OtherEventsAndOtherRestoreTypesStartNothing) {
  start();
  send(host::IpkgEvent::EVENT_OTHER);
  EXPECT_EQ(record.take(), "");
  for (const char* type : {"plugininstall", "settingrestore", ""}) {
    menu().restoretype = type;
    send(host::IpkgEvent::EVENT_DONE);
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(menu().restoretype, type);
  }
}

TEST_F(LocalPackages, FailedRefreshEndsInTheMissingSetStatus) {
  start();
  try {
    send(host::IpkgEvent::EVENT_ERROR);
    FAIL() << "nothing was raised";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.type(), "AttributeError");
  }
  EXPECT_EQ(record.take(), "self.setStatus(\"error\")\n");
  EXPECT_EQ(menu().restoretype, "installlocalplugin");
}

}  // namespace
}  // namespace stowline
