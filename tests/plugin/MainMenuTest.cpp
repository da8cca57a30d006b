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
    const Opened menu(*this, "Stowline", "/plugin"_t, std::string(flavour.screen_type));
    EXPECT_EQ(record.take(), menuOpened(flavour.screentype));
    EXPECT_EQ(menu.attribute("screentype"), quoted(flavour.screentype));
    EXPECT_EQ(menu.attribute("title"), quoted(flavour.title));
    EXPECT_EQ(menu.text("title"), flavour.title);
  }
}

TEST_F(MainMenu, IsTheBackupMenuWhenNoTypeIsGiven) {
  const Opened menu(*this, "Stowline", "/plugin"_t);
  EXPECT_EQ(record.take(), menuOpened("backup"));
  menu.finishLayout();
  EXPECT_EQ(record.take(), menuCreated("backup", "/media/hdd/"));
}

TEST_F(MainMenu, StartsWithItsDocumentedState) {
  const Opened menu(*this, "Stowline", "/plugin"_t, "backup"_t);
  EXPECT_EQ(menu.attribute("skin_path"), "\"/plugin\"");
  EXPECT_TRUE(menu.object().get("session"_t) == host.session());
  EXPECT_EQ(menu.attribute("reloadPluginlist"), "False");
  EXPECT_EQ(menu.attribute("list"), "[]");
  EXPECT_EQ(menu.attribute("cmdList"), "[]");
  EXPECT_EQ(menu.attribute("Console"), "<console>");
  EXPECT_EQ(menu.attribute("ipkg"), "<IpkgComponent>");
  EXPECT_EQ(menu.attribute("restoretype"), "missing");
}

TEST_F(MainMenu, OwnsOneManualBackupObject) {
  const Opened menu(*this, "Stowline", "/plugin"_t, "restore"_t);
  EXPECT_EQ(Made(menu.object()["backupactions"_t]).attribute("executiontime"), quoted(kStamp));
}

TEST_F(MainMenu, ShowsTheMediumThenTheEntriesOfItsFlavour) {
  for (const std::string type : {"backup", "restore"}) {
    const Opened menu(*this, "Stowline", "/plugin"_t, type);
    record.take();
    menu.finishLayout();
    EXPECT_EQ(record.take(), menuCreated(type, "/media/hdd/"));
    EXPECT_EQ(menu.attribute("list"), described(menu.list("menu").rows));
  }
}

TEST_F(MainMenu, ReadsTheMediumAfreshEachTimeItIsBuilt) {
  openMenu("restore");
  for (const char* medium : {"/media/usb", "", "/media/100%s"}) {
    setMedium(medium);
    menu().call("createMenu");
    EXPECT_EQ(record.take(), menuCreated("restore", medium));
  }
}

TEST_F(MainMenu, TranslatesATextBeforeItPutsTheMediumIn) {
  host.translations = {{"Backup/restore device : %s", "Medium <%s>"},
                       {"from %s/qor-stowline/plugins", "aus %s/qor-stowline/plugins"},
                       {"Install local packages", "Lokale Pakete"}};
  openMenu("restore");
  EXPECT_EQ(described(rows().item(0).item(1)), "\"Medium </media/hdd/>\"");
  EXPECT_EQ(described(rows().item(4).item(1)), "\"Lokale Pakete\"");
  EXPECT_EQ(described(rows().item(4).item(2)), "\"aus /media/hdd//qor-stowline/plugins\"");
}

TEST_F(MainMenu, TranslatesItsTitleInTwoParts) {
  host.translations = {{"QOR Stowline", "QOR Sicherung"}, {"Restore", "Holen"}, {"Exit", "Ende"}};
  openMenu("restore");
  EXPECT_EQ(menu().attribute("title"), "\"QOR Sicherung (Holen)\"");
  EXPECT_EQ(menu().text("key_red"), "Ende");
}

TEST_F(MainMenu, IsBuiltWithoutAPictureThatIsMissing) {
  host.missing_pictures = {
      "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/filesys.png"};
  openMenu("backup");
  ASSERT_EQ(rows().size(), 4);
  EXPECT_EQ(described(rows().item(3)),
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
    rows() = host::list();
    menu().press(key.action);
    EXPECT_EQ(record.take(), key.first_operation);
  }
}

}  // namespace
}  // namespace stowline
