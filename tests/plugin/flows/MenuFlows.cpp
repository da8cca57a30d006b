#include "tests/plugin/flows/Expected.h"
#include "tests/plugin/flows/Flows.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kSelected = "self[\"menu\"].getCurrent()\n";
const std::string kSettingSaved = "config.plugins.qorpanel.stowline.backuprestorepath.save()";
const std::string kNotWriteable = box(
    "Sorry, your backup destination is not writeable.\n\nPlease choose another one.", "TYPE_INFO");

std::string stateOfMenu(const Opened& menu) {
  return "restoretype=" + menu.str("restoretype", "") +
         (menu.attribute("reloadPluginlist") == "True" ? ", plugins are to be reloaded" : "");
}

std::shared_ptr<Opened> openMenu(Receiver& receiver, const std::string& type) {
  return std::make_shared<Opened>(receiver, "Stowline", "/plugin"_t, type);
}

/// What an open menu does when `go` is called, on a receiver laid out by `layOut`.
std::function<Prepared(Receiver&)> onMenu(const std::string& type, std::function<void(Opened&)> go,
                                          std::function<void(Receiver&)> layOut = {}) {
  return [=](Receiver& receiver) {
    if (layOut) layOut(receiver);
    const auto menu = openMenu(receiver, type);
    menu->finishLayout();
    defineStatus(receiver, *menu);
    return Prepared{[=] { go(*menu); }, [=] { return stateOfMenu(*menu); }};
  };
}

/// Presses OK on the row with this key.
std::function<void(Opened&)> choose(const std::string& key) {
  return [key](Opened& menu) {
    menu.list("menu").rows = host::list({host::tuple({key})});
    menu.press("ok");
  };
}

std::function<void(Opened&)> sendToMenu(const char* event) {
  return [event](Opened& menu) {
    menu.set("restoretype", "installlocalplugin"_t);
    menu.send(event);
  };
}

Flow opening(const std::string& name, const std::string& type, const std::string& title) {
  const std::string operations = menuOpened(type);
  const auto prepare = [type](Receiver& receiver) {
    return Prepared{[&receiver, type] { openMenu(receiver, type); }, nullptr};
  };
  return {.name = name,
          .prepare = prepare,
          .operations = operations,
          .caught = withoutTitle(title, operations)};
}

Flow layout(const std::string& name, const std::string& type) {
  const auto prepare = [type](Receiver& receiver) {
    const auto menu = openMenu(receiver, type);
    return Prepared{[menu] { menu->finishLayout(); },
                    [menu] { return menu->list("menu").rows.isTrue() ? "filled" : "empty"; }};
  };
  return {.name = name,
          .prepare = prepare,
          .operations = menuCreated(type, "/media/hdd/"),
          .states = {{"_(\"Backup/restore device : %s\")", "empty"}},
          .completed = "filled"};
}

/// A backup entry whose file is there before and after, unless there is no backup directory.
Flow backupEntry(const std::string& key, const std::string& name,
                 std::string (*command)(const std::string&), const std::string& search,
                 const std::string& success, const std::string& failure) {
  const std::string file = kDirectory + "/" + name;
  const std::string lost = "None/" + name;
  return {.name = "Entry_" + key,
          .prepare = onMenu("backup", choose(key),
                            [file](Receiver& receiver) { receiver.host.system.addFile(file); }),
          .operations = kSelected + newBackupDirectory() + fileExists(file) +
                        system("rm -f " + file) + system(command(file)) + search +
                        fileExists(file) + box(success, "TYPE_INFO") + setDialogTitle(),
          .caught =
              withoutNewDirectory(fileExists(lost) + system(command(lost)) + search +
                                  fileExists(lost) + box(failure, "TYPE_ERROR") + setDialogTitle()),
          .states = {{"self[\"menu\"].getCurrent()", "restoretype="}}};
}

Flow restoreEntry(const std::string& key, const std::string& restoretype,
                  const std::string& state) {
  const std::string opened =
      "session.open(StowlineRestore, " + quoted(restoretype) + ", \"/plugin\")";
  return {.name = "Entry_" + key,
          .prepare = onMenu("restore", choose(key)),
          .operations = kSelected + opened + "\n",
          .states = {{"self[\"menu\"].getCurrent()", "restoretype="}, {opened, state}}};
}

std::string mediaOffered(const std::string& choices) {
  return block(R"(
_("Please select medium to use as backup location")
session.openWithCallback(backuprestorepath_choosen, ChoiceBox, title="Please select medium to use as backup location", list=[)") +
         choices + "])\n" + setDialogTitle();
}

Flow mediumChoice() {
  const auto layOut = [](Receiver& receiver) {
    auto& files = receiver.host.system;
    files.addDirectory("/media/net/autofs", {"a"});
    files.addDirectory("/media/net/autofs/a");
    files.addDirectory("/media/net/autonet", {"b"});
    files.addDirectory("/media/net/autonet/b");
    files.addText("/proc/mounts", {"x /media/net/autofs/a nfs\n", "x /media/net/autonet/b nfs\n"});
  };
  const std::string a = R"(("/media/net/autofs/a", "/media/net/autofs/a", None))";
  const std::string b = R"(("/media/net/autonet/b", "/media/net/autonet/b", None))";
  const std::string second_root = block(R"(
os_path.exists("/media/net/autonet")
os.listdir("/media/net/autonet")
os_path.exists("/media/net/autonet/b")
os.listdir("/media/net/autonet/b")
)");
  const std::string table = "open(\"/proc/mounts\")\n";
  return {.name = "Entry_path",
          .prepare = onMenu("backup", choose("path"), layOut),
          .operations = kSelected + block(R"(
os_path.exists("/media/net/autofs")
os.listdir("/media/net/autofs")
os_path.exists("/media/net/autofs/a")
os.listdir("/media/net/autofs/a")
)") + second_root + table +
                        mediaOffered(a + ", " + b),
          .caught = {{"os.listdir(\"/media/net/autofs/a\")", second_root + table + mediaOffered(b)},
                     {"os.listdir(\"/media/net/autonet/b\")", table + mediaOffered(a)}}};
}

/// The return from the choice box with `option`; `stored`: what storing it does.
Flow mediumChosen(const std::string& name, const Object& option, const std::string& stored,
                  const std::string& medium, const std::string& directory) {
  const auto prepare = [option](Receiver& receiver) {
    const auto menu = openMenu(receiver, "backup");
    return Prepared{[=] { menu->call("backuprestorepath_choosen", {option}); },
                    [=, &receiver] {
                      return receiver.medium() + " " + menu->str("backuprestorepath", "None");
                    }};
  };
  const std::string shown = menuCreated("backup", medium);
  const auto unusable = [&](const std::string& operation) {
    return Caught{operation + "(" + quoted(directory) + ")", kNotWriteable + shown};
  };
  return {.name = name,
          .prepare = prepare,
          .operations = stored + block(R"(
config.plugins.qorpanel.stowline.backuprestorepath.save()
config.plugins.qorpanel.stowline.save()
config.save()
)") + newBackupDirectory(directory) +
                        shown,
          .caught = {unusable("os_path.exists"), unusable("os.makedirs")},
          .states = {{kSettingSaved, medium + " None"},
                     {"_(\"Backup/restore device : %s\")", medium + " " + directory}}};
}

Flow closing(const std::string& name, bool reload) {
  const auto go = [reload](Opened& menu) {
    menu.set("reloadPluginlist", reload);
    menu.press("cancel");
  };
  return {.name = name,
          .prepare = onMenu("restore", go),
          .operations = (reload ? block(R"(
plugins.clearPluginList()
resolveFilename(SCOPE_PLUGINS)
plugins.readPluginList("/usr/lib/enigma2/python/Plugins/")
)")
                                : "") +
                        "close(True)\n"};
}

std::vector<Flow> localPackages() {
  const std::string plugins = kDirectory + "/plugins";
  const auto layOut = [plugins](Receiver& receiver) {
    receiver.host.system.addDirectory(kDirectory);
    receiver.host.system.addDirectory(plugins, {"a.ipk"});
    receiver.host.system.outputs[kInstalledPlugins] = {plugins + "/a.ipk"};
    receiver.host.system.addFile(plugins + "/b.ipk");
  };
  const std::string query = outputRead(kInstalledPlugins) + exists(plugins);
  const StateFrom cleared = {"config.plugins.qorpanel.stowline.backuprestorepath.value",
                             "restoretype="};
  return {
      {.name = "LocalPackages",
       .prepare = onMenu("restore", sendToMenu("EVENT_DONE"), layOut),
       .operations = backupDirectory() + query + listdir(plugins) +
                     print("[QOR-Stowline] Plugin " + plugins + "/a.ipk is already installed") +
                     packageScreen("session.open(", {plugins + "/b.ipk"}),
       .caught = withoutDirectory(kNotWriteable),
       .states = {cleared}},
      {.name = "LocalPackagesOnANewMedium",
       .prepare = onMenu("restore", sendToMenu("EVENT_DONE")),
       .operations = newBackupDirectory() + query,
       .caught = withoutNewDirectory(kNotWriteable),
       .states = {cleared}},
      {.name = "FailedRefreshOfTheMenu",
       .prepare = onMenu("restore", sendToMenu("EVENT_ERROR")),
       .operations = "self.setStatus(\"error\")\n",
       .states = {{"self.setStatus(\"error\")", "restoretype=installlocalplugin"}}},
  };
}

}  // namespace

std::vector<Flow> menuFlows() {
  std::vector<Flow> flows = {
      opening("OpeningTheBackupMenu", "backup", "QOR Stowline (Backup)"),
      opening("OpeningTheRestoreMenu", "restore", "QOR Stowline (Restore)"),
      layout("LayoutOfTheBackupMenu", "backup"),
      layout("LayoutOfTheRestoreMenu", "restore"),
      backupEntry("createpluginlist", "pluginlist_" + kStamp + ".lst", pluginListCommand, "",
                  "List of installed plugins was created succesfully",
                  "Creating list of installed plugins failed"),
      backupEntry("settingbackup", "settings_" + kStamp + ".tar.gz", support::settingsBackupCommand,
                  "", "Settings backup finished succesfully", "Backup settings failed"),
      backupEntry("configbackup", "configuration_ver_c_" + kStamp + ".tar.gz",
                  support::configurationBackupCommand, noUserFiles(),
                  "Common configuration backup finished succesfully",
                  "Backup of common configurations failed"),
      restoreEntry("installpluginlist", "plugininstall",
                   "restoretype=plugininstall, plugins are to be reloaded"),
      restoreEntry("settingrestore", "settingrestore", "restoretype=settingrestore"),
      restoreEntry("configrestore", "configrestore", "restoretype=configrestore"),
      restoreEntry("personalscript", "personalscript", "restoretype=personalscript"),
      {.name = "Entry_installlocalplugin",
       .prepare = onMenu("restore", choose("installlocalplugin")),
       .operations = kSelected + "ipkg.startCmd(CMD_UPDATE)\n",
       .states = {{"self[\"menu\"].getCurrent()", "restoretype="},
                  {"ipkg.startCmd(CMD_UPDATE)", "restoretype=installlocalplugin"}}},
      mediumChoice(),
      mediumChosen("MediumChosen", host::tuple({"/media/usb"_t, "/media/usb"_t, Object()}),
                   "config.plugins.qorpanel.stowline.backuprestorepath.value = \"/media/usb\"\n",
                   "/media/usb", "/media/usb/qor-stowline"),
      mediumChosen("MediumChoiceLeft", {}, "", "/media/hdd/", kDirectory),
      closing("ClosingTheMenu", false),
      closing("ClosingTheMenuAfterARestoreOfPlugins", true),
  };
  for (Flow& flow : localPackages()) flows.push_back(std::move(flow));
  return flows;
}

}  // namespace stowline
