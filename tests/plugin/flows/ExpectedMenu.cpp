#include <string_view>

#include "tests/plugin/flows/Expected.h"
#include "tests/support/Journal.h"

namespace stowline::expected {
namespace {

struct MenuRow {
  std::string_view menu;
  std::string_view key;
  std::string_view title;
  std::string_view description;
  std::string_view picture;
};

constexpr MenuRow kMenuRows[] = {
    {"both", "path", "Backup/restore device : %s", "set device for directory qor-stowline",
     "backuplocation.png"},
    {"backup", "createpluginlist", "Backup installed plugins",
     "creates a list of installed plugins, skins and softcams", "services.png"},
    {"backup", "settingbackup", "Backup channel settings", "save channel and bouquet settings",
     "restoresettings.png"},
    {"backup", "configbackup", "Backup configurations",
     "save common configurations for GUI, plugins and softcams", "filesys.png"},
    {"restore", "installpluginlist", "Restore plugins from saved list",
     "installs all available plugins from online feed", "services.png"},
    {"restore", "settingrestore", "Restore channel settings",
     "reload saved channel and bouquet settings", "restoresettings.png"},
    {"restore", "configrestore", "Restore configurations",
     "restore common configurations for GUI, plugins and softcams", "filesys.png"},
    {"restore", "installlocalplugin", "Install local packages", "from %s/qor-stowline/plugins",
     "targz.png"},
    {"restore", "personalscript", "Run personal script",
     "executes your personal backup/restore scripts", "exemanager.png"},
};

/// Returns the text with the medium in it, and appends the operations that make it.
std::string shown(std::string_view text, const std::string& medium, std::string& operations) {
  std::string result(text);
  operations += translate(result);
  if (const auto place = result.find("%s"); place != std::string::npos) {
    operations += "config.plugins.qorpanel.stowline.backuprestorepath.value\n";
    result.replace(place, 2, medium);
  }
  return result;
}

}  // namespace

std::string menuOpened(const std::string& type) {
  const std::string flavour = type == "restore" ? "Restore" : "Backup";
  const std::string title = "QOR Stowline (" + flavour + ")";
  return block(R"(
Screen.__init__(session)
self.skin_path = "/plugin"
_("QOR Stowline")
self.title = "QOR Stowline"
localtime()
HardwareInfoVu().get_device_name()
)") + translate(flavour) +
         "self.title = " + support::quoted(title) + "\n" + staticText("key_green", "") +
         staticText("key_yellow", "") + staticText("title", title) + widget("menu", "List([])") +
         widget("status", "Label(\"\")") + label("key_red", "Exit") +
         widget("shortcuts",
                R"(ActionMap(["SetupActions", "ColorActions", "DirectionActions"], )"
                R"({"cancel": keyCancel, "ok": runMenuEntry, "red": keyCancel}, -2))") +
         block(R"(
ComConsole()
IpkgComponent()
ipkg.addCallback(ipkgCallback)
onLayoutFinish.append(createMenu)
)");
}

std::string menuCreated(const std::string& type, const std::string& medium) {
  using support::quoted;
  std::string operations;
  std::string rows;
  for (const MenuRow& row : kMenuRows) {
    if (row.menu != "both" && row.menu != type) continue;
    const std::string title = shown(row.title, medium, operations);
    const std::string description = shown(row.description, medium, operations);
    const std::string file = "SystemPlugins/QORPanel/pictures/" + std::string(row.picture);
    const std::string path = "/usr/lib/enigma2/python/Plugins/" + file;
    operations += "resolveFilename(SCOPE_PLUGINS, " + quoted(file) + ")\n";
    operations += "LoadPixmap(path=" + quoted(path) + ", cached=True)\n";
    rows += (rows.empty() ? "(" : ", (") + quoted(std::string(row.key)) + ", " + quoted(title) +
            ", " + quoted(description) + ", <pixmap " + path + ">, None)";
  }
  return operations + "self[\"menu\"].setList([" + rows + "])\n";
}

}  // namespace stowline::expected
