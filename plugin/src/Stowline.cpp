#include "plugin/src/Stowline.h"

#include <unordered_set>
#include <utility>

#include "plugin/src/BackupActions.h"
#include "plugin/src/Media.h"
#include "plugin/src/Packages.h"
#include "plugin/src/Setup.h"
#include "plugin/src/StowlineRestore.h"

namespace stowline {

/// A row of the menu. "%s" in a title or description stands for the chosen medium.
struct MenuEntry {
  const char* key;
  const char* title;
  const char* description;
  const char* picture;
};

namespace {

constexpr MenuEntry kMediumEntry = {"path", "Backup/restore device : %s",
                                    "set device for directory qor-stowline",
                                    "SystemPlugins/QORPanel/pictures/backuplocation.png"};

constexpr MenuEntry kBackupEntries[] = {
    {"createpluginlist", "Backup installed plugins",
     "creates a list of installed plugins, skins and softcams",
     "SystemPlugins/QORPanel/pictures/services.png"},
    {"settingbackup", "Backup channel settings", "save channel and bouquet settings",
     "SystemPlugins/QORPanel/pictures/restoresettings.png"},
    {"configbackup", "Backup configurations",
     "save common configurations for GUI, plugins and softcams",
     "SystemPlugins/QORPanel/pictures/filesys.png"},
};

constexpr MenuEntry kRestoreEntries[] = {
    {"installpluginlist", "Restore plugins from saved list",
     "installs all available plugins from online feed",
     "SystemPlugins/QORPanel/pictures/services.png"},
    {"settingrestore", "Restore channel settings", "reload saved channel and bouquet settings",
     "SystemPlugins/QORPanel/pictures/restoresettings.png"},
    {"configrestore", "Restore configurations",
     "restore common configurations for GUI, plugins and softcams",
     "SystemPlugins/QORPanel/pictures/filesys.png"},
    {"installlocalplugin", "Install local packages", "from %s/qor-stowline/plugins",
     "SystemPlugins/QORPanel/pictures/targz.png"},
    {"personalscript", "Run personal script", "executes your personal backup/restore scripts",
     "SystemPlugins/QORPanel/pictures/exemanager.png"},
};

/// A backup entry's job and what is said of its result.
struct BackupEntry {
  const char* key;
  host::Value (BackupJobs::*job)();
  const char* success;
  const char* failure;
};

constexpr BackupEntry kBackupReports[] = {
    {"createpluginlist", &BackupJobs::createPluginList,
     "List of installed plugins was created succesfully",
     "Creating list of installed plugins failed"},
    {"settingbackup", &BackupJobs::createSettingFile, "Settings backup finished succesfully",
     "Backup settings failed"},
    {"configbackup", &BackupJobs::createConfigFile,
     "Common configuration backup finished succesfully", "Backup of common configurations failed"},
};

/// A restore entry's key and the restore type that its list is opened with.
struct RestoreEntry {
  const char* key;
  const char* restoretype;
};

/// The list of plugins knows its restore type by another name than the menu, deliberately.
constexpr RestoreEntry kRestoreLists[] = {
    {"installpluginlist", "plugininstall"},
    {"settingrestore", "settingrestore"},
    {"configrestore", "configrestore"},
    {"personalscript", "personalscript"},
};

/// Returns the key of a menu row; empty, which is no entry's, when there is no row.
std::string entryKey(const host::Value& row) {
  if (!row.list() || row.list()->empty() || !row.list()->front().text()) return "";
  return *row.list()->front().text();
}

/// Returns the medium of a choice. Raises host::Error ("TypeError") for anything else.
std::string mediumOf(const host::Value& option) {
  if (option.list() && option.list()->size() > 1) return option.list()->at(1).str();
  throw host::Error("TypeError", "no choice of a medium: " + option.str());
}

}  // namespace

Stowline::Stowline(host::Host& host, host::ScreenPeer& peer, host::Session& session,
                   std::string plugin_path, const std::string& screen_type)
    : TitledScreen(host, peer, session), skin_path(std::move(plugin_path)) {
  peer.init(session);
  peer.setAttribute("skin_path", skin_path);
  setTitleAttribute(translated("QOR Stowline"));
  backupactions = std::make_shared<BackupActions>(host, "manual");
  const bool restore = screen_type == "restore";
  screentype = restore ? "restore" : "backup";
  setTitleAttribute(title + " (" + translated(restore ? "Restore" : "Backup") + ")");

  peer.setItem("key_green", host.components().makeStaticText(""));
  peer.setItem("key_yellow", host.components().makeStaticText(""));
  setTitleWidget();
  peer.setItem("menu", host.components().makeList(list));
  peer.setItem("status", host.components().makeLabel(""));
  setKeyLabel("key_red", "Exit");
  const host::Action run{this, "runMenuEntry", [this] { runMenuEntry(); }};
  const host::Action cancel{this, "keyCancel", [this] { keyCancel(); }};
  peer.setItem("shortcuts", host.components().makeActionMap(
                                {.contexts = {"SetupActions", "ColorActions", "DirectionActions"},
                                 .bindings = {{"ok", run}, {"cancel", cancel}, {"red", cancel}},
                                 .priority = -2}));
  Console = host.components().makeComConsole();
  ipkg = host.components().makeIpkgComponent();
  ipkg->addCallback({this, "ipkgCallback", [this](host::IpkgEvent event, const host::Value& param) {
                       ipkgCallback(event, param);
                     }});
  peer.appendOnLayoutFinish({this, "createMenu", [this] { createMenu(); }});
}

void Stowline::createMenu() {
  host::Value::List rows = {row(kMediumEntry)};
  if (screentype == "backup") {
    for (const MenuEntry& entry : kBackupEntries) rows.push_back(row(entry));
  } else if (screentype == "restore") {
    for (const MenuEntry& entry : kRestoreEntries) rows.push_back(row(entry));
  }
  host::Value::List former = std::exchange(list, rows);
  peer().list("menu")->setList(rows);
}

host::Value Stowline::row(const MenuEntry& entry) const {
  host::Value::List items(5);
  items[0] = entry.key;
  items[1] = shown(entry.title);
  items[2] = shown(entry.description);
  const std::string picture = host().resolveFilename(host::Scope::SCOPE_PLUGINS, entry.picture);
  items[3] = host().components().loadPixmap(picture, true);
  return items;
}

std::string Stowline::shown(std::string_view text) const {
  std::string result = translated(text);
  if (text.find("%s") == std::string_view::npos) return result;
  const std::string medium = backupRestorePathSetting(host()).value();
  if (const auto at = result.find("%s"); at != std::string::npos) result.replace(at, 2, medium);
  return result;
}

void Stowline::runMenuEntry(const host::Value& /*ret*/) {
  const std::string key = entryKey(peer().list("menu")->getCurrent());
  if (key == "path") chooseMedium();
  for (const BackupEntry& entry : kBackupReports) {
    if (key == entry.key) report(runJob(entry.job), entry.success, entry.failure);
  }
  if (key == "installpluginlist") reloadPluginlist = true;
  for (const RestoreEntry& entry : kRestoreLists) {
    if (key == entry.key) openRestoreList(entry.restoretype);
  }
  if (key == "installlocalplugin") {
    restoretype = "installlocalplugin";
    const auto component = ipkg;
    component->startCmd(host::IpkgCommand::CMD_UPDATE);
  }
}

/// Holds the jobs while one of them runs: other code may put others in their place meanwhile.
host::Value Stowline::runJob(host::Value (BackupJobs::*job)()) {
  const std::shared_ptr<BackupJobs> jobs = backupactions;
  return (*jobs.*job)();
}

void Stowline::report(const host::Value& result, const std::string& success,
                      const std::string& failure) {
  const bool done = result.equalsTrue();
  const auto box = session->open(
      host::MessageBox{.text = translated(done ? success : failure),
                       .type = done ? host::MessageBox::TYPE_INFO : host::MessageBox::TYPE_ERROR,
                       .timeout = kBoxSeconds});
  box->setTitle(translated("QOR Stowline"));
}

void Stowline::openRestoreList(const std::string& type) {
  restoretype = type;
  skin_path = peer().attribute("skin_path", skin_path);
  session->open(host::ScreenClass{
      .name = "StowlineRestore",
      .arguments = {restoretype, skin_path},
      .create = [&gui = host(), type, plugin_path = skin_path](host::ScreenPeer& its_peer,
                                                               host::Session& its_session) {
        return std::make_unique<StowlineRestore>(gui, its_peer, its_session, type, plugin_path);
      }});
}

void Stowline::chooseMedium() {
  host::Value::List choices;
  for (const std::string& medium : mountedMedia(host().os())) {
    choices.push_back(host::Value::List{medium, medium, {}});
  }
  const auto box = session->openWithCallback(
      {this, "backuprestorepath_choosen",
       [this](const host::Value& option) { backuprestorepath_choosen(option); }},
      host::ChoiceBox{.title = translated("Please select medium to use as backup location"),
                      .list = std::move(choices)});
  box->setTitle(translated("QOR Stowline"));
}

void Stowline::backuprestorepath_choosen(const host::Value& option) {
  if (!option.isNothing()) backupRestorePathSetting(host()).setValue(mediumOf(option));
  backupRestorePathSetting(host()).save();
  host().config().subsection(kSubsection).save();
  host().config().save();
  if (!peer().callOverride("checkFolders", {})) checkFolders();
}

void Stowline::checkFolders() {
  backuprestorepath = getBackupRestorePath(host());
  if (!backuprestorepath) sayNotWriteable();
  if (!peer().callOverride("createMenu", {})) createMenu();
}

void Stowline::keyCancel() {
  if (reloadPluginlist) {
    host().clearPluginList();
    host().readPluginList(host().resolveFilename(host::Scope::SCOPE_PLUGINS, ""));
  }
  peer().close(true);
}

void Stowline::ipkgCallback(host::IpkgEvent event, const host::Value& /*param*/) {
  if (event == host::IpkgEvent::EVENT_ERROR) {
    // No screen of ours defines setStatus, deliberately: the host reports the error.
    peer().callOperation("setStatus", "error");
  } else if (event == host::IpkgEvent::EVENT_DONE && restoretype == "installlocalplugin") {
    restoretype.clear();
    if (!peer().callOverride("installLocalPlugins", {})) installLocalPlugins();
  }
}

void Stowline::installLocalPlugins() {
  const std::optional<std::string> directory = getBackupRestorePath(host());
  path = directory;
  if (!directory) {
    sayNotWriteable();
    return;
  }
  ipklist.clear();
  pluginsinstalled.clear();
  pluginsinstalledclean.clear();
  pluginsinstalled = host().os().popen(kInstalledPlugins);
  pluginsinstalledclean = withoutNewlines(pluginsinstalled);
  const std::string packages = *directory + "/plugins";
  path = packages;
  if (!host().os().exists(packages)) return;
  std::vector<std::string> files;
  for (const std::string& name : host().os().listdir(packages)) {
    if (name.ends_with(".ipk")) files.push_back(packages + "/" + name);
  }
  ipklist = files;
  queueLocalPackages(files);
  if (!cmdList.empty()) session->open(host::Ipkg{cmdList});
}

/// Looks for full paths among package names and so never finds one, and leaves what an earlier
/// installation of this menu has queued. Both are deliberate: opkg itself decides what is
/// installed.
void Stowline::queueLocalPackages(const std::vector<std::string>& packages) {
  const std::unordered_set<std::string> installed(pluginsinstalledclean.begin(),
                                                  pluginsinstalledclean.end());
  for (const std::string& package : packages) {
    if (installed.contains(package)) {
      host().print("[QOR-Stowline] Plugin " + package + " is already installed");
    } else {
      cmdList.push_back({host::IpkgCommand::CMD_INSTALL, package});
    }
  }
}

void Stowline::sayNotWriteable() {
  session->open(
      host::MessageBox{.text = translated("Sorry, your backup destination is not writeable.\n\n"
                                          "Please choose another one."),
                       .type = host::MessageBox::TYPE_INFO,
                       .timeout = kBoxSeconds});
}

}  // namespace stowline
