#include "tests/plugin/flows/Expected.h"
#include "tests/plugin/flows/Flows.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kCurrent = "self[\"filelist\"].getCurrent()";
const std::string kModelAsked = "HardwareInfoVu().get_device_name()\n";
const std::string kSettings = "settings_1.tar.gz";
const std::string kConfiguration = "configuration_ver_a_1.tar.gz";
const std::string kScript = "backup_1.sh";
const std::string kPlugins = "pluginlist_1.lst";

std::string fullPath(const std::string& name) {
  return kDirectory + "/" + name;
}

/// A backup directory with one file of each kind.
void layOut(Receiver& receiver) {
  receiver.host.system.addDirectory(kDirectory);
  for (const std::string& name : {kSettings, kConfiguration, kScript, kPlugins}) {
    receiver.host.system.addFile(fullPath(name), 10000);
  }
  receiver.host.system.outputs[kInstalledPlugins] = {"enigma2-plugin-a\n"};
  receiver.host.system.outputs["cat " + fullPath(kPlugins)] = {
      "enigma2-plugin-a\n", "enigma2-plugin-settings-b\n", "enigma2-plugin-c\n"};
}

/// With nothing selected as "()", a list though it is: what plays the flows in the interpreter
/// writes every sequence so.
std::string stateOfList(const Opened& list) {
  const bool is_selected = list.object().get("sel"_t).isTrue();
  return "restoretype=" + list.str("restoretype") +
         " sel=" + (is_selected ? list.attribute("sel") : "()") + " exe=" + list.attribute("exe") +
         " cmdlist=" + list.attribute("cmdlist", "[]");
}

std::shared_ptr<Opened> openList(Receiver& receiver, const std::string& type) {
  return std::make_shared<Opened>(receiver, "StowlineRestore", type, "/plugin"_t);
}

std::shared_ptr<Opened> openConfirmation(Receiver& receiver) {
  return std::make_shared<Opened>(receiver, "StowlineHelpScreen", kConfiguration,
                                  fullPath(kConfiguration));
}

/// What an open list does when `go` is called.
std::function<Prepared(Receiver&)> onList(const std::string& type,
                                          std::function<void(Opened&)> go) {
  return [=](Receiver& receiver) {
    layOut(receiver);
    const auto list = openList(receiver, type);
    defineStatus(receiver, *list);
    return Prepared{[=] { go(*list); }, [=] { return stateOfList(*list); }};
  };
}

/// The same, after the selected file was asked about with `key`.
std::function<Prepared(Receiver&)> onQuestion(const std::string& type, const std::string& key) {
  return [=](Receiver& receiver) {
    layOut(receiver);
    const auto list = openList(receiver, type);
    list->press(key);
    return Prepared{[list, &receiver] { receiver.host.answer(true); },
                    [list] { return stateOfList(*list); }};
  };
}

std::function<void(Opened&)> press(const std::string& key) {
  return [key](Opened& list) { list.press(key); };
}

std::function<void(Opened&)> sendToList(const char* event) {
  return [event](Opened& list) {
    list.set("val", fullPath(kPlugins));
    list.send(event);
  };
}

Flow opening(const std::string& name, const std::string& type,
             const std::function<void(Receiver&)>& prepareMedium, const std::string& filled,
             const std::vector<Caught>& caughtInListing) {
  const std::string operations = restoreListBegun("/plugin") + filled + restoreListEnded();
  const auto prepare = [=](Receiver& receiver) {
    if (prepareMedium) prepareMedium(receiver);
    return Prepared{[&receiver, type] { openList(receiver, type); }, nullptr};
  };
  return {.name = name,
          .prepare = prepare,
          .operations = operations,
          .caught = both(withoutTitle("QOR Stowline", operations), caughtInListing)};
}

std::vector<Flow> openingFlows() {
  const std::string unlisted = kModelAsked + restoreListEnded();
  return {
      opening("OpeningARestoreList", "settingrestore", layOut, listed({kSettings}),
              withoutDirectory(unlisted)),
      opening("OpeningAScriptList", "personalscript", layOut,
              backupDirectory() + kModelAsked + listdir(kDirectory) + label("key_green", "Start") +
                  "self[\"filelist\"].l.setList([\"backup_1.sh\"])\n",
              withoutDirectory(unlisted)),
      opening("OpeningARestoreListOnANewMedium", "configrestore", {},
              newBackupDirectory() + kModelAsked + listdir(kDirectory) +
                  "self[\"filelist\"].l.setList([])\n",
              withoutNewDirectory(unlisted)),
  };
}

std::string sized(const std::string& name) {
  return kCurrent + "\n" + exists(fullPath(name)) + "os_stat(" + quoted(fullPath(name)) +
         ").st_size\n";
}

/// The states of OK: nothing selected until the row is there.
std::vector<StateFrom> selecting(const std::string& type, const std::string& name) {
  return {{kCurrent, "restoretype=" + type + " sel=() exe=False cmdlist=[]"},
          {"os_path.exists(" + quoted(fullPath(name)) + ")",
           "restoretype=" + type + " sel=" + quoted(name) + " exe=False cmdlist=[]"}};
}

/// Every step of the reload is guarded; an error of any of them ends in the error box.
std::vector<Caught> failingReload() {
  std::vector<Caught> caught;
  const std::string steps = channelsReloaded();
  for (std::size_t begin = 0; begin < steps.size(); begin = steps.find('\n', begin) + 1) {
    caught.push_back({steps.substr(begin, steps.find('\n', begin) - begin),
                      box("Restoring settings failed", "TYPE_ERROR")});
  }
  return caught;
}

std::vector<Flow> okFlows() {
  return {
      {.name = "SettingsRestore",
       .prepare = onList("settingrestore", press("ok")),
       .operations =
           sized(kSettings) + settingsRestored(fullPath(kSettings)) + channelsReloaded() + block(R"(
_("Restoring settings finished successfully")
session.openWithCallback(keyCancel, MessageBox, "Restoring settings finished successfully", TYPE_INFO, timeout=10)
)"),
       .caught = failingReload(),
       .states = selecting("settingrestore", kSettings)},
      {.name = "SettingsRestoreCloses",
       .prepare = onQuestion("settingrestore", "ok"),
       .operations = "close()\n"},
      {.name = "ConfigurationChosen",
       .prepare = onList("configrestore", press("green")),
       .operations = sized(kConfiguration) + "session.open(StowlineHelpScreen, " +
                     quoted(kConfiguration) + ", " + quoted(fullPath(kConfiguration)) + ")\n",
       .states = selecting("configrestore", kConfiguration)},
      {.name = "ScriptAskedAbout",
       .prepare = onList("personalscript", press("ok")),
       .operations = sized(kScript) + block(R"(
_("Are you sure you want to run\nfollowing script:\n")
session.openWithCallback(runScript, MessageBox, "Are you sure you want to run\nfollowing script:\nbackup_1.sh")
)") + setDialogTitle(),
       .states = selecting("personalscript", kScript)},
      {.name = "ScriptRun",
       .prepare = onQuestion("personalscript", "ok"),
       .operations = block(R"(
os.chmod("/media/hdd/qor-stowline/backup_1.sh", 0755)
_("QOR Stowline is running personal script ...")
session.openWithCallback(keyCancel, Console, title="QOR Stowline is running personal script ...", cmdlist=["/media/hdd/qor-stowline/./backup_1.sh"])
)"),
       .states = {{"os.chmod(\"/media/hdd/qor-stowline/backup_1.sh\", 0755)",
                   "restoretype=personalscript sel=\"backup_1.sh\" exe=False cmdlist=[]"},
                  {"_(\"QOR Stowline is running personal script ...\")",
                   "restoretype=personalscript sel=\"backup_1.sh\" exe=False "
                   "cmdlist=[\"/media/hdd/qor-stowline/./backup_1.sh\"]"}}},
      {.name = "PluginInstallationStarted",
       .prepare = onList("plugininstall", press("ok")),
       .operations = sized(kPlugins) + "ipkg.startCmd(CMD_UPDATE)\n",
       .states = selecting("plugininstall", kPlugins)},
  };
}

std::vector<Flow> otherListFlows() {
  const std::string settings = fullPath(kSettings);
  const std::string state = "restoretype=settingrestore sel=\"settings_1.tar.gz\" exe=";
  const std::string question =
      "Are you sure you want to delete\nfollowing backup:\nsettings_1.tar.gz";
  return {
      {.name = "ConsoleRestore",
       .prepare = onList("settingrestore",
                         [](Opened& list) {
                           list.set("sel", kSettings);
                           list.call("startRestore", {true});
                         }),
       .operations = block(R"(
_("Restore running")
session.open(Console, title="Restore running", cmdlist=["tar -xzf /media/hdd/qor-stowline/settings_1.tar.gz -C /", "killall -9 enigma2"])
)"),
       .states = {{"_(\"Restore running\")", state + "True cmdlist=[]"}}},
      {.name = "DeletionAskedAbout",
       .prepare = onList("settingrestore", press("yellow")),
       .operations = kCurrent + "\n" + translate(question) +
                     "session.openWithCallback(startDelete, MessageBox, " + quoted(question) +
                     ")\n",
       .states = {{kCurrent, "restoretype=settingrestore sel=() exe=False cmdlist=[]"},
                  {"_(" + quoted(question) + ")", state + "False cmdlist=[]"}}},
      {.name = "Deletion",
       .prepare = onQuestion("settingrestore", "yellow"),
       .operations = exists(settings) + "os.remove(" + quoted(settings) + ")\n" + listed({}),
       .caught = withoutDirectory(kModelAsked),
       .states = {{"os_path.exists(" + quoted(settings) + ")", state + "True cmdlist=[]"},
                  {"config.plugins.qorpanel.stowline.backuprestorepath.value",
                   state + "False cmdlist=[]"}}},
      {.name = "PluginInstallation",
       .prepare = onList("plugininstall", sendToList("EVENT_DONE")),
       .operations =
           outputRead(kInstalledPlugins) + outputRead("cat " + fullPath(kPlugins)) +
           print("[QOR-Stowline] Plugin enigma2-plugin-a is already installed") +
           print("[QOR-Stowline] do not restore excluded package: enigma2-plugin-settings-b") +
           packageScreen("session.openWithCallback(keyCancel, ", {"enigma2-plugin-c"}),
       .states = {{"os.popen(" + quoted(kInstalledPlugins) + ").readlines()",
                   "restoretype= sel=() exe=False cmdlist=[]"}}},
      {.name = "FailedRefreshOfTheList",
       .prepare = onList("plugininstall", sendToList("EVENT_ERROR")),
       .operations = "self.setStatus(\"error\")\n",
       .states = {{"self.setStatus(\"error\")",
                   "restoretype=plugininstall sel=() exe=False cmdlist=[]"}}},
      {.name = "ClosingTheList",
       .prepare = onList("settingrestore", press("red")),
       .operations = "close()\n"},
  };
}

/// What an open confirmation does when `go` is called; every condition of the restore holds.
std::function<Prepared(Receiver&)> onConfirmation(std::function<void(Opened&)> go) {
  return [=](Receiver& receiver) {
    const std::string archive = fullPath(kConfiguration);
    for (const std::string& path :
         {std::string("/etc/samba/smb.conf"), archive + "_atile_hd", archive + "_user_files",
          std::string("/proc/stb/vmpeg/0/dst_width")}) {
      receiver.host.system.addFile(path);
    }
    const auto screen = openConfirmation(receiver);
    return Prepared{[=] { go(*screen); }, [=] { return screen->text("messagetext"); }};
  };
}

std::vector<Flow> confirmationFlows() {
  const std::string question = "Are you sure you want to restore\nfollowing backup:\n";
  const std::string warning = "\nSystem will restart after the restore!";
  return {
      {.name = "OpeningTheConfirmation",
       .prepare =
           [](Receiver& receiver) {
             return Prepared{[&] { openConfirmation(receiver); }, nullptr};
           },
       .operations = confirmationOpened(),
       .caught = withoutTitle("Qor Stowline", confirmationOpened())},
      {.name = "LayoutOfTheConfirmation",
       .prepare = onConfirmation([](Opened& screen) { screen.finishLayout(); }),
       .operations = translate(question) + translate(warning) + "self[\"messagetext\"].setText(" +
                     quoted(question + kConfiguration + "\n\n" + warning) + ")\n",
       .states = {{"_(" + quoted(question) + ")", ""}},
       .completed = question + kConfiguration + "\n\n" + warning},
      {.name = "ConfigurationRestore",
       .prepare = onConfirmation([](Opened& screen) { screen.press("green"); }),
       .operations = configurationRestored({.archive = fullPath(kConfiguration),
                                            .keeps_accounts = true,
                                            .tests_samba = true,
                                            .has_samba = true,
                                            .has_atile = true,
                                            .has_user_files = true,
                                            .has_video_window = true})},
      {.name = "ClosingTheConfirmation",
       .prepare = onConfirmation([](Opened& screen) { screen.press("red"); }),
       .operations = "close()\n"},
  };
}

}  // namespace

std::vector<Flow> restoreFlows() {
  std::vector<Flow> flows;
  for (const auto& group : {openingFlows(), okFlows(), otherListFlows(), confirmationFlows()}) {
    flows.insert(flows.end(), group.begin(), group.end());
  }
  return flows;
}

}  // namespace stowline
