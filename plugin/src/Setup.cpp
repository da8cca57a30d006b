#include "plugin/src/Setup.h"

#include "plugin/src/BackupActions.h"
#include "plugin/src/Framework.h"
#include "plugin/src/Stowline.h"
#include "plugin/src/StowlineHelpScreen.h"
#include "plugin/src/StowlineRestore.h"

namespace stowline {
namespace {

/// The host names that the module uses, in the order in which they are bound.
constexpr host::Binding kBindings[] = {
    {"Components.Label", "Label", "Label"},
    {"Components.ActionMap", "ActionMap", "ActionMap"},
    {"Components.ActionMap", "NumberActionMap", "NumberActionMap"},
    {"Components.GUIComponent", "GUIComponent", "GUIComponent"},
    {"Components.config", "config", "config"},
    {"Components.config", "getConfigListEntry", "getConfigListEntry"},
    {"Components.config", "ConfigSubsection", "ConfigSubsection"},
    {"Components.config", "ConfigSelection", "ConfigSelection"},
    {"Components.config", "ConfigText", "ConfigText"},
    {"Components.config", "ConfigLocations", "ConfigLocations"},
    {"Components.Sources.StaticText", "StaticText", "StaticText"},
    {"Components.Pixmap", "Pixmap", "Pixmap"},
    {"Components.MenuList", "MenuList", "MenuList"},
    {"Components.Harddisk", "harddiskmanager", "harddiskmanager"},
    {"Components.Console", "Console", "ComConsole"},
    {"Components.Ipkg", "IpkgComponent", "IpkgComponent"},
    {"Components.Sources.List", "List", "List"},
    {"Components.PluginComponent", "plugins", "plugins"},
    {"Screens.Screen", "Screen", "Screen"},
    {"Screens.Console", "Console", "Console"},
    {"Screens.MessageBox", "MessageBox", "MessageBox"},
    {"Screens.ChoiceBox", "ChoiceBox", "ChoiceBox"},
    {"Screens.Ipkg", "Ipkg", "Ipkg"},
    {"Tools.LoadPixmap", "LoadPixmap", "LoadPixmap"},
    {"Tools.Directories", "*", "*"},
    {"Tools.HardwareInfoVu", "HardwareInfoVu", "HardwareInfoVu"},
    {"time", "localtime", "localtime"},
    {"time", "mktime", "mktime"},
    {"time", "time", "time"},
    {"enigma", "eServiceReference", "eServiceReference"},
    {"enigma", "eServiceCenter", "eServiceCenter"},
    {"enigma", "eDVBDB", "eDVBDB"},
    {"ServiceReference", "ServiceReference", "ServiceReference"},
    {"Screens.InfoBar", "InfoBar", "InfoBar"},
    {"Components.NimManager", "nimmanager", "nimmanager"},
    {"skin", "loadSkin", "loadSkin"},
    {"os", "system", "system"},
    {"os", "listdir", "listdir"},
    {"os", "symlink", "symlink"},
    {"os", "unlink", "unlink"},
    {"os", "readlink", "readlink"},
    {"os", "path", "os_path"},
    {"os", "stat", "stat"},
    {"os", "mkdir", "mkdir"},
    {"os", "popen", "popen"},
    {"os", "makedirs", "makedirs"},
    {"os", "access", "access"},
    {"os", "rename", "rename"},
    {"os", "remove", "remove"},
    {"os", "W_OK", "W_OK"},
    {"os", "R_OK", "R_OK"},
    {"os", "F_OK", "F_OK"},
    {"os", "chmod", "chmod"},
    {"os", "walk", "walk"},
    {"os", "getcwd", "getcwd"},
    {"os", "chdir", "chdir"},
    {"os", "stat", "os_stat"},
    {"builtins", "open", "open"},
    {"builtins", "OSError", "OSError"},
};

Object settings(const Module& module) {
  return module["config"_t]["plugins"_t]["qorpanel"_t];
}

Object getBackupRestorePath(const Call& call) {
  Object path = backupPath(call.module);
  try {
    if (!exists(call.module, path)) call.module["makedirs"_t]({path});
  } catch (const host::Error&) {
    return {};
  }
  return path;
}

Object twoDigits(const Object& number) {
  return number < 10 ? "0"_t + number.str() : number.str();
}

Object getDateTime(const Call& call) {
  const Object now = call.module["localtime"_t]();
  return "%s%s%s_%s-%s"_t %
         tuple({now.get("tm_year"_t).str(), twoDigits(now["tm_mon"_t]), twoDigits(now["tm_mday"_t]),
                twoDigits(now["tm_hour"_t]), twoDigits(now["tm_min"_t])});
}

constexpr host::Operation kFunctions[] = {
    {"getBackupRestorePath",
     &getBackupRestorePath,
     {},
     "Returns the backup directory, created where it was missing, or None when that fails."},
    {"getDateTime",
     &getDateTime,
     {},
     "Returns the local time to the minute, such as 20240305_07-04."},
};

}  // namespace

void load(const Module& module) {
  for (const host::Binding& binding : kBindings) module.bind(binding);
  settings(module)["stowline"_t] = module["ConfigSubsection"_t]();
  settings(module)["stowline"_t]["backuprestorepath"_t] = module["ConfigText"_t](
      {{"default"_t, "/media/hdd/"_t}, {"visible_width"_t, 50}, {"fixed_size"_t, false}});
  for (const host::Operation& function : kFunctions) module.define(function);
  for (const host::Class* type :
       {&kBackupActions, &kStowlineHelpScreen, &kStowline, &kStowlineRestore}) {
    module.define(*type);
  }
}

Object moduleSettings(const Module& module) {
  return settings(module)["stowline"_t];
}

Object mediumSetting(const Module& module) {
  return settings(module)["stowline"_t]["backuprestorepath"_t];
}

Object backupPath(const Module& module) {
  const Object medium = mediumSetting(module)["value"_t];
  return medium + (medium.endsWith("/"_t) ? "qor-stowline"_t : "/qor-stowline"_t);
}

}  // namespace stowline
