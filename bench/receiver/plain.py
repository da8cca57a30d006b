"""The measured steps of the module in plain Python, on the same framework, as its writer would have them."""

import os
import time

from Components.ActionMap import ActionMap, NumberActionMap
from Components.Console import Console
from Components.Ipkg import IpkgComponent
from Components.Label import Label
from Components.MenuList import MenuList
from Components.Sources.List import List
from Components.Sources.StaticText import StaticText
from Components.config import config
from Screens.Screen import Screen
from Tools.Directories import SCOPE_PLUGINS, fileExists, resolveFilename
from Tools.HardwareInfoVu import HardwareInfoVu
from Tools.LoadPixmap import LoadPixmap

BOX_TYPES = ["solo", "duo", "uno", "ultimo", "solo2", "duo2", "solose", "zero"]
PICTURES = "SystemPlugins/QORPanel/pictures/"


def getBackupRestorePath():
    path = config.plugins.qorpanel.stowline.backuprestorepath.value
    path += "qor-stowline" if path.endswith("/") else "/qor-stowline"
    try:
        if not os.path.exists(path):
            os.makedirs(path)
    except Exception:
        return None
    return path


def getDateTime():
    now = time.localtime()
    return "%d%02d%02d_%02d-%02d" % (now.tm_year, now.tm_mon, now.tm_mday, now.tm_hour, now.tm_min)


class BackupActions(object):
    def __init__(self, backuptype=None):
        self.executiontime = getDateTime()
        self.boxtype = HardwareInfoVu().get_device_name()
        self.executiontime += "_%s" % self.boxtype
        if backuptype == "auto":
            self.executiontime += ".auto"

    def saveUserFiles(self, package_info, start_strings, search_dirs):
        package_files = set()
        user_files = []
        if fileExists(package_info):
            with open(package_info) as lines:
                for line in lines.readlines():
                    for start in start_strings:
                        if line.startswith(start):
                            package_files.add(line.strip())
        for directory in search_dirs:
            if os.path.exists(directory):
                for name in os.listdir(directory):
                    path = os.path.join(directory, name)
                    for start in start_strings:
                        if path.startswith(start) and path not in package_files:
                            user_files.append(path)
        return user_files

    def houseKeeping(self):
        path = getBackupRestorePath()
        if not path:
            return
        flist = []
        for name in os.listdir(path):
            if name.startswith("pluginlist") and name.endswith(self.boxtype + ".auto.lst"):
                flist.append(name)
            elif name.startswith("settings") and name.endswith(self.boxtype + ".auto.tar.gz"):
                flist.append(name)
            elif name.startswith("configuration") and (
                    name.endswith(self.boxtype + ".auto.tar.gz") or
                    name.endswith(self.boxtype + ".auto.tar.gz_atile_hd") or
                    name.endswith(self.boxtype + ".auto.tar.gz_user_files")):
                flist.append(name)
        flist.sort(reverse=True)
        rm_flist = []
        for file_type in ("settings", "configuration", "pluginlist"):
            erase_counter = 0
            for name in flist:
                if (name.startswith(file_type) and not name.endswith("_atile_hd") and
                        not name.endswith("_user_files")):
                    erase_counter += 1
                    if erase_counter >= 4:
                        rm_flist += [name, name + "_atile_hd", name + "_user_files"]
        for name in rm_flist:
            full = path + "/" + name
            if os.path.exists(full):
                os.remove(full)
                print("[Qor Stowline] Housekeeping --> remove file %s" % full)


class Stowline(Screen):
    def __init__(self, session, plugin_path, screen_type="backup"):
        Screen.__init__(self, session)
        self.skin_path = plugin_path
        self.session = session
        self.screentype = screen_type
        self.reloadPluginlist = False
        self.title = _("QOR Stowline")  # noqa: F821
        self.backupactions = BackupActions("manual")
        if self.screentype == "restore":
            self.title += " (" + _("Restore") + ")"  # noqa: F821
        else:
            self.screentype = "backup"
            self.title += " (" + _("Backup") + ")"  # noqa: F821
        self["key_green"] = StaticText("")
        self["key_yellow"] = StaticText("")
        try:
            self["title"] = StaticText(self.title)
        except Exception:
            print('self["title"] was not found in skin')
        self.list = []
        self["menu"] = List(self.list)
        self["status"] = Label("")
        self["key_red"] = StaticText(_("Exit"))  # noqa: F821
        self["shortcuts"] = ActionMap(
            ["SetupActions", "ColorActions", "DirectionActions"],
            {"ok": self.runMenuEntry, "cancel": self.keyCancel, "red": self.keyCancel}, -2)
        self.cmdList = []
        self.Console = Console()
        self.ipkg = IpkgComponent()
        self.ipkg.addCallback(self.ipkgCallback)
        self.onLayoutFinish.append(self.createMenu)

    def entry(self, key, title, description, picture):
        medium = config.plugins.qorpanel.stowline.backuprestorepath.value
        title, description = _(title), _(description)  # noqa: F821
        if "%s" in title:
            title = title % medium
        if "%s" in description:
            description = description % medium
        path = resolveFilename(SCOPE_PLUGINS, PICTURES + picture)
        return (key, title, description, LoadPixmap(path=path, cached=True), None)

    def createMenu(self):
        self.list = [self.entry("path", "Backup/restore device : %s",
                                "set device for directory qor-stowline", "backuplocation.png")]
        if self.screentype == "backup":
            self.list.append(self.entry("createpluginlist", "Backup installed plugins",
                                        "creates a list of installed plugins, skins and softcams",
                                        "services.png"))
            self.list.append(self.entry("settingbackup", "Backup channel settings",
                                        "save channel and bouquet settings", "restoresettings.png"))
            self.list.append(self.entry("configbackup", "Backup configurations",
                                        "save common configurations for GUI, plugins and softcams",
                                        "filesys.png"))
        self["menu"].setList(self.list)

    def runMenuEntry(self, ret=None):
        pass

    def ipkgCallback(self, event, param):
        pass

    def keyCancel(self):
        self.close(True)


class StowlineRestore(Screen):
    def __init__(self, session, restoretype, plugin_path):
        Screen.__init__(self, session)
        self.skin_path = plugin_path
        self.restoretype = restoretype
        self.title = _("QOR Stowline")  # noqa: F821
        self["title"] = StaticText(self.title)
        self["key_red"] = StaticText(_("Close"))  # noqa: F821
        self["key_green"] = StaticText(_("Install"))  # noqa: F821
        self["key_yellow"] = StaticText(_("Delete"))  # noqa: F821
        self["actions"] = NumberActionMap(["SetupActions"], {}, -1)
        self["shortcuts"] = ActionMap(["ShortcutActions"], {})
        self.flist = []
        self["filelist"] = MenuList(self.flist)
        self.fill_list()

    def fill_list(self):
        self.flist = []
        self.path = getBackupRestorePath()
        own = HardwareInfoVu().get_device_name()
        if not self.path:
            return
        for name in os.listdir(self.path):
            shown = True
            for box in BOX_TYPES:
                if "_" + box + "." in name:
                    shown = box == own
                    break
            for restoretype, start, end in (
                    ("plugininstall", "pluginlist", ".lst"), ("settingrestore", "settings", ".tar.gz"),
                    ("configrestore", "configuration", ".tar.gz"),
                    ("personalscript", "backup", ".sh"), ("personalscript", "restore", ".sh")):
                if (name.startswith(start) and name.endswith(end) and self.restoretype == restoretype and
                        shown):
                    self.flist.append(name)
                    self.entry = True
        self.flist.sort(reverse=True)
        self["filelist"].l.setList(self.flist)
