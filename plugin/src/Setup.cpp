#include "plugin/src/Setup.h"

#include <exception>

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

constexpr const char* kBackupRestorePath = "backuprestorepath";

std::string twoDigits(int value) {
  const std::string digits = std::to_string(value);
  return value < 10 ? "0" + digits : digits;
}

}  // namespace

void load(host::Host& host) {
  for (const host::Binding& binding : kBindings) host.bind(binding);
  host.config().attachSubsection(kSubsection);
  host.config()
      .subsection(kSubsection)
      .attachText(kBackupRestorePath,
                  {.default_value = "/media/hdd/", .visible_width = 50, .fixed_size = false});
}

host::ConfigText& backupRestorePathSetting(host::Host& host) {
  return host.config().subsection(kSubsection).text(kBackupRestorePath);
}

std::optional<std::string> getBackupRestorePath(host::Host& host) {
  const std::string medium = backupRestorePathSetting(host).value();
  const std::string path = medium + (medium.ends_with('/') ? "qor-stowline" : "/qor-stowline");
  try {
    if (!host.os().exists(path)) host.os().makedirs(path);
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return path;
}

std::string getDateTime(host::Host& host) {
  const host::LocalTime now = host.os().localtime();
  return std::to_string(now.tm_year) + twoDigits(now.tm_mon) + twoDigits(now.tm_mday) + "_" +
         twoDigits(now.tm_hour) + "-" + twoDigits(now.tm_min);
}

}  // namespace stowline
