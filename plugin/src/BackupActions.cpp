#include "plugin/src/BackupActions.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "plugin/src/Packages.h"
#include "plugin/src/Places.h"
#include "plugin/src/Setup.h"

namespace stowline {
namespace {

/// How the names of one kind of scheduled backup begin, and how they end after the model.
struct ScheduledKind {
  const char* prefix;
  const char* suffix;
};

/// In the order in which old ones are deleted.
constexpr ScheduledKind kScheduledKinds[] = {
    {"settings", ".auto.tar.gz"},
    {"configuration", ".auto.tar.gz"},
    {"pluginlist", ".auto.lst"},
};

constexpr int kScheduledToKeep = 3;

/// Returns the backup directory as it is written into a file name. One that could not be had is the
/// word None, deliberately: nothing can be written there, so the job fails by itself.
std::string pathText(const std::optional<std::string>& path) {
  return path.value_or("None");
}

std::string_view withoutOuterSpace(std::string_view text) {
  constexpr const char* kSpace = " \t\n\r\v\f";
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  text.remove_suffix(text.size() - (text.find_last_not_of(kSpace) + 1));
  return text;
}

/// Whether the model `boxtype` stands in `name` right before `suffix`, its end.
bool endsWith(std::string_view name, const std::string& boxtype, std::string_view suffix) {
  if (!name.ends_with(suffix)) return false;
  name.remove_suffix(suffix.size());
  return name.ends_with(boxtype);
}

host::Value valueOf(const std::vector<std::string>& texts) {
  return host::Value::List(texts.begin(), texts.end());
}

/// Returns the items of a list as texts. Raises host::Error ("TypeError") for anything else.
std::vector<std::string> textsOf(const host::Value& value) {
  if (!value.list()) throw host::Error("TypeError", "no list of paths: " + value.str());
  std::vector<std::string> texts;
  for (const host::Value& item : *value.list()) texts.push_back(item.str());
  return texts;
}

/// Adds to `rm_flist` the names to delete out of `newest_first`: every backup of the kind for the
/// model `boxtype` but the newest ones, each with its possible companions.
void addOutdated(std::vector<std::string>& rm_flist, const std::vector<std::string>& newest_first,
                 const ScheduledKind& kind, const std::string& boxtype) {
  int erase_counter = 0;
  for (const std::string& name : newest_first) {
    if (!name.starts_with(kind.prefix) || !endsWith(name, boxtype, kind.suffix)) continue;
    if (++erase_counter <= kScheduledToKeep) continue;
    for (const char* suffix : {"", "_atile_hd", "_user_files"}) rm_flist.push_back(name + suffix);
  }
}

}  // namespace

BackupActions::BackupActions(host::Host& host, std::optional<std::string_view> backuptype)
    : host_(host) {
  executiontime = getDateTime(host_);
  boxtype = host_.deviceName();
  executiontime += "_" + boxtype;
  if (backuptype == "auto") executiontime += ".auto";
}

host::Value BackupActions::createSettingFile() {
  path = getBackupRestorePath(host_);
  settingfile = pathText(path) + "/settings_" + executiontime + ".tar.gz";
  if (host_.fileExists(settingfile)) host_.os().system("rm -f " + settingfile);
  std::string command = "tar czf " + settingfile;
  for (const char* place : kChannelFiles) command += std::string(" ") + place;
  host_.os().system(command);
  return host_.fileExists(settingfile);
}

host::Value BackupActions::createConfigFile() {
  path = getBackupRestorePath(host_);
  configfile = pathText(path) + "/configuration_ver_c_" + executiontime + ".tar.gz";
  if (host_.fileExists(configfile)) host_.os().system("rm -f " + configfile);

  std::string command = "tar czf " + configfile;
  for (const char* place : kConfigPlaces) command += std::string(" ") + place;
  for (const char* exclude : kConfigExcludes) command += std::string(" --exclude ") + exclude;
  host_.os().system(command);

  std::vector<std::string> user_files =
      listed("saveAtileUserFiles", {}, [&] { return saveAtileUserFiles(); });
  std::ranges::copy(listed("saveVFDSkinUserFiles", {}, [&] { return saveVFDSkinUserFiles(); }),
                    std::back_inserter(user_files));
  if (!user_files.empty()) {
    command = "tar czf " + configfile + "_user_files";
    for (const std::string& file : user_files) command += " " + file;
    host_.os().system(command);
  }
  return host_.fileExists(configfile);
}

host::Value BackupActions::createPluginList() {
  path = getBackupRestorePath(host_);
  pluginfile = pathText(path) + "/pluginlist_" + executiontime + ".lst";
  if (host_.fileExists(pluginfile)) host_.os().system("rm -f " + pluginfile);
  host_.os().system(kInstalledPlugins + (" >> " + pluginfile));
  return host_.fileExists(pluginfile);
}

/// Returns what an operation lists: the one in the place of the module's own, or else that.
template <class Own>
std::vector<std::string> BackupActions::listed(std::string_view operation,
                                               const host::Value::List& arguments, Own own) {
  std::optional<host::Value> result;
  if (overrides_) result = overrides_->callOverride(operation, arguments);
  return result ? textsOf(*result) : own();
}

std::vector<std::string> BackupActions::userFiles(const SkinFiles& skin) {
  const std::vector<std::string> starts(skin.start_strings.begin(), skin.start_strings.end());
  const std::vector<std::string> directories(skin.search_dirs.begin(), skin.search_dirs.end());
  return listed("saveUserFiles", {skin.package_info, valueOf(starts), valueOf(directories)},
                [&] { return saveUserFiles(skin.package_info, starts, directories); });
}

std::vector<std::string> BackupActions::saveAtileUserFiles() {
  return userFiles(kAtileFiles);
}

std::vector<std::string> BackupActions::saveVFDSkinUserFiles() {
  return userFiles(kVfdSkinFiles);
}

std::vector<std::string> BackupActions::saveUserFiles(const std::string& package_info,
                                                      const std::vector<std::string>& start_strings,
                                                      const std::vector<std::string>& search_dirs) {
  std::vector<std::string> lines;
  if (host_.fileExists(package_info)) lines = host_.os().open(package_info);
  std::unordered_set<std::string_view> package_files;
  for (const std::string& line : lines) {
    for (const std::string& start : start_strings) {
      if (line.starts_with(start)) package_files.insert(withoutOuterSpace(line));
    }
  }
  std::vector<std::string> user_files;
  for (const std::string& directory : search_dirs) {
    if (!host_.os().exists(directory)) continue;
    const std::vector<std::string> files =
        listed("listdir_fullpath", {directory}, [&] { return listdir_fullpath(directory); });
    for (const std::string& file : files) {
      for (const std::string& start : start_strings) {
        if (file.starts_with(start) && !package_files.contains(file)) user_files.push_back(file);
      }
    }
  }
  return user_files;
}

std::vector<std::string> BackupActions::listdir_fullpath(const std::string& d) {
  std::vector<std::string> paths = host_.os().listdir(d);
  for (std::string& name : paths) name = host_.os().join(d, name);
  return paths;
}

void BackupActions::houseKeeping() {
  const std::optional<std::string> directory = getBackupRestorePath(host_);
  if (!directory) return;

  std::vector<std::string> flist = host_.os().listdir(*directory);
  std::ranges::sort(flist, std::greater());

  std::vector<std::string> rm_flist;
  for (const ScheduledKind& kind : kScheduledKinds) addOutdated(rm_flist, flist, kind, boxtype);
  for (const std::string& name : rm_flist) {
    const std::string full = *directory + "/" + name;
    if (!host_.os().exists(full)) continue;
    host_.os().remove(full);
    host_.print("[Qor Stowline] Housekeeping --> remove file " + full);
  }
}

}  // namespace stowline
