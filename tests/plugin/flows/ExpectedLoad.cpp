#include "tests/plugin/flows/Expected.h"

namespace stowline::expected {

std::string loaded() {
  return block(R"(
from Components.Label import Label
from Components.ActionMap import ActionMap
from Components.ActionMap import NumberActionMap
from Components.GUIComponent import GUIComponent
from Components.config import config
from Components.config import getConfigListEntry
from Components.config import ConfigSubsection
from Components.config import ConfigSelection
from Components.config import ConfigText
from Components.config import ConfigLocations
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
from time import localtime
from time import mktime
from time import time
from enigma import eServiceReference
from enigma import eServiceCenter
from enigma import eDVBDB
from ServiceReference import ServiceReference
from Screens.InfoBar import InfoBar
from Components.NimManager import nimmanager
from skin import loadSkin
from os import system
from os import listdir
from os import symlink
from os import unlink
from os import readlink
from os import path as os_path
from os import stat
from os import mkdir
from os import popen
from os import makedirs
from os import access
from os import rename
from os import remove
from os import W_OK
from os import R_OK
from os import F_OK
from os import chmod
from os import walk
from os import getcwd
from os import chdir
from os import stat as os_stat
from builtins import open
from builtins import OSError
config.plugins.qorpanel.stowline = ConfigSubsection()
config.plugins.qorpanel.stowline.backuprestorepath = ConfigText(default="/media/hdd/", visible_width=50, fixed_size=False)
)");
}

}  // namespace stowline::expected
