#include "tests/plugin/MenuTest.h"

namespace stowline {
namespace {

using namespace expected;

struct MediumChoice : MenuTest {
  MediumChoice() { mount({}); }

  void mount(const std::vector<std::string>& lines) { host.system.addText("/proc/mounts", lines); }

  void choose() {
    openMenu("backup");
    menu().press("ok");
  }
};

const std::string kNoAutomounts =
    exists("/media/net/autofs") + exists("/media/net/autonet") + "open(\"/proc/mounts\")\n";

std::string offered(const std::vector<std::string>& media) {
  const Object choices = host::list();
  for (const std::string& medium : media) choices.append(host::tuple({medium, medium, Object()}));
  const std::string title = "Please select medium to use as backup location";
  return translate(title) +
         "session.openWithCallback(backuprestorepath_choosen, ChoiceBox, title=" + quoted(title) +
         ", list=" + described(choices) + ")\n" + setDialogTitle();
}

TEST_F(MediumChoice, OffersTheMountedMediaInTheTablesOrder) {
  mount({"/dev/root / ubifs rw 0 0\n", "/dev/sdb1 /media/usb vfat rw 0 0\n",
         "/dev/sda1 /media/hdd ext3 rw 0 0\n", "/dev/sdb1 /media/usb vfat rw 0 0\n"});
  choose();
  EXPECT_EQ(record.take(),
            kSelected + kNoAutomounts + offered({"/media/usb", "/media/hdd", "/media/usb"}));
}

struct MountLine {
  const char* line;
  std::vector<std::string> offered;
};

const MountLine kMountLines[] = {
    {"/dev/sda1 /media/hdd ext3 rw 0 0\n", {"/media/hdd"}},
    {"/dev/sda1 /media/hdd/ ext3 rw 0 0\n", {"/media/hdd/"}},
    {"/dev/sda1 /media/hdd/deep/er ext3 rw 0 0\n", {"/media/hdd/deep/er"}},
    {"/dev/sda1 /media/ ext3 rw 0 0\n", {"/media/"}},
    {"/dev/sda1 /media ext3 rw 0 0\n", {}},
    {"/dev/sda1 /mediax ext3 rw 0 0\n", {}},
    {"/dev/sda1 /mnt/media/hdd ext3 rw 0 0\n", {}},
    {"tmpfs /media/net tmpfs rw 0 0\n", {}},
    {"tmpfs /media/net/ tmpfs rw 0 0\n", {"/media/net/"}},
    {"//nas/a /media/net/nas cifs rw 0 0\n", {"/media/net/nas"}},
    {"auto /media/net/autofs autofs rw 0 0\n", {}},
    {"auto /media/net/autonet autofs rw 0 0\n", {}},
    {"nas:/a /media/net/autofs/nas nfs rw 0 0\n", {"/media/net/autofs/nas"}},
    {"/dev/sda1 /media/my\\040disk vfat rw 0 0\n", {"/media/my\\040disk"}},
    {"/dev/sda1  /media/hdd ext3 rw 0 0\n", {}},   // the second field is empty
    {"/dev/sda1\t/media/hdd ext3 rw 0 0\n", {}},   // blanks alone separate fields
    {"/dev/sda1 /media/hdd\n", {"/media/hdd\n"}},  // the newline belongs to the last field
    {"/dev/sda1 /media/hdd", {"/media/hdd"}},
    {"/media/hdd\n", {}},
    {"\n", {}},
    {"", {}},
};

TEST_F(MediumChoice, OffersAMountPointByItsPathAlone) {
  for (const MountLine& mounted : kMountLines) {
    SCOPED_TRACE(mounted.line);
    mount({mounted.line});
    choose();
    EXPECT_EQ(record.take(), kSelected + kNoAutomounts + offered(mounted.offered));
  }
}

TEST_F(MediumChoice, LeavesOutAutomountsThatCannotBeListed) {
  host.system.addDirectory("/media/net/autofs", {"good", "refused", "gone"});
  host.system.addDirectory("/media/net/autofs/good");
  host.system.addDirectory("/media/net/autofs/refused");
  host.system.addDirectory("/media/net/autonet", {"file"});
  host.system.addFile("/media/net/autonet/file");
  journal.failOn("os.listdir(\"/media/net/autofs/refused\")", {"TypeError", "any error counts"});
  mount({"a /media/net/autofs/good nfs rw 0 0\n", "b /media/net/autofs/refused nfs rw 0 0\n",
         "c /media/net/autofs/gone nfs rw 0 0\n", "d /media/net/autonet/file nfs rw 0 0\n",
         "e /media/net/autofs/refused/below nfs rw 0 0\n"});
  choose();
  EXPECT_EQ(record.take(), kSelected + block(R"(
os_path.exists("/media/net/autofs")
os.listdir("/media/net/autofs")
os_path.exists("/media/net/autofs/good")
os.listdir("/media/net/autofs/good")
os_path.exists("/media/net/autofs/refused")
os.listdir("/media/net/autofs/refused")
os_path.exists("/media/net/autofs/gone")
os_path.exists("/media/net/autonet")
os.listdir("/media/net/autonet")
os_path.exists("/media/net/autonet/file")
os.listdir("/media/net/autonet/file")
open("/proc/mounts")
)") +
                               offered({"/media/net/autofs/good", "/media/net/autofs/gone",
                                        "/media/net/autofs/refused/below"}));
}

const std::string kSaved = block(R"(
config.plugins.qorpanel.stowline.backuprestorepath.save()
config.plugins.qorpanel.stowline.save()
config.save()
)");

TEST_F(MediumChoice, StoresTheTextFormOfTheSecondItem) {
  choose();
  record.take();
  host.answer(host::tuple({"shown"_t, 5, Object()}));
  EXPECT_TRUE(record.take().starts_with(
      "config.plugins.qorpanel.stowline.backuprestorepath.value = \"5\"\n" + kSaved));
}

TEST_F(MediumChoice, AnythingElseThanAChoiceRaisesAndStoresNothing) {
  openMenu("backup");
  for (const Object& option : {Object(true), host::tuple({"/media/usb"_t}), host::tuple({})}) {
    SCOPED_TRACE(described(option));
    EXPECT_THROW(menu().call("backuprestorepath_choosen", {option}), plain::Error);
    EXPECT_EQ(record.take(), "");
  }
}

TEST_F(MediumChoice, CheckAloneSavesNothing) {
  openMenu("restore");
  host.system.addDirectory(kDirectory);
  menu().call("checkFolders");
  EXPECT_EQ(record.take(), backupDirectory() + menuCreated("restore", "/media/hdd/"));
  EXPECT_EQ(menu().attribute("backuprestorepath"), quoted(kDirectory));
}

}  // namespace
}  // namespace stowline
