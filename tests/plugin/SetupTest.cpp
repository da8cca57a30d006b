#include "plugin/src/Setup.h"
#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

struct Load : ::testing::Test {
  std::string stored() {
    return host.config().subsection("plugins.qorpanel.stowline").text("backuprestorepath").value();
  }

  Record record;
  FailingJournal journal{record};
  RecordingHost host{journal};
};

TEST_F(Load, BindsEveryHostNameInOrderThenAttachesTheSubsectionWithItsKey) {
  load(host);
  EXPECT_EQ(record.take(), expected::loaded());
}

TEST_F(Load, GivesTheKeyItsDefault) {
  load(host);
  EXPECT_EQ(stored(), "/media/hdd/");
}

TEST_F(Load, LetsTheHostFillTheKeyFromItsSettings) {
  host.configuration.values["plugins.qorpanel.stowline.backuprestorepath"] = "/media/usb";
  load(host);
  EXPECT_EQ(stored(), "/media/usb");
}

TEST_F(Load, AttachesTheSubsectionAfreshEachTime) {
  load(host);
  record.take();
  load(host);
  EXPECT_EQ(record.take(), expected::loaded());
}

TEST_F(Load, FailsWithoutThePanelsSubsection) {
  host.configuration.branches.erase("plugins.qorpanel");
  try {
    load(host);
    FAIL() << "nothing was raised";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.type(), "AttributeError");
  }
}

using BackupDirectory = ModuleTest;

struct Medium {
  const char* root;
  const char* directory;
};

constexpr Medium kMedia[] = {
    {"/media/hdd/", "/media/hdd/qor-stowline"},
    {"/media/usb", "/media/usb/qor-stowline"},
    {"/", "/qor-stowline"},
    {"", "/qor-stowline"},
    {"/media/net//", "/media/net//qor-stowline"},
    {"/media/my disk", "/media/my disk/qor-stowline"},
};

TEST_F(BackupDirectory, IsTheDirectoryUnderTheStoredMedium) {
  for (const Medium& medium : kMedia) {
    SCOPED_TRACE(medium.root);
    setMedium(medium.root);
    host.system.addDirectory(medium.directory);
    EXPECT_EQ(getBackupRestorePath(host), medium.directory);
    EXPECT_EQ(record.take(), expected::backupDirectory(medium.directory));
  }
}

TEST_F(BackupDirectory, IsMadeWhenItIsMissing) {
  for (const Medium& medium : kMedia) {
    SCOPED_TRACE(medium.root);
    Receiver receiver;
    receiver.setMedium(medium.root);
    EXPECT_EQ(getBackupRestorePath(receiver.host), medium.directory);
    EXPECT_EQ(receiver.record.take(), expected::newBackupDirectory(medium.directory));
    EXPECT_TRUE(receiver.host.system.has(medium.directory));
  }
}

TEST_F(BackupDirectory, ThatCannotBeMadeIsNoPathAndNoError) {
  journal.failOn("os.makedirs(\"/media/hdd/qor-stowline\")", {"OSError", "read-only", 30});
  EXPECT_EQ(getBackupRestorePath(host), std::nullopt);
  EXPECT_EQ(record.take(), expected::newBackupDirectory());
}

TEST_F(BackupDirectory, ThatCannotBeTestedIsNoPathAndIsNotMade) {
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"TypeError", "odd"});
  EXPECT_EQ(getBackupRestorePath(host), std::nullopt);
  EXPECT_EQ(record.take(), expected::backupDirectory());
}

TEST_F(BackupDirectory, FollowsAChangedSettingAtTheNextCall) {
  getBackupRestorePath(host);
  setMedium("/media/usb");
  record.take();
  EXPECT_EQ(getBackupRestorePath(host), "/media/usb/qor-stowline");
  EXPECT_EQ(record.take(), expected::newBackupDirectory("/media/usb/qor-stowline"));
}

}  // namespace
}  // namespace stowline
