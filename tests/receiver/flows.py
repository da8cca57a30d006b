"""How each use of the module is begun through the interpreter.

What the module does then, and where errors end, is told by the flows that the build exports; a flow here
has the name of one there.
"""

import fakes
from fakes import Session

DIRECTORY = "/media/hdd/qor-stowline"
STAMP = "20240305_07-04_solo2"
ATILE = "/usr/share/enigma2/AtileHD"
INSTALLED = 'opkg list-installed | grep enigma2-plugin | cut -d " " -f 1'
SETTINGS = "settings_1.tar.gz"
CONFIGURATION = "configuration_ver_a_1.tar.gz"
SCRIPT = "backup_1.sh"
PLUGINS = "pluginlist_1.lst"
EVENT_DONE = 10
EVENT_ERROR = 11


def full_path(name):
    return DIRECTORY + "/" + name


class Prepared(object):
    """A use on a receiver that was prepared for it: `go`, and what `state` says afterwards."""

    def __init__(self, go, state=None):
        self.go = go
        self.state = state


def press(screen, key):
    """Calls what the screen's action maps bind to `key`."""
    for widget in sorted(screen):
        actions = getattr(screen[widget], "actions", {})
        if key in actions:
            return actions[key]()
    raise KeyError(key)


def finish_layout(screen):
    hooks = list(screen.onLayoutFinish)
    del screen.onLayoutFinish[:]
    for hook in hooks:
        hook()


def none(receiver):
    pass


# The engine.

def on_engine(job, state, lay_out, backuptype="manual"):
    def prepare(module, receiver):
        lay_out(receiver)
        engine = module.BackupActions(backuptype)
        return Prepared(lambda: getattr(engine, job)(), lambda: state(engine))
    return prepare


def writing(job, attribute, name):
    return on_engine(job, lambda engine: getattr(engine, attribute, ""),
                     lambda receiver: receiver.add_file(full_path(name)))


def lay_out_user_files(receiver):
    receiver.add_directory(DIRECTORY)
    receiver.add_directory(ATILE, ["colors_atile_a", "colors_atile_b"])
    receiver.add_file("/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
                      lines=[ATILE + "/colors_atile_a\n"])


OLDEST = full_path("configuration_ver_c_1_solo2.auto.tar.gz")
VICTIMS = [OLDEST, OLDEST + "_atile_hd", OLDEST + "_user_files"]


def lay_out_scheduled(receiver):
    receiver.add_directory(DIRECTORY)
    for number in (2, 3, 4):
        receiver.add_file(full_path("configuration_ver_c_%d_solo2.auto.tar.gz" % number))
    for victim in VICTIMS:
        receiver.add_file(victim)


def victims_left(engine):
    return "".join("1" if fakes.receiver.has(victim) else "0" for victim in VICTIMS)


ENGINE = {
    "BackupDirectory": lambda module, receiver: Prepared(module.getBackupRestorePath),
    "BackupObject": lambda module, receiver: Prepared(lambda: module.BackupActions("auto")),
    "SettingsBackup": writing("createSettingFile", "settingfile", "settings_%s.tar.gz" % STAMP),
    "ConfigurationBackup": writing("createConfigFile", "configfile",
                                   "configuration_ver_c_%s.tar.gz" % STAMP),
    "PluginListBackup": writing("createPluginList", "pluginfile", "pluginlist_%s.lst" % STAMP),
    "ConfigurationBackupWithUserFiles": on_engine(
        "createConfigFile", lambda engine: getattr(engine, "configfile", ""), lay_out_user_files),
    "Housekeeping": on_engine("houseKeeping", victims_left, lay_out_scheduled, "auto"),
}


# The main menu.

def state_of_menu(menu):
    return "restoretype=" + getattr(menu, "restoretype", "") + (
        ", plugins are to be reloaded" if menu.reloadPluginlist else "")


def on_menu(flavour, go, lay_out=none, state=state_of_menu):
    def prepare(module, receiver):
        lay_out(receiver)
        menu = module.Stowline(Session(), "/plugin", flavour)
        finish_layout(menu)
        return Prepared(lambda: go(menu), lambda: state(menu))
    return prepare


def opening_menu(flavour):
    return lambda module, receiver: Prepared(
        lambda: module.Stowline(Session(), "/plugin", flavour))


def menu_layout(flavour):
    def prepare(module, receiver):
        menu = module.Stowline(Session(), "/plugin", flavour)
        return Prepared(lambda: finish_layout(menu),
                        lambda: "filled" if menu["menu"].entries else "empty")
    return prepare


def choose(key):
    def go(menu):
        menu["menu"].entries = [(key,)]
        press(menu, "ok")
    return go


def backup_entry(key, name):
    return on_menu("backup", choose(key), lambda receiver: receiver.add_file(full_path(name)))


def restore_entry(key):
    return on_menu("restore", choose(key))


def lay_out_shares(receiver):
    receiver.add_directory("/media/net/autofs", ["a"])
    receiver.add_directory("/media/net/autofs/a")
    receiver.add_directory("/media/net/autonet", ["b"])
    receiver.add_directory("/media/net/autonet/b")
    receiver.add_file("/proc/mounts", lines=["x /media/net/autofs/a nfs\n",
                                             "x /media/net/autonet/b nfs\n"])


def medium_chosen(option):
    def prepare(module, receiver):
        menu = module.Stowline(Session(), "/plugin", "backup")
        setting = module.config.plugins.qorpanel.stowline.backuprestorepath
        return Prepared(lambda: menu.backuprestorepath_choosen(option),
                        lambda: "%s %s" % (setting.content, getattr(menu, "backuprestorepath", None)))
    return prepare


def closing_menu(reload):
    def go(menu):
        menu.reloadPluginlist = reload
        press(menu, "cancel")
    return on_menu("restore", go)


def menu_event(event):
    def go(menu):
        menu.restoretype = "installlocalplugin"
        if event == EVENT_ERROR:
            menu.setStatus = lambda status: fakes.note('self.setStatus("%s")' % status)
        for callback in menu.ipkg.callbacks:
            callback(event, None)
    return go


def lay_out_local_packages(receiver):
    plugins = full_path("plugins")
    receiver.add_directory(DIRECTORY)
    receiver.add_directory(plugins, ["a.ipk"])
    receiver.outputs[INSTALLED] = [plugins + "/a.ipk"]
    receiver.add_file(plugins + "/b.ipk")


MENU = {
    "OpeningTheBackupMenu": opening_menu("backup"),
    "OpeningTheRestoreMenu": opening_menu("restore"),
    "LayoutOfTheBackupMenu": menu_layout("backup"),
    "LayoutOfTheRestoreMenu": menu_layout("restore"),
    "Entry_createpluginlist": backup_entry("createpluginlist", "pluginlist_%s.lst" % STAMP),
    "Entry_settingbackup": backup_entry("settingbackup", "settings_%s.tar.gz" % STAMP),
    "Entry_configbackup": backup_entry("configbackup", "configuration_ver_c_%s.tar.gz" % STAMP),
    "Entry_installpluginlist": restore_entry("installpluginlist"),
    "Entry_settingrestore": restore_entry("settingrestore"),
    "Entry_configrestore": restore_entry("configrestore"),
    "Entry_personalscript": restore_entry("personalscript"),
    "Entry_installlocalplugin": restore_entry("installlocalplugin"),
    "Entry_path": on_menu("backup", choose("path"), lay_out_shares),
    "MediumChosen": medium_chosen(("/media/usb", "/media/usb", None)),
    "MediumChoiceLeft": medium_chosen(None),
    "ClosingTheMenu": closing_menu(False),
    "ClosingTheMenuAfterARestoreOfPlugins": closing_menu(True),
    "LocalPackages": on_menu("restore", menu_event(EVENT_DONE), lay_out_local_packages),
    "LocalPackagesOnANewMedium": on_menu("restore", menu_event(EVENT_DONE)),
    "FailedRefreshOfTheMenu": on_menu("restore", menu_event(EVENT_ERROR)),
}


# The restore list and the confirmation.

def lay_out_backups(receiver):
    receiver.add_directory(DIRECTORY)
    for name in (SETTINGS, CONFIGURATION, SCRIPT, PLUGINS):
        receiver.add_file(full_path(name), 10000)
    receiver.outputs[INSTALLED] = ["enigma2-plugin-a\n"]
    receiver.outputs["cat " + full_path(PLUGINS)] = [
        "enigma2-plugin-a\n", "enigma2-plugin-settings-b\n", "enigma2-plugin-c\n"]


def state_of_list(restore):
    return "restoretype=%s sel=%s exe=%s cmdlist=%s" % (
        restore.restoretype, fakes.described(restore.sel), restore.exe,
        fakes.bracketed(getattr(restore, "cmdlist", [])))


def on_list(restoretype, go):
    def prepare(module, receiver):
        lay_out_backups(receiver)
        restore = module.StowlineRestore(Session(), restoretype, "/plugin")
        return Prepared(lambda: go(restore), lambda: state_of_list(restore))
    return prepare


def on_question(restoretype, key):
    """After the selected file was asked about with `key`, the answer is yes."""
    def prepare(module, receiver):
        lay_out_backups(receiver)
        session = Session()
        restore = module.StowlineRestore(session, restoretype, "/plugin")
        press(restore, key)
        return Prepared(lambda: session.answer(True), lambda: state_of_list(restore))
    return prepare


def opening_list(restoretype, lay_out=lay_out_backups):
    def prepare(module, receiver):
        lay_out(receiver)
        return Prepared(lambda: module.StowlineRestore(Session(), restoretype, "/plugin"))
    return prepare


def pressing(key):
    return lambda screen: press(screen, key)


def console_restore(restore):
    restore.sel = SETTINGS
    restore.startRestore(True)


def list_event(event):
    def go(restore):
        restore.val = full_path(PLUGINS)
        if event == EVENT_ERROR:
            restore.setStatus = lambda status: fakes.note('self.setStatus("%s")' % status)
        for callback in restore.ipkg.callbacks:
            callback(event, None)
    return go


def on_confirmation(go):
    def prepare(module, receiver):
        archive = full_path(CONFIGURATION)
        for path in ("/etc/samba/smb.conf", archive + "_atile_hd", archive + "_user_files",
                     "/proc/stb/vmpeg/0/dst_width"):
            receiver.add_file(path)
        screen = module.StowlineHelpScreen(Session(), CONFIGURATION, archive)
        return Prepared(lambda: go(screen), lambda: screen["messagetext"].text)
    return prepare


RESTORE = {
    "OpeningARestoreList": opening_list("settingrestore"),
    "OpeningAScriptList": opening_list("personalscript"),
    "OpeningARestoreListOnANewMedium": opening_list("configrestore", none),
    "SettingsRestore": on_list("settingrestore", pressing("ok")),
    "SettingsRestoreCloses": on_question("settingrestore", "ok"),
    "ConfigurationChosen": on_list("configrestore", pressing("green")),
    "ScriptAskedAbout": on_list("personalscript", pressing("ok")),
    "ScriptRun": on_question("personalscript", "ok"),
    "PluginInstallationStarted": on_list("plugininstall", pressing("ok")),
    "ConsoleRestore": on_list("settingrestore", console_restore),
    "DeletionAskedAbout": on_list("settingrestore", pressing("yellow")),
    "Deletion": on_question("settingrestore", "yellow"),
    "PluginInstallation": on_list("plugininstall", list_event(EVENT_DONE)),
    "FailedRefreshOfTheList": on_list("plugininstall", list_event(EVENT_ERROR)),
    "ClosingTheList": on_list("settingrestore", pressing("red")),
    "OpeningTheConfirmation": lambda module, receiver: Prepared(
        lambda: module.StowlineHelpScreen(Session(), CONFIGURATION, full_path(CONFIGURATION))),
    "LayoutOfTheConfirmation": on_confirmation(finish_layout),
    "ConfigurationRestore": on_confirmation(pressing("green")),
    "ClosingTheConfirmation": on_confirmation(pressing("red")),
}

PREPARE = {}
for group in (ENGINE, MENU, RESTORE):
    PREPARE.update(group)
