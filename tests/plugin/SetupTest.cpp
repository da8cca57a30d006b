#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"
#include "tests/support/Raised.h"

namespace stowline {
namespace {

struct Load : ::testing::Test {
  std::string stored() { return described(mediumSetting(host.module())["value"_t]); }

  Record record;
  FailingJournal journal{record};
  Recorder host{journal};
};

TEST_F(Load, BindsEveryHostNameInOrderThenAttachesTheSubsectionWithItsKey) {
  load(host.module());
  EXPECT_EQ(record.take(), expected::loaded());
}

TEST_F(Load, GivesTheKeyItsDefault) {
  load(host.module());
  EXPECT_EQ(stored(), "\"/media/hdd/\"");
}

TEST_F(Load, LetsTheHostFillTheKeyFromItsSettings) {
  host.settings.values["config.plugins.qorpanel.stowline.backuprestorepath"] = "/media/usb";
  load(host.module());
  EXPECT_EQ(stored(), "\"/media/usb\"");
}

TEST_F(Load, AttachesTheSubsectionAfreshEachTime) {
  load(host.module());
  record.take();
  load(host.module());
  EXPECT_EQ(record.take(), expected::loaded());
}

TEST_F(Load, FailsWithoutThePanelsSubsection) {
  const Object plugins = host.named("config")["plugins"_t];
  plain::as<plain::Instance>(plugins)->attributes.erase("qorpanel");
  EXPECT_EQ(raised([&] { load(host.module()); }),
            "0 AttributeError: 'ConfigSubsection' object has no attribute 'qorpanel'");
}

std::string backupRestorePath(const Receiver& receiver) {
  return described(receiver.host.named("getBackupRestorePath")());
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
    EXPECT_EQ(backupRestorePath(*this), quoted(medium.directory));
    EXPECT_EQ(record.take(), expected::backupDirectory(medium.directory));
  }
}

TEST_F(BackupDirectory, IsMadeWhenItIsMissing) {
  for (const Medium& medium : kMedia) {
    SCOPED_TRACE(medium.root);
    Receiver receiver;
    receiver.setMedium(medium.root);
    EXPECT_EQ(backupRestorePath(receiver), quoted(medium.directory));
    EXPECT_EQ(receiver.record.take(), expected::newBackupDirectory(medium.directory));
    EXPECT_TRUE(receiver.host.system.has(medium.directory));
  }
}

TEST_F(BackupDirectory, ThatCannotBeMadeIsNoPathAndNoError) {
  journal.failOn("os.makedirs(\"/media/hdd/qor-stowline\")", {"OSError", "read-only", 30});
  EXPECT_EQ(backupRestorePath(*this), "None");
  EXPECT_EQ(record.take(), expected::newBackupDirectory());
}

TEST_F(BackupDirectory, ThatCannotBeTestedIsNoPathAndIsNotMade) {
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"TypeError", "odd"});
  EXPECT_EQ(backupRestorePath(*this), "None");
  EXPECT_EQ(record.take(), expected::backupDirectory());
}

TEST_F(BackupDirectory, FollowsAChangedSettingAtTheNextCall) {
  backupRestorePath(*this);
  setMedium("/media/usb");
  record.take();
  EXPECT_EQ(backupRestorePath(*this), "\"/media/usb/qor-stowline\"");
  EXPECT_EQ(record.take(), expected::newBackupDirectory("/media/usb/qor-stowline"));
}

}  // namespace
}  // namespace stowline
