"""A framework whose own work is next to nothing, so that what is measured is the module's."""

import os
import sys
import types

try:
    import builtins
except ImportError:
    import __builtin__ as builtins


class Component(object):
    def __init__(self, *args):
        self.content = args[0] if args else None

    def setText(self, text):
        self.content = text

    def setList(self, entries):
        self.content = entries

    def getCurrent(self):
        return self.content[0] if self.content else None


class MenuList(Component):
    @property
    def l(self):
        return self


class IpkgComponent(object):
    CMD_INSTALL, CMD_UPDATE, EVENT_DONE, EVENT_ERROR = range(4)

    def addCallback(self, callback):
        self.callback = callback


class Screen(dict):
    def __init__(self, session):
        self.onLayoutFinish = []

    def close(self, *result):
        self.clear()
        self.__dict__.clear()


class Lines(object):
    """A file object."""

    def __init__(self, lines):
        self.lines = list(lines)

    def readlines(self):
        return self.lines

    def close(self):
        pass


class Log(object):
    """A standard output that nobody reads."""

    def write(self, text):
        pass


class Session(object):
    def openWithCallback(self, callback, screen, **arguments):
        pass


class Subsection(object):
    def save(self):
        pass


class Text(object):
    def __init__(self, default, visible_width, fixed_size):
        self.value = default


class Registry(object):
    def clearPluginList(self):
        pass

    def readPluginList(self, directory):
        pass


class HardwareInfoVu(object):
    def get_device_name(self):
        return "solo2"


def resolveFilename(scope, base=""):
    return "/usr/lib/enigma2/python/Plugins/" + base


def LoadPixmap(path, cached):
    return path


config = Subsection()
config.plugins = Subsection()
config.plugins.qorpanel = Subsection()

UNITS = {
    "Components.Label": {"Label": Component},
    "Components.ActionMap": {"ActionMap": Component, "NumberActionMap": Component},
    "Components.GUIComponent": {"GUIComponent": object},
    "Components.config": {"config": config, "getConfigListEntry": object,
                          "ConfigSubsection": Subsection, "ConfigSelection": object,
                          "ConfigText": Text, "ConfigLocations": object},
    "Components.Sources.StaticText": {"StaticText": Component},
    "Components.Pixmap": {"Pixmap": object},
    "Components.MenuList": {"MenuList": MenuList},
    "Components.Harddisk": {"harddiskmanager": object},
    "Components.Console": {"Console": Component},
    "Components.Ipkg": {"IpkgComponent": IpkgComponent},
    "Components.Sources.List": {"List": Component},
    "Components.PluginComponent": {"plugins": Registry()},
    "Screens.Screen": {"Screen": Screen},
    "Screens.Console": {"Console": object},
    "Screens.MessageBox": {"MessageBox": object},
    "Screens.ChoiceBox": {"ChoiceBox": object},
    "Screens.Ipkg": {"Ipkg": object},
    "Tools.LoadPixmap": {"LoadPixmap": LoadPixmap},
    "Tools.Directories": {"resolveFilename": resolveFilename, "SCOPE_PLUGINS": 1,
                          "fileExists": os.path.exists},
    "Tools.HardwareInfoVu": {"HardwareInfoVu": HardwareInfoVu},
    "enigma": {"eServiceReference": object, "eServiceCenter": object, "eDVBDB": object},
    "ServiceReference": {"ServiceReference": object},
    "Screens.InfoBar": {"InfoBar": object},
    "Components.NimManager": {"nimmanager": object},
    "skin": {"loadSkin": object},
}


def install():
    """Puts the units where an import finds them."""
    builtins._ = lambda text: text
    for name in UNITS:
        for end in range(len(name) + 1):
            if end == len(name) or name[end] == ".":
                sys.modules.setdefault(name[:end], types.ModuleType(name[:end]))
        sys.modules[name].__dict__.update(UNITS[name])
