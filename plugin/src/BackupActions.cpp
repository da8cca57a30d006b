#include "plugin/src/BackupActions.h"

#include <string>
#include <vector>

#include "plugin/src/Framework.h"
#include "plugin/src/Packages.h"
#include "plugin/src/Places.h"
#include "plugin/src/Set.h"

namespace stowline {
namespace {

Object construct(const Call& call) {
  const auto& [module, self, given] = call;
  self["executiontime"_t] = module["getDateTime"_t]();
  self["boxtype"_t] = module["HardwareInfoVu"_t]()["get_device_name"_t]();
  self["executiontime"_t] += "_%s"_t % self.get("boxtype"_t);
  if (given[0] == "auto"_t) self["executiontime"_t] += ".auto"_t;
  return {};
}

/// Runs one job, `command`. Sets the attribute `file` to the path of what that writes: the format
/// `path` with the directory and the stamp. Deletes an older file of this path. Returns whether
/// there is one after the command.
template <class Command>
Object writeFile(const Call& call, Text file, Text path, Command command) {
  const auto& [module, self, given] = call;
  self["path"_t] = module["getBackupRestorePath"_t]();
  self[file] = path % tuple({self["path"_t], self["executiontime"_t]});
  if (fileExists(module, self[file])) system(module, "rm -f %s"_t % Object(self[file]));
  command();
  return fileExists(module, self[file]);
}

/// Returns the words of a command, a blank and `option` in front of each.
template <class Words>
std::string joined(const Words& words, const char* option = "") {
  std::string text;
  for (const char* word : words) text += std::string(" ") + option + word;
  return text;
}

Object createSettingFile(const Call& call) {
  return writeFile(call, "settingfile"_t, "%s/settings_%s.tar.gz"_t, [&] {
    system(call.module, "tar czf %s"_t % call.self.get("settingfile"_t) + joined(kChannelFiles));
  });
}

/// Archives the files that the skins' user has made, if there are any.
void archiveUserFiles(const Call& call) {
  const Object files = userFiles(call.self);
  if (!files.isTrue()) return;
  const Object words = list({"tar czf %s_user_files"_t % call.self.get("configfile"_t)});
  words["extend"_t]({files});
  system(call.module, Object(" "_t)["join"_t]({words}));
}

Object createConfigFile(const Call& call) {
  return writeFile(call, "configfile"_t, "%s/configuration_ver_c_%s.tar.gz"_t, [&] {
    system(call.module, "tar czf %s"_t % call.self.get("configfile"_t) + joined(kConfigPlaces) +
                            joined(kConfigExcludes, "--exclude "));
    archiveUserFiles(call);
  });
}

Object createPluginList(const Call& call) {
  return writeFile(call, "pluginfile"_t, "%s/pluginlist_%s.lst"_t, [&] {
    system(call.module, kInstalledPlugins + (" >> %s"_t % call.self.get("pluginfile"_t)));
  });
}

template <class Texts>
Object listOf(const Texts& texts) {
  Object made = list();
  for (const char* text : texts) made.append(std::string_view(text));
  return made;
}

Object userFilesOf(const Call& call, const SkinFiles& skin) {
  return call.self.call("saveUserFiles"_t, {std::string_view(skin.package_info),
                                            listOf(skin.start_strings), listOf(skin.search_dirs)});
}

Object saveAtileUserFiles(const Call& call) {
  return userFilesOf(call, kAtileFiles);
}

Object saveVFDSkinUserFiles(const Call& call) {
  return userFilesOf(call, kVfdSkinFiles);
}

Object saveUserFiles(const Call& call) {
  const auto& [module, self, given] = call;
  const Object& package_info = given[0];
  const Object& start_strings = given[1];
  const Object& search_dirs = given[2];
  Set package_files;
  if (fileExists(module, package_info)) {
    for (const Object& line : Items(linesOfFile(module, package_info))) {
      for (const Object& start : Items(start_strings)) {
        if (line.startsWith(start)) package_files.add(line["strip"_t]());
      }
    }
  }
  Object user_files = list();
  for (const Object& directory : Items(search_dirs)) {
    if (!exists(module, directory)) continue;
    for (const Object& file : Items(self.call("listdir_fullpath"_t, {directory}))) {
      for (const Object& start : Items(start_strings)) {
        if (file.startsWith(start) && !package_files.contains(file)) user_files.append(file);
      }
    }
  }
  return user_files;
}

Object listdir_fullpath(const Call& call) {
  const auto& [module, self, given] = call;
  Object paths = list();
  for (const Object& name : Items(module["listdir"_t]({given[0]}))) {
    paths.append(module["os_path"_t]["join"_t]({given[0], name}));
  }
  return paths;
}

/// How the names of one kind of scheduled backup begin, and how they end after the model.
struct ScheduledName {
  Text prefix;
  Text suffix;
};

constexpr ScheduledName kScheduledNames[] = {
    {"pluginlist"_t, ".auto.lst"_t},
    {"settings"_t, ".auto.tar.gz"_t},
    {"configuration"_t, ".auto.tar.gz"_t},
    {"configuration"_t, ".auto.tar.gz_atile_hd"_t},
    {"configuration"_t, ".auto.tar.gz_user_files"_t},
};

constexpr int kScheduledToKeep = 3;

/// Whether `name` ends with the engine's model and `suffix`.
bool endsWithModel(const Object& name, const Object& self, std::string_view suffix) {
  const Object boxtype = self["boxtype"_t];
  const auto characters = name.characters();
  const auto model = boxtype.characters();
  if (!characters || !model) return name.endsWith(boxtype + suffix);
  return characters->ends_with(suffix) &&
         characters->substr(0, characters->size() - suffix.size()).ends_with(*model);
}

bool isScheduled(const Object& name, const Object& self) {
  for (const ScheduledName& scheduled : kScheduledNames) {
    if (name.startsWith(scheduled.prefix) &&
        endsWithModel(name, self, scheduled.suffix.characters()))
      return true;
  }
  return false;
}

bool isCompanion(const Object& name) {
  for (const std::string_view companion : kCompanions) {
    if (name.endsWith(companion)) return true;
  }
  return false;
}

/// Returns the names to delete out of `flist`, newest first: of each kind all but the newest, each
/// with its possible companions.
std::vector<Object> outdated(const Object& flist) {
  std::vector<Object> companions;
  for (const std::string_view companion : kCompanions) companions.emplace_back(companion);
  std::vector<Object> rm_flist;
  for (const Text file_type : {"settings"_t, "configuration"_t, "pluginlist"_t}) {
    int erase_counter = 0;
    for (const Object& name : Items(flist)) {
      if (!name.startsWith(file_type) || isCompanion(name)) continue;
      if (++erase_counter <= kScheduledToKeep) continue;
      rm_flist.push_back(name);
      for (const Object& companion : companions) rm_flist.push_back(name + companion);
    }
  }
  return rm_flist;
}

Object houseKeeping(const Call& call) {
  const auto& [module, self, given] = call;
  const Object path = module["getBackupRestorePath"_t]();
  if (!path.isTrue()) return {};
  const Object flist = list();
  for (const Object& name : Items(module["listdir"_t]({path}))) {
    if (isScheduled(name, self)) flist.append(name);
  }
  flist["sort"_t]({{"reverse"_t, true}});
  const std::vector<Object> rm_flist = outdated(flist);
  if (rm_flist.empty()) return {};
  const Object directory = path + "/"_t;
  for (const Object& name : rm_flist) {
    const Object full = directory + name;
    if (!exists(module, full)) continue;
    module["remove"_t]({full});
    print(module, "[Qor Stowline] Housekeeping --> remove file %s"_t % full);
  }
  return {};
}

constexpr host::Operation kOperations[] = {
    {"__init__",
     &construct,
     {{"backuptype", "None"}},
     "Names the files of one backup run; \"auto\" marks them as scheduled."},
    {"createSettingFile",
     &createSettingFile,
     {},
     "Archives the channel lists. Returns whether the archive exists then."},
    {"createConfigFile",
     &createConfigFile,
     {},
     "Archives the configuration, and the skins' user files beside it. Returns whether the archive "
     "exists then."},
    {"createPluginList",
     &createPluginList,
     {},
     "Writes the names of the installed plugin packages. Returns whether the list exists then."},
    {"saveAtileUserFiles",
     &saveAtileUserFiles,
     {},
     "Returns the paths of the user's own files of the AtileHD skin."},
    {"saveVFDSkinUserFiles",
     &saveVFDSkinUserFiles,
     {},
     "Returns the paths of the user's own skins of the front display."},
    {"saveUserFiles",
     &saveUserFiles,
     {{"package_info"}, {"start_strings"}, {"search_dirs"}},
     "Returns the paths in the directories that begin with one of the texts and that the package's "
     "file list does not name."},
    {"listdir_fullpath",
     &listdir_fullpath,
     {{"d"}},
     "Returns the entries of the directory as full paths."},
    {"houseKeeping",
     &houseKeeping,
     {},
     "Deletes this model's scheduled backups but for the three newest of each kind."},
};

}  // namespace

Object userFiles(const Object& engine) {
  Object files = list();
  for (const Text find : {"saveAtileUserFiles"_t, "saveVFDSkinUserFiles"_t}) {
    files["extend"_t]({engine.call(find, {})});
  }
  return files;
}

constexpr host::Class kBackupActions = {
    "BackupActions",
    {},
    kOperations,
    "The backup engine: names and writes the backup files and deletes old scheduled ones."};

}  // namespace stowline
