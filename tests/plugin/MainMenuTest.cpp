#include "plugin/src/BackupActions.h"
#include "tests/plugin/MenuTest.h"

namespace stowline {
namespace {

using namespace expected;

using MainMenu = MenuTest;

struct Flavour {
  const char* screen_type;
  const char* screentype;
  const char* title;
};

constexpr Flavour kFlavours[] = {
    {"backup", "backup", "QOR Stowline (Backup)"},
    {"restore", "restore", "QOR Stowline (Restore)"},
    {"Restore", "backup", "QOR Stowline (Backup)"},
    {"restore ", "backup", "QOR Stowline (Backup)"},
    {"", "backup", "QOR Stowline (Backup)"},
    {"other", "backup", "QOR Stowline (Backup)"},
};

TEST_F(MainMenu, OpensInTheRestoreFlavourForExactlyRestoreElseInTheBackupFlavour) {
  for (const Flavour& flavour : kFlavours) {
    SCOPED_TRACE(flavour.screen_type);
    const Opened<Stowline> menu(*this, "/plugin", flavour.screen_type);
    EXPECT_EQ(record.take(), menuOpened(flavour.screentype));
    EXPECT_EQ(menu.screen.screentype, flavour.screentype);
    EXPECT_EQ(menu.screen.title, flavour.title);
    EXPECT_EQ(menu.peer.text("title"), flavour.title);
  }
}

TEST_F(MainMenu, IsTheBackupMenuWhenNoTypeIsGiven) {
  Opened<Stowline> menu(*this, "/plugin");
  EXPECT_EQ(record.take(), menuOpened("backup"));
  menu.peer.finishLayout();
  EXPECT_EQ(record.take(), menuCreated("backup", "/media/hdd/"));
}

TEST_F(MainMenu, StartsWithItsDocumentedState) {
  const Opened<Stowline> menu(*this, "/plugin", "backup");
  EXPECT_EQ(menu.screen.skin_path, "/plugin");
  EXPECT_EQ(menu.screen.session, &session);
  EXPECT_FALSE(menu.screen.reloadPluginlist);
  EXPECT_TRUE(menu.screen.list.empty());
  EXPECT_TRUE(menu.screen.cmdList.empty());
  EXPECT_NE(menu.screen.Console, nullptr);
  EXPECT_NE(menu.screen.ipkg, nullptr);
  EXPECT_EQ(menu.screen.restoretype, "");
}

TEST_F(MainMenu, OwnsOneManualBackupObject) {
  const Opened<Stowline> menu(*this, "/plugin", "restore");
  const auto& actions = dynamic_cast<const BackupActions&>(*menu.screen.backupactions);
  EXPECT_EQ(actions.executiontime, kStamp);
}

TEST_F(MainMenu, ShowsTheMediumThenTheEntriesOfItsFlavour) {
  for (const char* type : {"backup", "restore"}) {
    Opened<Stowline> menu(*this, "/plugin", type);
    record.take();
    menu.peer.finishLayout();
    EXPECT_EQ(record.take(), menuCreated(type, "/media/hdd/"));
    EXPECT_EQ(bracketed(menu.screen.list),
              bracketed(menu.peer.widget<RecordingList>("menu").entries));
  }
}

TEST_F(MainMenu, ReadsTheMediumAfreshEachTimeItIsBuilt) {
  openMenu("restore");
  for (const char* medium : {"/media/usb", "", "/media/100%s"}) {
    setMedium(medium);
    menu().createMenu();
    EXPECT_EQ(record.take(), menuCreated("restore", medium));
  }
}

TEST_F(MainMenu, TranslatesATextBeforeItPutsTheMediumIn) {
  host.translations = {{"Backup/restore device : %s", "Medium <%s>"},
                       {"from %s/qor-stowline/plugins", "aus %s/qor-stowline/plugins"},
                       {"Install local packages", "Lokale Pakete"}};
  openMenu("restore");
  EXPECT_EQ(menu().list[0].list()->at(1).str(), "Medium </media/hdd/>");
  EXPECT_EQ(menu().list[4].list()->at(1).str(), "Lokale Pakete");
  EXPECT_EQ(menu().list[4].list()->at(2).str(), "aus /media/hdd//qor-stowline/plugins");
}

TEST_F(MainMenu, TranslatesItsTitleInTwoParts) {
  host.translations = {{"QOR Stowline", "QOR Sicherung"}, {"Restore", "Holen"}, {"Exit", "Ende"}};
  openMenu("restore");
  EXPECT_EQ(menu().title, "QOR Sicherung (Holen)");
  EXPECT_EQ(peer().text("key_red"), "Ende");
}

TEST_F(MainMenu, IsBuiltWithoutAPictureThatIsMissing) {
  host.widgets.missingPictures = {
      "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/filesys.png"};
  openMenu("backup");
  ASSERT_EQ(rows().entries.size(), 4u);
  EXPECT_EQ(described(rows().entries[3]),
            "(\"configbackup\", \"Backup configurations\", \"save common configurations for GUI, "
            "plugins and softcams\", None, None)");
}

struct MenuKey {
  const char* action;
  const char* first_operation;
};

constexpr MenuKey kMenuKeys[] = {
    {"ok", "self[\"menu\"].getCurrent()\n"}, {"cancel", "close(True)\n"}, {"red", "close(True)\n"}};

TEST_F(MainMenu, BindsItsKeys) {
  for (const MenuKey& key : kMenuKeys) {
    SCOPED_TRACE(key.action);
    openMenu("backup");
    rows().entries.clear();
    peer().press(key.action);
    EXPECT_EQ(record.take(), key.first_operation);
  }
}

}  // namespace
}  // namespace stowline
