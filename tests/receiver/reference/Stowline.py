"""The module as it would be in the interpreter's own language, for comparison with Stowline.so. Runs on 2.7 and 3."""

from __future__ import print_function

from Components.Label import Label
from Components.ActionMap import ActionMap, NumberActionMap
from Components.GUIComponent import GUIComponent
from Components.config import config, getConfigListEntry, ConfigSubsection, ConfigSelection, ConfigText, ConfigLocations
from Components.Sources.StaticText import StaticText
from Components.Pixmap import Pixmap
from Components.MenuList import MenuList
from Components.Harddisk import harddiskmanager
from Components.Console import Console as ComConsole
from Components.Ipkg import IpkgComponent
from Components.Sources.List import List
from Components.PluginComponent import plugins
from Screens.Screen import Screen
from Screens.Console import Console
from Screens.MessageBox import MessageBox
from Screens.ChoiceBox import ChoiceBox
from Screens.Ipkg import Ipkg
from Tools.LoadPixmap import LoadPixmap
from Tools.Directories import *
from Tools.HardwareInfoVu import HardwareInfoVu
from time import localtime, mktime, time
from enigma import eServiceReference, eServiceCenter, eDVBDB
from ServiceReference import ServiceReference
from Screens.InfoBar import InfoBar
from Components.NimManager import nimmanager
from skin import loadSkin
from os import (system, listdir, symlink, unlink, readlink, path as os_path, stat, mkdir, popen, makedirs, access,
                rename, remove, W_OK, R_OK, F_OK, chmod, walk, getcwd, chdir, stat as os_stat)

open = open
OSError = OSError

config.plugins.qorpanel.stowline = ConfigSubsection()
config.plugins.qorpanel.stowline.backuprestorepath = ConfigText(default="/media/hdd/", visible_width=50,
                                                                fixed_size=False)

_CHANNEL_FILES = ["/etc/enigma2/*.tv", "/etc/enigma2/*.radio", "/etc/enigma2/whitelist", "/etc/enigma2/blacklist",
                 "/etc/enigma2/lamedb", "/etc/tuxbox/satellites.xml", "/etc/tuxbox/terrestrial.xml",
                 "/etc/tuxbox/cables.xml"]
_BOX_TYPES = ["solo", "duo", "uno", "ultimo", "solo2", "duo2", "solose", "zero"]
_INSTALLED = 'opkg list-installed | grep enigma2-plugin | cut -d " " -f 1'
_SURROGATES = ["surrogatepass"] if str is not bytes else []
_NOT_WRITEABLE = "Sorry, your backup destination is not writeable.\n\nPlease choose another one."


def _print(line):
    """A name that the log's encoding has no character for shall not stop what is being logged."""
    try:
        print(line)
    except UnicodeError:
        if not isinstance(line, bytes):
            line = line.encode("utf-8", *_SURROGATES)
        print("".join(character if ord(character) < 128 else "\\x%02x" % ord(character)
                      for character in line.decode("latin-1")))


def _entry(key, title, description, picture):
    title, description = [
        _(text) % config.plugins.qorpanel.stowline.backuprestorepath.value if "%s" in text else _(text)  # noqa: F821
        for text in (title, description)]
    return (key, title, description,
            LoadPixmap(path=resolveFilename(SCOPE_PLUGINS, "SystemPlugins/QORPanel/pictures/" + picture), cached=True),
            None)


def _mountedMedia():
    excluded = []
    for root in ("/media/net/autofs", "/media/net/autonet"):
        excluded.append(root)
        if os_path.exists(root):
            for name in listdir(root):
                share = root + "/" + name
                if os_path.exists(share):
                    try:
                        listdir(share)
                    except:  # noqa: E722  every error, as the guards of the module have it
                        excluded.append(share)
    choices = []
    for line in _linesOf(open("/proc/mounts")):
        fields = line.split(" ")
        if len(fields) >= 2:
            mounted = fields[1]
            if mounted.startswith("/media/") and mounted != "/media/net" and mounted not in excluded:
                choices.append((mounted, mounted, None))
    return choices


def _report(menu, done, success, failure):
    if done == True:  # noqa: E712  1 is a success, "done" is none
        box = menu.session.open(MessageBox, _(success), MessageBox.TYPE_INFO, timeout=10)  # noqa: F821
    else:
        box = menu.session.open(MessageBox, _(failure), MessageBox.TYPE_ERROR, timeout=10)  # noqa: F821
    box.setTitle(_("QOR Stowline"))  # noqa: F821


def _select(restore):
    """Takes the row under the cursor as the selected file, unless there is nothing to act on."""
    if restore.exe == False and restore.entry == True:  # noqa: E712
        current = restore["filelist"].getCurrent()
        if current is not None and restore.path:
            restore.sel = current
            restore.val = restore.path + "/" + restore.sel
            return True
    return False


def _closeAnyway(file):
    try:
        file.close()
    except:  # noqa: E722  an error has been raised already
        pass


def _linesOf(file):
    try:
        lines = file.readlines()
    except:  # noqa: E722
        _closeAnyway(file)
        raise
    file.close()
    return lines


def getBackupRestorePath():
    path = config.plugins.qorpanel.stowline.backuprestorepath.value
    if path.endswith("/"):
        path += "qor-stowline"
    else:
        path += "/qor-stowline"
    try:
        if not os_path.exists(path):
            makedirs(path)
    except:  # noqa: E722  every error, as the guards of the module have it
        return None
    return path


def getDateTime():
    now = localtime()
    text = str(now.tm_year)
    for name, mark in (("tm_mon", ""), ("tm_mday", ""), ("tm_hour", "_"), ("tm_min", "-")):
        number = getattr(now, name)
        text += mark + ("0" if number < 10 else "") + str(number)
    return text


class BackupActions(object):
    def __init__(self, backuptype=None):
        self.executiontime = getDateTime()
        self.boxtype = HardwareInfoVu().get_device_name()
        self.executiontime = self.executiontime + "_%s" % self.boxtype
        if backuptype == "auto":
            self.executiontime = self.executiontime + ".auto"

    def createSettingFile(self):
        self.path = getBackupRestorePath()
        self.settingfile = "%s/settings_%s.tar.gz" % (self.path, self.executiontime)
        if fileExists(self.settingfile):
            system("rm -f %s" % self.settingfile)
        system("tar czf %s " % self.settingfile + " ".join(_CHANNEL_FILES))
        return bool(fileExists(self.settingfile))

    def createConfigFile(self):
        self.path = getBackupRestorePath()
        self.configfile = "%s/configuration_ver_c_%s.tar.gz" % (self.path, self.executiontime)
        configplaces = ["/etc/enigma2/*", "/etc/CC*", "/usr/scam/*", "/etc/tuxbox/config/*", "/usr/keys/*",
                        "/etc/ConfFS/*", "/usr/lib/enigma2/python/Plugins/Extensions/webradioFS/skin/mySkin/*",
                        "/etc/MultiQuickButton/*", "/usr/lib/enigma2/python/Plugins/Extensions/Foreca/*.cfg",
                        "/usr/lib/enigma2/python/Plugins/Extensions/SHOUTcast/favorites", "/etc/samba/*",
                        "/etc/hostname", "/etc/passwd", "/etc/shadow", "/etc/exports", "/etc/fstab",
                        "/etc/auto.network", "/etc/auto.network_qor", "/etc/network/interfaces", "/etc/resolv.conf",
                        "/etc/wpa_supplicant*.conf", "/usr/share/enigma2/radio.mvi", "/usr/share/vuplus-bootlogo/*",
                        "/.qws/share/data/Arora/*", "/Settings/*",
                        "/usr/lib/enigma2/python/Plugins/SystemPlugins/PiPServiceRelation/psr_config",
                        "/usr/lib/enigma2/python/Plugins/SystemPlugins/CrashReport/settings",
                        "/usr/lib/enigma2/python/Plugins/Extensions/HbbTV/bookmark.ini",
                        "/etc/init.d/current_cam.sh", "/usr/share/enigma2/skin_default/spinner/wait*png",
                        "/etc/enigmalight.conf",
                        "/usr/lib/enigma2/python/Plugins/Extensions/EnigmaLight/profiles/custom_*.profile"]
        configexcludes = ["etc/enigma2/*.tv", "etc/enigma2/*.radio", "etc/enigma2/whitelist",
                          "etc/enigma2/blacklist", "etc/enigma2/lamedb", "etc/tuxbox/config/enigma*",
                          "etc/enigma2/*.pem", "etc/enigma2/profile"]
        if fileExists(self.configfile):
            system("rm -f %s" % self.configfile)
        command = "tar czf %s" % self.configfile
        for entry in configplaces:
            command += " " + entry
        for entry in configexcludes:
            command += " --exclude " + entry
        system(command)
        configplaces = []
        configplaces.extend(self.saveAtileUserFiles())
        configplaces.extend(self.saveVFDSkinUserFiles())
        if configplaces:
            command = "tar czf %s_user_files" % self.configfile
            for entry in configplaces:
                command += " " + entry
            system(command)
        return bool(fileExists(self.configfile))

    def createPluginList(self):
        self.path = getBackupRestorePath()
        self.pluginfile = "%s/pluginlist_%s.lst" % (self.path, self.executiontime)
        if fileExists(self.pluginfile):
            system("rm -f %s" % self.pluginfile)
        system(_INSTALLED + " >> %s" % self.pluginfile)
        return bool(fileExists(self.pluginfile))

    def saveAtileUserFiles(self):
        return self.saveUserFiles(
            "/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
            ["/usr/share/enigma2/AtileHD/colors_atile_", "/usr/share/enigma2/AtileHD/font_atile_",
             "/usr/share/enigma2/AtileHD/allScreens/skin_", "/usr/share/enigma2/AtileHD/preview/preview_"],
            ["/usr/share/enigma2/AtileHD", "/usr/share/enigma2/AtileHD/allScreens",
             "/usr/share/enigma2/AtileHD/preview"])

    def saveVFDSkinUserFiles(self):
        return self.saveUserFiles(
            "/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list",
            ["/usr/share/enigma2/vfd_skin/skin_vfd"], ["/usr/share/enigma2/vfd_skin"])

    def saveUserFiles(self, package_info, start_strings, search_dirs):
        package_files = []
        user_files = []
        if fileExists(package_info):
            for line in _linesOf(open(package_info)):
                for start in start_strings:
                    if line.startswith(start):
                        package_files.append(line.strip())
        for directory in search_dirs:
            if os_path.exists(directory):
                for name in self.listdir_fullpath(directory):
                    for start in start_strings:
                        if name.startswith(start) and name not in package_files:
                            user_files.append(name)
        return user_files

    def listdir_fullpath(self, d):
        return [os_path.join(d, name) for name in listdir(d)]

    def houseKeeping(self):
        flist = []
        path = getBackupRestorePath()
        if not path:
            return
        for name in listdir(path):
            if name.startswith("pluginlist") and name.endswith(self.boxtype + ".auto.lst"):
                flist.append(name)
            elif name.startswith("settings") and name.endswith(self.boxtype + ".auto.tar.gz"):
                flist.append(name)
            elif name.startswith("configuration") and (
                    name.endswith(self.boxtype + ".auto.tar.gz") or
                    name.endswith(self.boxtype + ".auto.tar.gz_atile_hd") or
                    name.endswith(self.boxtype + ".auto.tar.gz_user_files")):
                flist.append(name)
        if not flist:
            return
        flist.sort(reverse=True)
        rm_flist = []
        for file_type in ("settings", "configuration", "pluginlist"):
            erase_counter = 0
            for name in flist:
                if (name.startswith(file_type) and not name.endswith("_atile_hd") and
                        not name.endswith("_user_files")):
                    erase_counter += 1
                    if erase_counter >= 4:
                        rm_flist.append(name)
                        rm_flist.append(name + "_atile_hd")
                        rm_flist.append(name + "_user_files")
        for name in rm_flist:
            full = path + "/" + name
            if os_path.exists(full):
                remove(full)
                _print("[Qor Stowline] Housekeeping --> remove file %s" % full)


class StowlineHelpScreen(Screen):
    skin = """
	<screen name="StowlineHelpScreen" position="center,center" size="650,250">
		<widget name="messagetext" position="10,10" size="630,210" font="Regular;20" halign="center" valign="center" transparent="1" />
		<widget source="key_red" render="Label" position="40,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<widget source="key_green" render="Label" position="225,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_red.png" position="10,220" size="25,25" alphatest="on" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_green.png" position="195,220" size="25,25" alphatest="on" />
	</screen>"""

    def __init__(self, session, restorefile, fullrestorepath):
        Screen.__init__(self, session)
        self.session = session
        self.restorefile = restorefile
        self.fullrestorepath = fullrestorepath
        self.title = "Qor Stowline"
        try:
            self["title"] = StaticText(self.title)
        except:  # noqa: E722  every error, as the guards of the module have it
            _print('self["title"] was not found in skin')
        self["messagetext"] = Label("")
        self["key_red"] = StaticText(_("Exit"))  # noqa: F821
        self["key_green"] = StaticText(_("Ok"))  # noqa: F821
        self["shortcuts"] = ActionMap(["OkCancelActions", "ColorActions"],
                                      {"red": self.keyClose, "green": self.keyGo, "ok": self.keyGo,
                                       "cancel": self.keyClose}, -2)
        self.onLayoutFinish.append(self.createMessage)

    def createMessage(self):
        self["messagetext"].setText(_("Are you sure you want to restore\nfollowing backup:\n") +  # noqa: F821
                                    self.restorefile + "\n\n" +
                                    _("\nSystem will restart after the restore!"))  # noqa: F821

    def keyGo(self):
        QOR_OE_21 = 21
        QOR_OE_30 = 30
        QOR_13 = 40
        smb_conf_file = "/etc/samba/smb.conf"
        smb_conf_bfile = "/etc/samba/smb_backup"
        if "configuration_ver_a" in self.fullrestorepath:
            conf_ver = QOR_OE_21
        elif "configuration_ver_b" in self.fullrestorepath:
            conf_ver = QOR_OE_30
        elif "configuration_ver_c" in self.fullrestorepath:
            conf_ver = QOR_13
        else:
            conf_ver = 0
        cmdlist = []
        if conf_ver < QOR_OE_30:
            _print("[Qor Stowline] do not restore old OE tree configuration files")
            cmdlist.append("cat /etc/fstab > /etc/fstab_backup")
            cmdlist.append("cat /etc/passwd > /etc/passwd_backup")
            cmdlist.append("cat /etc/shadow > /etc/shadow_backup")
        if conf_ver != QOR_13 and os_path.exists(smb_conf_file):
            _print("[Qor Stowline] do not restore old samba configuration")
            cmdlist.append("cat " + smb_conf_file + " > " + smb_conf_bfile)
        cmdlist.append("mkdir -p /usr/share/enigma2/skin_default/spinner/tmp")
        cmdlist.append("mv /usr/share/enigma2/skin_default/spinner/*.png "
                       "/usr/share/enigma2/skin_default/spinner/tmp")
        cmdlist.append("/etc/init.d/current_cam.sh stop ; tar -xzf %s -C /" % self.fullrestorepath)
        atilefile = self.fullrestorepath + "_atile_hd"
        if fileExists(atilefile):
            cmdlist.append("tar -xzf %s -C /" % atilefile)
        userfile = self.fullrestorepath + "_user_files"
        if fileExists(userfile):
            cmdlist.append("tar -xzf %s -C /" % userfile)
        cmdlist.append('echo "[Qor Stowline] syncing ..." ;  /bin/sync ; sleep 1')
        cmdlist.append("if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  "
                       "mv /usr/share/enigma2/skin_default/spinner/tmp/*.png "
                       "/usr/share/enigma2/skin_default/spinner ; fi ; "
                       "rm -rf /usr/share/enigma2/skin_default/spinner/tmp")
        cmdlist.append("rm -rf /.qws")
        cmdlist.append('if [ ! -L "/etc/resolv.conf" ] ; then rm /var/run/resolv.conf ; '
                       'mv /etc/resolv.conf /var/run/resolv.conf ; '
                       'ln -s /var/run/resolv.conf /etc/resolv.conf ; fi')
        if conf_ver != QOR_13 and os_path.exists(smb_conf_file):
            _print("[Qor Stowline] restore installed smb.conf")
            cmdlist.append("cat " + smb_conf_bfile + " > " + smb_conf_file + " ; rm " + smb_conf_bfile)
        if conf_ver < QOR_OE_30:
            cmdlist.append("cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup")
            cmdlist.append("cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup")
            cmdlist.append("cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup")
            cmdlist.append("chmod -x /etc/auto.network")
        if fileExists("/proc/stb/vmpeg/0/dst_width"):
            cmdlist.append("echo 00000000 > /proc/stb/vmpeg/0/dst_height")
            cmdlist.append("echo 00000000 > /proc/stb/vmpeg/0/dst_left")
            cmdlist.append("echo 00000000 > /proc/stb/vmpeg/0/dst_top")
            cmdlist.append("echo 00000000 > /proc/stb/vmpeg/0/dst_width")
        cmdlist.append("/etc/init.d/networking stop ; /etc/init.d/networking start ; "
                       "/etc/init.d/current_cam.sh start ; killall -9 enigma2")
        for cmd in cmdlist:
            system(cmd)

    def keyClose(self):
        self.close()


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
        except:  # noqa: E722  every error, as the guards of the module have it
            _print('self["title"] was not found in skin')
        self.list = []
        self["menu"] = List(self.list)
        self["status"] = Label("")
        self["key_red"] = StaticText(_("Exit"))  # noqa: F821
        self["shortcuts"] = ActionMap(["SetupActions", "ColorActions", "DirectionActions"],
                                      {"ok": self.runMenuEntry, "cancel": self.keyCancel, "red": self.keyCancel}, -2)
        self.cmdList = []
        self.Console = ComConsole()
        self.ipkg = IpkgComponent()
        self.ipkg.addCallback(self.ipkgCallback)
        self.onLayoutFinish.append(self.createMenu)

    def createMenu(self):
        self.list = []
        self.list.append(_entry("path", "Backup/restore device : %s", "set device for directory qor-stowline",
                                "backuplocation.png"))
        if self.screentype == "backup":
            self.list.append(_entry("createpluginlist", "Backup installed plugins",
                                    "creates a list of installed plugins, skins and softcams", "services.png"))
            self.list.append(_entry("settingbackup", "Backup channel settings", "save channel and bouquet settings",
                                    "restoresettings.png"))
            self.list.append(_entry("configbackup", "Backup configurations",
                                    "save common configurations for GUI, plugins and softcams", "filesys.png"))
        elif self.screentype == "restore":
            self.list.append(_entry("installpluginlist", "Restore plugins from saved list",
                                    "installs all available plugins from online feed", "services.png"))
            self.list.append(_entry("settingrestore", "Restore channel settings",
                                    "reload saved channel and bouquet settings", "restoresettings.png"))
            self.list.append(_entry("configrestore", "Restore configurations",
                                    "restore common configurations for GUI, plugins and softcams", "filesys.png"))
            self.list.append(_entry("installlocalplugin", "Install local packages", "from %s/qor-stowline/plugins",
                                    "targz.png"))
            self.list.append(_entry("personalscript", "Run personal script",
                                    "executes your personal backup/restore scripts", "exemanager.png"))
        self["menu"].setList(self.list)

    def runMenuEntry(self, ret=None):
        current = self["menu"].getCurrent()
        if not current:
            return
        key = current[0]
        if key == "path":
            choices = _mountedMedia()
            box = self.session.openWithCallback(
                self.backuprestorepath_choosen, ChoiceBox,
                title=_("Please select medium to use as backup location"), list=choices)  # noqa: F821
            box.setTitle(_("QOR Stowline"))  # noqa: F821
        elif key == "createpluginlist":
            _report(self, self.backupactions.createPluginList(), "List of installed plugins was created succesfully",
                         "Creating list of installed plugins failed")
        elif key == "installpluginlist":
            self.reloadPluginlist = True
            self.restoretype = "plugininstall"
            self.session.open(StowlineRestore, self.restoretype, self.skin_path)
        elif key == "settingbackup":
            _report(self, self.backupactions.createSettingFile(), "Settings backup finished succesfully",
                         "Backup settings failed")
        elif key == "settingrestore":
            self.restoretype = "settingrestore"
            self.session.open(StowlineRestore, self.restoretype, self.skin_path)
        elif key == "installlocalplugin":
            self.restoretype = "installlocalplugin"
            self.ipkg.startCmd(IpkgComponent.CMD_UPDATE)
        elif key == "configbackup":
            _report(self, self.backupactions.createConfigFile(), "Common configuration backup finished succesfully",
                         "Backup of common configurations failed")
        elif key == "configrestore":
            self.restoretype = "configrestore"
            self.session.open(StowlineRestore, self.restoretype, self.skin_path)
        elif key == "personalscript":
            self.restoretype = "personalscript"
            self.session.open(StowlineRestore, self.restoretype, self.skin_path)

    def backuprestorepath_choosen(self, option):
        if option is not None:
            config.plugins.qorpanel.stowline.backuprestorepath.value = str(option[1])
        config.plugins.qorpanel.stowline.backuprestorepath.save()
        config.plugins.qorpanel.stowline.save()
        config.save()
        self.checkFolders()

    def checkFolders(self):
        self.backuprestorepath = getBackupRestorePath()
        if not self.backuprestorepath:
            self.session.open(MessageBox, _(_NOT_WRITEABLE), MessageBox.TYPE_INFO, timeout=10)  # noqa: F821
        self.createMenu()

    def keyCancel(self):
        if self.reloadPluginlist:
            plugins.clearPluginList()
            plugins.readPluginList(resolveFilename(SCOPE_PLUGINS))
        self.close(True)

    def ipkgCallback(self, event, param):
        if event == IpkgComponent.EVENT_ERROR:
            self.setStatus("error")
        elif event == IpkgComponent.EVENT_DONE and self.restoretype == "installlocalplugin":
            self.restoretype = ""
            self.installLocalPlugins()

    def installLocalPlugins(self):
        self.path = getBackupRestorePath()
        if not self.path:
            self.session.open(MessageBox, _(_NOT_WRITEABLE), MessageBox.TYPE_INFO, timeout=10)  # noqa: F821
            return
        self.ipklist = []
        self.pluginsinstalled = []
        self.pluginsinstalledclean = []
        self.pluginsinstalled = _linesOf(popen(_INSTALLED))
        for line in self.pluginsinstalled:
            self.pluginsinstalledclean.append(line.rstrip("\n"))
        self.path = self.path + "/plugins"
        if os_path.exists(self.path):
            for name in listdir(self.path):
                if name.endswith(".ipk"):
                    self.ipklist.append(self.path + "/" + name)
            for package in self.ipklist:
                if package in self.pluginsinstalledclean:
                    _print("[QOR-Stowline] Plugin %s is already installed" % package)
                else:
                    self.cmdList.append((IpkgComponent.CMD_INSTALL, {"package": package}))
            if self.cmdList:
                self.session.open(Ipkg, cmdList=self.cmdList)


class StowlineRestore(Screen):
    def __init__(self, session, restoretype, plugin_path):
        Screen.__init__(self, session)
        self.session = session
        self.skin_path = plugin_path
        self.restoretype = restoretype
        self.title = _("QOR Stowline")  # noqa: F821
        try:
            self["title"] = StaticText(self.title)
        except:  # noqa: E722  every error, as the guards of the module have it
            _print('self["title"] was not found in skin')
        self["key_red"] = StaticText(_("Close"))  # noqa: F821
        self["key_green"] = StaticText(_("Install"))  # noqa: F821
        self["key_yellow"] = StaticText(_("Delete"))  # noqa: F821
        self.sel = []
        self.val = []
        self.entry = False
        self.exe = False
        self.path = ""
        self["actions"] = NumberActionMap(["SetupActions"], {"ok": self.KeyOk, "cancel": self.keyCancel}, -1)
        self["shortcuts"] = ActionMap(["ShortcutActions"], {"red": self.keyCancel, "green": self.KeyOk,
                                                            "yellow": self.deleteFile})
        self.flist = []
        self["filelist"] = MenuList(self.flist)
        self.fill_list()
        self.cmdList = []
        self.Console = ComConsole()
        self.ipkg = IpkgComponent()
        self.ipkg.addCallback(self.ipkgCallback)

    def fill_list(self):
        self.flist = []
        self.path = getBackupRestorePath()
        own = HardwareInfoVu().get_device_name()
        if not self.path:
            return
        for name in listdir(self.path):
            shown = True
            for box in _BOX_TYPES:
                if "_" + box + "." in name:
                    shown = box == own
                    break
            for start, end, restoretype in (("pluginlist", ".lst", "plugininstall"),
                                            ("settings", ".tar.gz", "settingrestore"),
                                            ("configuration", ".tar.gz", "configrestore"),
                                            ("backup", ".sh", "personalscript"),
                                            ("restore", ".sh", "personalscript")):
                if name.startswith(start) and name.endswith(end) and self.restoretype == restoretype and shown:
                    self.flist.append(name)
                    self.entry = True
                    if restoretype == "personalscript":
                        self["key_green"] = StaticText(_("Start"))  # noqa: F821
        self.flist.sort(reverse=True)
        self["filelist"].l.setList(self.flist)

    def KeyOk(self):
        if _select(self):
            if os_path.exists(self.val):
                f_size = os_stat(self.val).st_size
                if self.restoretype == "plugininstall":
                    self.ipkg.startCmd(IpkgComponent.CMD_UPDATE)
                elif self.restoretype == "settingrestore":
                    if f_size >= 10000:
                        if self.restoreSettings() == True:  # noqa: E712
                            self.session.openWithCallback(
                                self.keyCancel, MessageBox, _("Restoring settings finished successfully"),  # noqa: F821
                                MessageBox.TYPE_INFO, timeout=10)
                        else:
                            self.session.open(MessageBox, _("Restoring settings failed"),  # noqa: F821
                                              MessageBox.TYPE_ERROR, timeout=10)
                elif self.restoretype == "configrestore":
                    if f_size >= 10000:
                        self.session.open(StowlineHelpScreen, self.sel, self.val)
                elif self.restoretype == "personalscript":
                    box = self.session.openWithCallback(
                        self.runScript, MessageBox,
                        _("Are you sure you want to run\nfollowing script:\n") + self.sel)  # noqa: F821
                    box.setTitle(_("QOR Stowline"))  # noqa: F821

    def restoreSettings(self):
        for pattern in _CHANNEL_FILES:
            system("rm -f %s" % pattern)
        system("tar xzf %s -C /" % self.val)
        try:
            nimmanager.readTransponders()
            eDVBDB.getInstance().reloadServicelist()
            eDVBDB.getInstance().reloadBouquets()
            if InfoBar.instance:
                servicelist = InfoBar.instance.servicelist
                root = servicelist.getRoot()
                currentref = servicelist.getCurrentSelection()
                servicelist.setRoot(root)
                servicelist.setCurrentSelection(currentref)
        except:  # noqa: E722  every error, as the guards of the module have it
            return False
        return True

    def startRestore(self, ret=False):
        if ret == True and self.sel and self.path:  # noqa: E712
            self.exe = True
            self.session.open(Console, title=_("Restore running"),  # noqa: F821
                              cmdlist=["tar -xzf " + self.path + "/" + self.sel + " -C /", "killall -9 enigma2"])

    def runScript(self, ret=False):
        if ret == True and self.sel and self.path:  # noqa: E712
            chmod(self.val, 0o755)
            self.cmdlist = [self.path + "/./" + self.sel]
            self.session.openWithCallback(self.keyCancel, Console,
                                          title=_("QOR Stowline is running personal script ..."),  # noqa: F821
                                          cmdlist=self.cmdlist)

    def deleteFile(self):
        if _select(self):
            self.session.openWithCallback(
                self.startDelete, MessageBox,
                _("Are you sure you want to delete\nfollowing backup:\n" + self.sel))  # noqa: F821

    def startDelete(self, ret=False):
        if ret == True and self.val:  # noqa: E712
            self.exe = True
            if os_path.exists(self.val):
                remove(self.val)
            self.exe = False
            self.fill_list()

    def keyCancel(self, ret=False):
        self.close()

    def ipkgCallback(self, event, param):
        if event == IpkgComponent.EVENT_ERROR:
            self.setStatus("error")
        elif event == IpkgComponent.EVENT_DONE and self.restoretype == "plugininstall":
            self.restoretype = ""
            self.installPlugins()

    def installPlugins(self):
        listfile = self.val
        self.plugins = []
        self.cmdList = []
        self.pluginsinstalled = []
        self.pluginsinstalledclean = []
        self.pluginsinstalled = _linesOf(popen(_INSTALLED))
        for line in self.pluginsinstalled:
            self.pluginsinstalledclean.append(line.rstrip("\n"))
        self.plugins = _linesOf(popen("cat %s" % listfile))
        self.excludedplugins = ["enigma2-plugin-extensions-webbrowser", "enigma2-plugin-systemplugins-factorytest",
                                "enigma2-plugin-extensions-webinterface", "enigma2-plugin-extensions-xbmc"]
        for line in self.plugins:
            package = line.rstrip("\n")
            if package in self.pluginsinstalledclean:
                _print("[QOR-Stowline] Plugin %s is already installed" % package)
            elif package.startswith("enigma2-plugin-settings") or package in self.excludedplugins:
                _print("[QOR-Stowline] do not restore excluded package: %s" % package)
            else:
                self.cmdList.append((IpkgComponent.CMD_INSTALL, {"package": package}))
        self.session.openWithCallback(self.keyCancel, Ipkg, cmdList=self.cmdList)
