#include "plugin/src/Stowline.h"

#include <span>

#include "plugin/src/Framework.h"
#include "plugin/src/Media.h"
#include "plugin/src/Packages.h"
#include "plugin/src/Set.h"
#include "plugin/src/Setup.h"

namespace stowline {
namespace {

/// A row of the menu: its key, what it shows, and what it does, with what that needs. "%s" in a
/// text stands for the chosen medium.
struct MenuEntry {
  Text key = ""_t;
  Text title = ""_t;
  Text description = ""_t;
  Text picture = ""_t;
  void (*run)(const Call& call, const MenuEntry& entry) = nullptr;
  Text operand = ""_t;  ///< the engine's job, or the restore type of the list
  Text success = ""_t;  ///< what is said of the job's result
  Text failure = ""_t;
};

/// Runs a job and says whether it succeeded: its result has to equal true.
void runJob(const Call& call, const MenuEntry& entry) {
  const bool done = call.self["backupactions"_t].get(entry.operand)() == true;
  const Object box =
      openBox(call, done ? entry.success : entry.failure, done ? "TYPE_INFO"_t : "TYPE_ERROR"_t);
  setBoxTitle(call.module, box);
}

void openRestoreList(const Call& call, const MenuEntry& entry) {
  const auto& [module, self, given] = call;
  self["restoretype"_t] = entry.operand;
  const Object open = self["session"_t].get("open"_t);
  open({module["StowlineRestore"_t], self["restoretype"_t], self["skin_path"_t]});
}

void openPluginLists(const Call& call, const MenuEntry& entry) {
  call.self["reloadPluginlist"_t] = true;
  openRestoreList(call, entry);
}

void updateFeed(const Call& call, const MenuEntry& entry) {
  const auto& [module, self, given] = call;
  self["restoretype"_t] = entry.operand;
  self["ipkg"_t].get("startCmd"_t)({module["IpkgComponent"_t]["CMD_UPDATE"_t]});
}

void chooseMedium(const Call& call, const MenuEntry& /*entry*/) {
  const auto& [module, self, given] = call;
  const Object choices = list();
  for (const Object& medium : mountedMedia(module))
    choices.append(tuple({medium, medium, Object()}));
  const Object open = self["session"_t].get("openWithCallback"_t);
  const Object box =
      open({self["backuprestorepath_choosen"_t],
            module["ChoiceBox"_t],
            {"title"_t, translated(module, "Please select medium to use as backup location"_t)},
            {"list"_t, choices}});
  setBoxTitle(module, box);
}

constexpr MenuEntry kMediumEntry = {"path"_t, "Backup/restore device : %s"_t,
                                    "set device for directory qor-stowline"_t,
                                    "backuplocation.png"_t, &chooseMedium};

constexpr MenuEntry kBackupEntries[] = {
    {"createpluginlist"_t, "Backup installed plugins"_t,
     "creates a list of installed plugins, skins and softcams"_t, "services.png"_t, &runJob,
     "createPluginList"_t, "List of installed plugins was created succesfully"_t,
     "Creating list of installed plugins failed"_t},
    {"settingbackup"_t, "Backup channel settings"_t, "save channel and bouquet settings"_t,
     "restoresettings.png"_t, &runJob, "createSettingFile"_t,
     "Settings backup finished succesfully"_t, "Backup settings failed"_t},
    {"configbackup"_t, "Backup configurations"_t,
     "save common configurations for GUI, plugins and softcams"_t, "filesys.png"_t, &runJob,
     "createConfigFile"_t, "Common configuration backup finished succesfully"_t,
     "Backup of common configurations failed"_t},
};

/// The key of the first row is not the type of the list that it opens.
constexpr MenuEntry kRestoreEntries[] = {
    {"installpluginlist"_t, "Restore plugins from saved list"_t,
     "installs all available plugins from online feed"_t, "services.png"_t, &openPluginLists,
     "plugininstall"_t},
    {"settingrestore"_t, "Restore channel settings"_t,
     "reload saved channel and bouquet settings"_t, "restoresettings.png"_t, &openRestoreList,
     "settingrestore"_t},
    {"configrestore"_t, "Restore configurations"_t,
     "restore common configurations for GUI, plugins and softcams"_t, "filesys.png"_t,
     &openRestoreList, "configrestore"_t},
    {"installlocalplugin"_t, "Install local packages"_t, "from %s/qor-stowline/plugins"_t,
     "targz.png"_t, &updateFeed, "installlocalplugin"_t},
    {"personalscript"_t, "Run personal script"_t, "executes your personal backup/restore scripts"_t,
     "exemanager.png"_t, &openRestoreList, "personalscript"_t},
};

Object construct(const Call& call) {
  const auto& [module, self, given] = call;
  module["Screen"_t]["__init__"_t]({self, given[0]});
  self["skin_path"_t] = given[1];
  self["session"_t] = given[0];
  self["screentype"_t] = given[2];
  self["reloadPluginlist"_t] = false;
  self["title"_t] = translated(module, "QOR Stowline"_t);
  self["backupactions"_t] = module["BackupActions"_t]({"manual"_t});
  const bool restore = self.get("screentype"_t) == "restore"_t;
  if (!restore) self["screentype"_t] = "backup"_t;
  const Object title = self["title"_t];
  self["title"_t] =
      title + (" ("_t + translated(module, restore ? "Restore"_t : "Backup"_t) + ")"_t);

  addText(call, "key_green"_t, ""_t);
  addText(call, "key_yellow"_t, ""_t);
  addTitle(call);
  self["list"_t] = list();
  self.setItem("menu"_t, module["List"_t]({self["list"_t]}));
  self.setItem("status"_t, module["Label"_t]({""_t}));
  addLabel(call, "key_red"_t, "Exit"_t);
  addKeys(call, "shortcuts"_t, "ActionMap"_t,
          {"SetupActions"_t, "ColorActions"_t, "DirectionActions"_t},
          {{"ok"_t, "runMenuEntry"_t}, {"cancel"_t, "keyCancel"_t}, {"red"_t, "keyCancel"_t}}, -2);
  addPackageManager(call);
  self["onLayoutFinish"_t]["append"_t]({self["createMenu"_t]});
  return {};
}

Object shown(const Module& module, Text text) {
  Object result = translated(module, text);
  if (text.characters().find("%s") == std::string_view::npos) return result;
  return result % mediumSetting(module).get("value"_t);
}

Object row(const Module& module, const MenuEntry& entry) {
  const Object title = shown(module, entry.title);
  const Object description = shown(module, entry.description);
  const Object load = module["LoadPixmap"_t];
  const Object resolve = module["resolveFilename"_t];
  const Object path = resolve(
      {module["SCOPE_PLUGINS"_t], Object("SystemPlugins/QORPanel/pictures/"_t) + entry.picture});
  return tuple(
      {entry.key, title, description, load({{"path"_t, path}, {"cached"_t, true}}), Object()});
}

void addRow(const Call& call, const MenuEntry& entry) {
  call.self.get("list"_t).append(row(call.module, entry));
}

Object createMenu(const Call& call) {
  const Object& self = call.self;
  self["list"_t] = list();
  addRow(call, kMediumEntry);
  if (self.get("screentype"_t) == "backup"_t) {
    for (const MenuEntry& entry : kBackupEntries) addRow(call, entry);
  } else if (self.get("screentype"_t) == "restore"_t) {
    for (const MenuEntry& entry : kRestoreEntries) addRow(call, entry);
  }
  self.item("menu"_t)["setList"_t]({self["list"_t]});
  return {};
}

/// Returns the entry of this key, whatever the menu's flavour, null when there is none.
const MenuEntry* entryOf(const Object& key) {
  if (key == kMediumEntry.key) return &kMediumEntry;
  for (const std::span<const MenuEntry> entries :
       {std::span<const MenuEntry>(kBackupEntries), std::span<const MenuEntry>(kRestoreEntries)}) {
    for (const MenuEntry& entry : entries) {
      if (key == entry.key) return &entry;
    }
  }
  return nullptr;
}

Object runMenuEntry(const Call& call) {
  const Object current = call.self.item("menu"_t)["getCurrent"_t]();
  if (!current.isTrue()) return {};
  const MenuEntry* const entry = entryOf(current.item(0));
  if (entry) entry->run(call, *entry);
  return {};
}

Object backuprestorepath_choosen(const Call& call) {
  const auto& [module, self, given] = call;
  const Object& option = given[0];
  if (!option.isNone()) mediumSetting(module)["value"_t] = option.item(1).str();
  mediumSetting(module)["save"_t]();
  moduleSettings(module)["save"_t]();
  module["config"_t]["save"_t]();
  self["checkFolders"_t]();
  return {};
}

void sayNotWriteable(const Call& call) {
  openBox(call, "Sorry, your backup destination is not writeable.\n\nPlease choose another one."_t,
          "TYPE_INFO"_t);
}

Object checkFolders(const Call& call) {
  const auto& [module, self, given] = call;
  self["backuprestorepath"_t] = module["getBackupRestorePath"_t]();
  if (!self.get("backuprestorepath"_t).isTrue()) sayNotWriteable(call);
  self["createMenu"_t]();
  return {};
}

Object keyCancel(const Call& call) {
  const auto& [module, self, given] = call;
  if (self.get("reloadPluginlist"_t).isTrue()) {
    module["plugins"_t]["clearPluginList"_t]();
    const Object read = module["plugins"_t].get("readPluginList"_t);
    read({module["resolveFilename"_t]({module["SCOPE_PLUGINS"_t]})});
  }
  self["close"_t]({true});
  return {};
}

Object ipkgCallback(const Call& call) {
  continueInstallation(call, "installlocalplugin"_t, "installLocalPlugins"_t);
  return {};
}

/// Looks for full paths among package names and so never finds one, and leaves what an earlier
/// installation of this menu has queued: opkg itself decides what is installed.
Object installLocalPlugins(const Call& call) {
  const auto& [module, self, given] = call;
  self["path"_t] = module["getBackupRestorePath"_t]();
  if (!self.get("path"_t).isTrue()) {
    sayNotWriteable(call);
    return {};
  }
  self["ipklist"_t] = list();
  listInstalledPlugins(call);
  self["path"_t] += "/plugins"_t;
  if (!exists(module, self["path"_t])) return {};
  for (const Object& name : Items(module["listdir"_t]({self["path"_t]}))) {
    if (name.endsWith(".ipk"_t)) self.get("ipklist"_t).append(self.get("path"_t) + "/"_t + name);
  }
  const Set installed(self["pluginsinstalledclean"_t]);
  for (const Object& package : Items(self["ipklist"_t])) {
    if (!reportInstalled(call, installed, package)) queueInstallation(call, package);
  }
  if (self.get("cmdList"_t).isTrue()) {
    const Object open = self["session"_t].get("open"_t);
    open({module["Ipkg"_t], {"cmdList"_t, self["cmdList"_t]}});
  }
  return {};
}

constexpr host::Operation kOperations[] = {
    {"__init__",
     &construct,
     {{"session"}, {"plugin_path"}, {"screen_type", "'backup'"}},
     "Makes the menu; \"restore\" makes it that of the restores."},
    {"createMenu", &createMenu, {}, "Builds the rows of the menu afresh."},
    {"runMenuEntry",
     &runMenuEntry,
     {{"ret", "None"}},
     "Carries out the entry under the cursor; ret is ignored."},
    {"backuprestorepath_choosen",
     &backuprestorepath_choosen,
     {{"option"}},
     "Stores the medium of a choice, saves the configuration and checks the medium."},
    {"checkFolders",
     &checkFolders,
     {},
     "Finds or makes the backup directory, says so when that fails, and builds the menu afresh."},
    {"keyCancel", &keyCancel, {}, "Closes the menu."},
    {"ipkgCallback",
     &ipkgCallback,
     {{"event"}, {"param"}},
     "Goes on with the installation of local packages when the feed update is done."},
    {"installLocalPlugins",
     &installLocalPlugins,
     {},
     "Hands every package file in the backup directory's \"plugins\" to the package screen."},
};

}  // namespace

constexpr host::Class kStowline = {"Stowline", "Screen"_t, kOperations,
                                   "The main menu, in its backup and its restore flavour."};

}  // namespace stowline
