#include "tests/plugin/flows/Expected.h"
#include "tests/plugin/flows/Flows.h"

namespace stowline {
namespace {

using namespace expected;

const char* const kSettingRead = "config.plugins.qorpanel.stowline.backuprestorepath.value";

/// A flow of a backup object, which names the file that it writes in the attribute `file`.
std::function<Prepared(Receiver&)> backup(const char* job, const char* file,
                                          std::function<void(Receiver&)> layOut) {
  return [=](Receiver& receiver) {
    layOut(receiver);
    const Made actions(receiver.host.named("BackupActions")({"manual"_t}));
    return Prepared{[=] { actions.call(job); }, [=] { return actions.str(file, ""); }};
  };
}

/// A job that writes the file `name` by `command`, in a backup directory that has to be made and
/// with a file of that name to be replaced; `search`: what it does between writing and testing.
Flow writingFlow(const std::string& flow, const std::string& name,
                 std::string (*command)(const std::string&), const std::string& search,
                 const char* job, const char* attribute) {
  const std::string file = kDirectory + "/" + name;
  const std::string lost = "None/" + name;
  return {.name = flow,
          .prepare = backup(job, attribute,
                            [file](Receiver& receiver) { receiver.host.system.addFile(file); }),
          .operations = newBackupDirectory() + fileExists(file) + system("rm -f " + file) +
                        system(command(file)) + search + fileExists(file),
          .caught = withoutNewDirectory(fileExists(lost) + system(command(lost)) + search +
                                        fileExists(lost)),
          .states = {{kSettingRead, ""},
                     {"os_path.exists(" + quoted(kDirectory) + ")", lost},
                     {"fileExists(" + quoted(file) + ")", file}}};
}

/// A configuration backup with one user file of a skin whose package is installed.
Flow userFilesFlow() {
  const std::string atile = "/usr/share/enigma2/AtileHD";
  const std::string name = "/configuration_ver_c_" + kStamp + ".tar.gz";
  const auto layOut = [=](Receiver& receiver) {
    auto& files = receiver.host.system;
    files.addDirectory(kDirectory);
    files.addDirectory(atile, {"colors_atile_a", "colors_atile_b"});
    files.addText("/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
                  {atile + "/colors_atile_a\n"});
  };
  const auto written = [=](const std::string& archive) {
    return fileExists(archive) + system(support::configurationBackupCommand(archive)) + block(R"(
fileExists("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
open("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
os_path.exists("/usr/share/enigma2/AtileHD")
os.listdir("/usr/share/enigma2/AtileHD")
os_path.join("/usr/share/enigma2/AtileHD", "colors_atile_a")
os_path.join("/usr/share/enigma2/AtileHD", "colors_atile_b")
os_path.exists("/usr/share/enigma2/AtileHD/allScreens")
os_path.exists("/usr/share/enigma2/AtileHD/preview")
fileExists("/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list")
os_path.exists("/usr/share/enigma2/vfd_skin")
)") + system("tar czf " + archive + "_user_files " + atile + "/colors_atile_b") +
           fileExists(archive);
  };
  return {.name = "ConfigurationBackupWithUserFiles",
          .prepare = backup("createConfigFile", "configfile", layOut),
          .operations = backupDirectory() + written(kDirectory + name),
          .caught = withoutDirectory(written("None" + name))};
}

/// The fourth newest configuration goes, with its companions.
Flow housekeepingFlow() {
  const std::string oldest = kDirectory + "/configuration_ver_c_1_solo2.auto.tar.gz";
  const std::vector<std::string> victims = {oldest, oldest + "_atile_hd", oldest + "_user_files"};
  std::string operations = backupDirectory() + listdir(kDirectory);
  for (const std::string& victim : victims) {
    operations += exists(victim) + "os.remove(" + quoted(victim) + ")\n" +
                  print("[Qor Stowline] Housekeeping --> remove file " + victim);
  }
  const auto prepare = [victims](Receiver& receiver) {
    receiver.host.system.addDirectory(kDirectory);
    for (const char* name :
         {"configuration_ver_c_2", "configuration_ver_c_3", "configuration_ver_c_4"}) {
      receiver.host.system.addFile(kDirectory + "/" + name + "_solo2.auto.tar.gz");
    }
    for (const std::string& victim : victims) receiver.host.system.addFile(victim);
    const Made actions(receiver.host.named("BackupActions")({"auto"_t}));
    const auto left = [victims, &receiver] {
      std::string text;
      for (const std::string& victim : victims)
        text += receiver.host.system.has(victim) ? '1' : '0';
      return text;
    };
    return Prepared{[actions] { actions.call("houseKeeping"); }, left};
  };
  const auto logged = [](const std::string& victim) {
    return "print(" + quoted("[Qor Stowline] Housekeeping --> remove file " + victim) + ")";
  };
  return {.name = "Housekeeping",
          .prepare = prepare,
          .operations = operations,
          .caught = withoutDirectory(""),
          .states = {{kSettingRead, "111"},
                     {logged(victims[0]), "011"},
                     {logged(victims[1]), "001"},
                     {logged(victims[2]), "000"}}};
}

}  // namespace

std::vector<Flow> engineFlows() {
  return {
      {.name = "Load",
       .prepare =
           [](Receiver& receiver) {
             return Prepared{[&] { load(receiver.host.module()); }, nullptr};
           },
       .operations = loaded()},
      {.name = "BackupDirectory",
       .prepare =
           [](Receiver& receiver) {
             return Prepared{[&] { receiver.host.named("getBackupRestorePath")(); }, nullptr};
           },
       .operations = newBackupDirectory(),
       .caught = withoutNewDirectory("")},
      {.name = "BackupObject",
       .prepare =
           [](Receiver& receiver) {
             return Prepared{[&] { receiver.host.named("BackupActions")({"auto"_t}); }, nullptr};
           },
       .operations = "localtime()\nHardwareInfoVu().get_device_name()\n"},
      writingFlow("SettingsBackup", "settings_" + kStamp + ".tar.gz",
                  support::settingsBackupCommand, "", "createSettingFile", "settingfile"),
      writingFlow("ConfigurationBackup", "configuration_ver_c_" + kStamp + ".tar.gz",
                  support::configurationBackupCommand, noUserFiles(), "createConfigFile",
                  "configfile"),
      writingFlow("PluginListBackup", "pluginlist_" + kStamp + ".lst", pluginListCommand, "",
                  "createPluginList", "pluginfile"),
      userFilesFlow(),
      housekeepingFlow(),
  };
}

}  // namespace stowline
