#include "plugin/src/StowlineRestore.h"

#include "plugin/src/Framework.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Packages.h"
#include "plugin/src/Places.h"

namespace stowline {
namespace {

/// Packages that are never installed from a list, and how the names of others like them begin.
constexpr Text kExcludedPlugins[] = {
    "enigma2-plugin-extensions-webbrowser"_t,
    "enigma2-plugin-systemplugins-factorytest"_t,
    "enigma2-plugin-extensions-webinterface"_t,
    "enigma2-plugin-extensions-xbmc"_t,
};
constexpr Text kExcludedPrefix = "enigma2-plugin-settings"_t;

Object construct(const Call& call) {
  const auto& [module, self, given] = call;
  module["Screen"_t]["__init__"_t]({self, given[0]});
  self["session"_t] = given[0];
  self["skin_path"_t] = given[2];
  self["restoretype"_t] = given[1];
  self["title"_t] = translated(module, "QOR Stowline"_t);
  addTitle(call);
  addLabel(call, "key_red"_t, "Close"_t);
  // "Install" whatever is listed; only a listed script makes it "Start".
  addLabel(call, "key_green"_t, "Install"_t);
  addLabel(call, "key_yellow"_t, "Delete"_t);
  self["sel"_t] = list();
  self["val"_t] = list();
  self["entry"_t] = false;
  self["exe"_t] = false;
  self["path"_t] = ""_t;
  addKeys(call, "actions"_t, "NumberActionMap"_t, {"SetupActions"_t},
          {{"ok"_t, "KeyOk"_t}, {"cancel"_t, "keyCancel"_t}}, -1);
  addKeys(call, "shortcuts"_t, "ActionMap"_t, {"ShortcutActions"_t},
          {{"red"_t, "keyCancel"_t}, {"green"_t, "KeyOk"_t}, {"yellow"_t, "deleteFile"_t}});
  self["flist"_t] = list();
  self.setItem("filelist"_t, module["MenuList"_t]({self["flist"_t]}));
  self["fill_list"_t]();
  addPackageManager(call);
  return {};
}

/// When nothing is listed any more, the keys stay enabled.
Object fill_list(const Call& call) {
  const auto& [module, self, given] = call;
  self["flist"_t] = list();
  self["path"_t] = module["getBackupRestorePath"_t]();
  const Object own = module["HardwareInfoVu"_t]()["get_device_name"_t]();
  if (!self.get("path"_t).isTrue()) return {};
  for (const Object& name : Items(module["listdir"_t]({self["path"_t]}))) {
    const bool shown = isForBox(name, own);
    for (const ListedKind& kind : kListedKinds) {
      if (!isListed(kind, name)) continue;
      if (self.get("restoretype"_t) != kind.restoretype || !shown) continue;
      self.get("flist"_t).append(name);
      self["entry"_t] = true;
      if (kind.restoretype.characters() == "personalscript") {
        addLabel(call, "key_green"_t, "Start"_t);
      }
    }
  }
  self["flist"_t]["sort"_t]({{"reverse"_t, true}});
  self.item("filelist"_t)["l"_t]["setList"_t]({self["flist"_t]});
  return {};
}

/// Takes the row under the cursor as the selected file. Returns false when there is nothing to act
/// on: an action is under way, nothing was ever listed, or the list or the medium is gone.
bool select(const Object& self) {
  if (self.get("exe"_t) != false || self.get("entry"_t) != true) return false;
  const Object current = self.item("filelist"_t)["getCurrent"_t]();
  if (current.isNone() || !self.get("path"_t).isTrue()) return false;
  self["sel"_t] = current;
  self["val"_t] = self.get("path"_t) + "/"_t + self["sel"_t];
  return true;
}

/// Whether a confirmation is answered with yes, and something is selected.
bool isConfirmed(const Call& call) {
  const Object& self = call.self;
  return call.arguments[0] == true && self.get("sel"_t).isTrue() && self.get("path"_t).isTrue();
}

void restoreSettingsAndReport(const Call& call) {
  if (call.self["restoreSettings"_t]() == true) {
    openBox(call, "Restoring settings finished successfully"_t, "TYPE_INFO"_t, "keyCancel"_t);
  } else {
    openBox(call, "Restoring settings failed"_t, "TYPE_ERROR"_t);
  }
}

void askToRunScript(const Call& call) {
  const auto& [module, self, given] = call;
  const Object open = self["session"_t].get("openWithCallback"_t);
  const Object callback = self["runScript"_t];
  const Object box = module["MessageBox"_t];
  const Object question = translated(module, "Are you sure you want to run\nfollowing script:\n"_t);
  setBoxTitle(module, open({callback, box, question + self["sel"_t]}));
}

Object KeyOk(const Call& call) {
  const auto& [module, self, given] = call;
  if (!select(self) || !exists(module, self["val"_t])) return {};
  const Object f_size = module["os_stat"_t]({self["val"_t]})["st_size"_t];
  const Object restoretype = self["restoretype"_t];
  if (restoretype == "plugininstall"_t) {
    self["ipkg"_t].get("startCmd"_t)({module["IpkgComponent"_t]["CMD_UPDATE"_t]});
  } else if (restoretype == "settingrestore"_t) {
    if (f_size >= kSmallestArchive) restoreSettingsAndReport(call);
  } else if (restoretype == "configrestore"_t) {
    if (f_size >= kSmallestArchive) {
      const Object open = self["session"_t].get("open"_t);
      open({module["StowlineHelpScreen"_t], self["sel"_t], self["val"_t]});
    }
  } else if (restoretype == "personalscript"_t) {
    askToRunScript(call);
  }
  return {};
}

void reloadChannels(const Module& module) {
  module["nimmanager"_t]["readTransponders"_t]();
  module["eDVBDB"_t]["getInstance"_t]()["reloadServicelist"_t]();
  module["eDVBDB"_t]["getInstance"_t]()["reloadBouquets"_t]();
  if (!module["InfoBar"_t].get("instance"_t).isTrue()) return;
  const Object servicelist = module["InfoBar"_t]["instance"_t]["servicelist"_t];
  const Object root = servicelist["getRoot"_t]();
  const Object currentref = servicelist["getCurrentSelection"_t]();
  servicelist["setRoot"_t]({root});
  servicelist["setCurrentSelection"_t]({currentref});
}

/// Removes the channel files before it unpacks the archive: what the archive does not hold shall
/// not stay.
Object restoreSettings(const Call& call) {
  const auto& [module, self, given] = call;
  for (const char* file : kChannelFiles) system(module, std::string("rm -f ") + file);
  system(module, "tar xzf %s -C /"_t % self.get("val"_t));
  try {
    reloadChannels(module);
  } catch (const host::Error&) {
    return false;
  }
  return true;
}

Object startRestore(const Call& call) {
  const auto& [module, self, given] = call;
  if (!isConfirmed(call)) return {};
  self["exe"_t] = true;
  const Object open = self["session"_t].get("open"_t);
  const Object console = module["Console"_t];
  const Object title = translated(module, "Restore running"_t);
  const Object unpack = "tar -xzf "_t + self.get("path"_t) + "/"_t + self["sel"_t] + " -C /"_t;
  open({console, {"title"_t, title}, {"cmdlist"_t, list({unpack, "killall -9 enigma2"_t})}});
  return {};
}

Object runScript(const Call& call) {
  const auto& [module, self, given] = call;
  if (!isConfirmed(call)) return {};
  module["chmod"_t]({self["val"_t], 0755});
  self["cmdlist"_t] = list({self.get("path"_t) + "/./"_t + self["sel"_t]});
  const Object open = self["session"_t].get("openWithCallback"_t);
  open({self["keyCancel"_t],
        module["Console"_t],
        {"title"_t, translated(module, "QOR Stowline is running personal script ..."_t)},
        {"cmdlist"_t, self["cmdlist"_t]}});
  return {};
}

/// Joins the name to the text before the translation is looked up: no catalogue can have the text
/// without a name.
Object deleteFile(const Call& call) {
  const auto& [module, self, given] = call;
  if (!select(self)) return {};
  const Object open = self["session"_t].get("openWithCallback"_t);
  open({self["startDelete"_t], module["MessageBox"_t],
        translated(module,
                   "Are you sure you want to delete\nfollowing backup:\n"_t + self.get("sel"_t))});
  return {};
}

/// When the removal fails, `exe` stays true and the keys stay disabled until the list is opened
/// anew.
Object startDelete(const Call& call) {
  const auto& [module, self, given] = call;
  if (given[0] != true || !self.get("val"_t).isTrue()) return {};
  self["exe"_t] = true;
  if (exists(module, self["val"_t])) module["remove"_t]({self["val"_t]});
  self["exe"_t] = false;
  self["fill_list"_t]();
  return {};
}

Object keyCancel(const Call& call) {
  call.self["close"_t]();
  return {};
}

Object ipkgCallback(const Call& call) {
  continueInstallation(call, "plugininstall"_t, "installPlugins"_t);
  return {};
}

bool isExcluded(const Object& package, const Object& self) {
  return package.startsWith(kExcludedPrefix) || package.isIn(self["excludedplugins"_t]);
}

/// Only newlines are stripped: a carriage return or a blank makes another name, and an empty line
/// an empty one.
Object installPlugins(const Call& call) {
  const auto& [module, self, given] = call;
  const Object listfile = self["val"_t];
  self["plugins"_t] = list();
  self["cmdList"_t] = list();
  listInstalledPlugins(call);
  self["plugins"_t] = linesOfCommand(module, "cat %s"_t % listfile);
  const Object excluded = list();
  for (const Text plugin : kExcludedPlugins) excluded.append(plugin);
  self["excludedplugins"_t] = excluded;

  const Set installed(self["pluginsinstalledclean"_t]);
  for (const Object& line : Items(self["plugins"_t])) {
    const Object package = line["rstrip"_t]({"\n"_t});
    if (reportInstalled(call, installed, package)) continue;
    if (isExcluded(package, self)) {
      print(module, "[QOR-Stowline] do not restore excluded package: %s"_t % package);
    } else {
      queueInstallation(call, package);
    }
  }
  const Object open = self["session"_t].get("openWithCallback"_t);
  open({self["keyCancel"_t], module["Ipkg"_t], {"cmdList"_t, self["cmdList"_t]}});
  return {};
}

constexpr host::Operation kOperations[] = {
    {"__init__",
     &construct,
     {{"session"}, {"restoretype"}, {"plugin_path"}},
     "Makes the list of a restore type: settingrestore, configrestore, plugininstall or "
     "personalscript."},
    {"fill_list",
     &fill_list,
     {},
     "Lists the files of the backup directory that belong to this receiver and restore type."},
    {"KeyOk", &KeyOk, {}, "Acts on the selected file as the restore type says."},
    {"restoreSettings",
     &restoreSettings,
     {},
     "Replaces the channel lists by those of the selected archive. Returns False when they cannot "
     "be reloaded."},
    {"startRestore",
     &startRestore,
     {{"ret", "False"}},
     "When ret equals True: unpacks the selected archive in a console and ends the GUI."},
    {"runScript",
     &runScript,
     {{"ret", "False"}},
     "When ret equals True: runs the selected script in a console."},
    {"deleteFile", &deleteFile, {}, "Asks whether to delete the selected file."},
    {"startDelete",
     &startDelete,
     {{"ret", "False"}},
     "When ret equals True: deletes the selected file and lists afresh."},
    {"keyCancel", &keyCancel, {{"ret", "False"}}, "Closes the screen; ret is ignored."},
    {"ipkgCallback",
     &ipkgCallback,
     {{"event"}, {"param"}},
     "Goes on with the installation from a plugin list when the feed update is done."},
    {"installPlugins",
     &installPlugins,
     {},
     "Hands every package of the list that is neither installed nor excluded to the package "
     "screen."},
};

}  // namespace

constexpr host::Class kStowlineRestore = {"StowlineRestore", "Screen"_t, kOperations,
                                          "The list of the backups, plugin lists or scripts of one "
                                          "kind, to restore, install, run or delete."};

}  // namespace stowline
