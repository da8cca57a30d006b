#!/usr/bin/env python3
"""Makes what a receiver tree is laid out with: an archive for each of the receiver's states.

    archives.py SKELETON DIRECTORY    makes factory.tar.gz, used.tar.gz and media.tar.gz in DIRECTORY

An archive holds the state's folder of SKELETON, and what is made here: channel lists, packages, pictures, and what
no folder under version control can hold. Equal input gives equal archives.
"""

import gzip
import io
import os
import pathlib
import sys
import tarfile
from typing import NamedTuple

import channels
from pictures import AMBER, GREY, colour_of, disc, spinner, stills

PLUGINS = "usr/lib/enigma2/python/Plugins/"
PANEL = PLUGINS + "SystemPlugins/QORPanel/pictures/"
SKINS = "usr/share/enigma2/"
ATILE = SKINS + "AtileHD/"


class Package(NamedTuple):
    name: str
    version: str
    description: str
    files: tuple = ()
    depends: str = ""


def plugin(folder, version, description, files=(), depends="enigma2"):
    """A package that brings a plugin of the GUI, and is named after its folder."""
    name = "enigma2-plugin-" + folder.replace("/", "-").lower()
    own = tuple(PLUGINS + folder + file for file in ("/__init__.py", "/plugin.py", "/plugin.png"))
    return Package(name, version, description, own + files, depends)


IMAGE = (
    Package("enigma2", "3.4-r2", "Television GUI",
            (SKINS + "skin_default/skin_display.xml", SKINS + "skin_default/skin.xml")),
    plugin("SystemPlugins/QORPanel", "1.3-r0", "Control panel of the image",
           (PANEL + "backuplocation.png", PANEL + "services.png", PANEL + "restoresettings.png", PANEL + "filesys.png",
            PANEL + "targz.png", PANEL + "exemanager.png", PANEL + "button_red.png", PANEL + "button_green.png")),
    Package("qor-image-base", "1.3-r0", "Base files of the image", ("etc/image-version",)),
)

# In the feed, and installed by the user.
INSTALLED = (
    plugin("Extensions/EnigmaLight", "0.9-r1", "Coloured light behind the screen",
           depends="enigma2, libambient1 (>= 1.0)"),
    plugin("Extensions/Foreca", "2.8-r0", "Weather forecast"),
    plugin("Extensions/HbbTV", "1.1-r4", "Pages of the broadcasters"),
    plugin("Extensions/MultiQuickButton", "2.7-r3", "Functions for the buttons of the remote control"),
    plugin("Extensions/SHOUTcast", "1.5-r0", "Internet radio by genre"),
    plugin("Extensions/WebInterface", "1.7-r2", "Remote control for a browser"),
    plugin("Extensions/webradioFS", "12.0-r1", "Internet radio with a screen saver"),
    Package("enigma2-plugin-settings-meridian", "20240211-r0", "Channel lists for the Meridian satellites",
            ("usr/share/meridian-settings/README.txt",)),
    Package("enigma2-plugin-skin-atile", "3.2-r0", "Tiled skin in many colours",
            (ATILE + "skin.xml", ATILE + "colors_atile_Blue.xml", ATILE + "colors_atile_Graphite.xml",
             ATILE + "font_atile_Roboto.xml", ATILE + "allScreens/skin_infobar_Clock.xml",
             ATILE + "allScreens/skin_infobar_Weather.xml", ATILE + "preview/preview_infobar_Clock.png",
             ATILE + "preview/preview_infobar_Weather.png"), depends="enigma2"),
    plugin("SystemPlugins/CrashReport", "0.4-r0", "Sends crash reports"),
    plugin("SystemPlugins/PiPServiceRelation", "1.0-r1", "Fixed partners for picture in picture"),
    plugin("SystemPlugins/VFDSkinSelector", "1.2-r0", "Skins for the front display",
           (SKINS + "vfd_skin/skin_vfd_Big.xml", SKINS + "vfd_skin/skin_vfd_ClockOnly.xml")),
    Package("libambient1", "1.0-r0", "Mean colours of a picture", ("usr/lib/libambient.so.1",)),
)

# In the feed only.
OFFERED = (
    plugin("Extensions/EPGNotes", "0.3-r0", "Notes on broadcasts"),
    plugin("Extensions/TeletextPlus", "0.2-r0", "Teletext with pictures; its library is not in the feed",
           depends="enigma2, libteletext2 (>= 2.0)"),
    plugin("Extensions/WebBrowser", "4.1-r0", "Web browser"),
    plugin("Extensions/XBMC", "0.8-r0", "Media centre"),
    plugin("SystemPlugins/FactoryTest", "1.0-r0", "Test of the receiver's parts"),
)

# Kept by the user on the hard disk.
LOCAL = (
    plugin("Extensions/HallClock", "0.7-r0", "A clock that can be read from the hall"),
    plugin("SystemPlugins/RemoteNotes", "1.0-r0", "Names for the buttons of the remote control"),
)


class Entry(NamedTuple):
    """What an archive holds at a path other than a plain file that nobody executes."""
    content: bytes = b""
    mode: int = 0o755
    type: bytes = tarfile.REGTYPE
    target: str = ""


DIRECTORY = Entry(type=tarfile.DIRTYPE)


def plain(content):
    return Entry(content.encode() if isinstance(content, str) else content, 0o644)


def pack(contents):
    """Returns a tar archive, compressed by gzip, of the contents by path: entries, or the texts or bytes of files."""
    archive = io.BytesIO()
    with tarfile.open(fileobj=archive, mode="w", format=tarfile.USTAR_FORMAT) as tar:
        for path, content in contents.items():
            entry = content if isinstance(content, Entry) else plain(content)
            member = tarfile.TarInfo(path)
            member.size, member.mode, member.type, member.linkname = len(entry.content), *entry[1:]
            member.uname = member.gname = "root"
            tar.addfile(member, io.BytesIO(entry.content))
    return gzip.compress(archive.getvalue(), mtime=0)


def source(package):
    return ('# {0}\nfrom Plugins.Plugin import PluginDescriptor\n\n\n'
            'def main(session, **kwargs):\n\tprint("{0}")\n\n\n'
            'def Plugins(**kwargs):\n\treturn [PluginDescriptor(name="{0}", '
            'where=PluginDescriptor.WHERE_PLUGINMENU, fnc=main)]\n').format(package.description)


def content(path, package):
    if path.endswith(".png"):
        return disc(24, colour_of(path))
    if path.endswith("/plugin.py"):
        return source(package)
    if path.endswith("/__init__.py"):
        return ""
    if path.endswith(".xml"):
        return "<skin>\n\t<!-- %s of %s %s -->\n</skin>\n" % (path.rpartition("/")[2], package.name, package.version)
    return "%s %s: %s\n" % (package.name, package.version, package.description)


def data(package):
    return {path: content(path, package) for path in package.files}


def control(package):
    depends = "Depends: %s\n" % package.depends if package.depends else ""
    return ("Package: %s\nVersion: %s\n%sArchitecture: all\nMaintainer: Qor feed\nSection: base\nDescription: %s\n"
            % (package.name, package.version, depends, package.description))


def file_name(package):
    return "%s_%s_all.ipk" % (package.name, package.version)


def package_files(folder, packages):
    return {folder + file_name(package): pack({"debian-binary": "2.0\n",
                                               "control.tar.gz": pack({"control": control(package)}),
                                               "data.tar.gz": pack(data(package))})
            for package in packages}


def feed(packages):
    """What the receiver's package manager installs from: the packages and their index."""
    index = "".join("%sFilename: %s\n\n" % (control(package), file_name(package)) for package in packages)
    return package_files("srv/feed/", packages) | {"srv/feed/Packages.gz": gzip.compress(index.encode(), mtime=0)}


def installed(packages):
    """The packages' files, and the package manager's records of each package."""
    contents = {}
    for package in packages:
        record = "var/lib/opkg/info/" + package.name
        contents |= data(package)
        contents[record + ".control"] = control(package)
        contents[record + ".list"] = "".join("/%s\n" % path for path in package.files)
    return contents


def status(packages):
    """The package manager's record of all that is installed."""
    return {"var/lib/opkg/status": "".join(control(package) + "Status: install user installed\n\n"
                                           for package in packages)}


def factory():
    """A receiver right after a flash, but for its model, tools and media."""
    return {**dict.fromkeys(("home/root", "sys", "tmp", "var/lib/opkg/lists", "var/log"), DIRECTORY),
            "dev/null": "",  # nobody but root could make the device
            "etc/resolv.conf": Entry(type=tarfile.SYMTYPE, target="/var/run/resolv.conf"),
            **channels.factory(), **installed(IMAGE), **status(IMAGE), **feed(INSTALLED + OFFERED),
            **spinner(4, GREY), **stills(10)}


def used():
    """What a user has set up and installed since."""
    return {**channels.used(), **installed(INSTALLED), **status(IMAGE + INSTALLED), **spinner(7, AMBER), **stills(20),
            ATILE + "preview/preview_infobar_Mine.png": disc(24, AMBER)}


def media():
    """The media, with what the user keeps on the hard disk."""
    return {**dict.fromkeys(("media/usb", "media/net/autofs/nas"), DIRECTORY),
            # A share that cannot be read, not even by root: a plain file in the place of its directory.
            "media/net/autonet/attic": "",
            **package_files("media/hdd/qor-stowline/plugins/", LOCAL)}


def skeleton(folder):
    files = [file for file in folder.rglob("*") if file.is_file()]
    return {str(file.relative_to(folder)): Entry(file.read_bytes(), 0o755 if os.access(file, os.X_OK) else 0o644)
            for file in files}


def with_directories(contents):
    """Adds the directories of the paths, each before what lies in it: their modes too are to be the same everywhere."""
    parents = {str(parent) for path in contents for parent in pathlib.PurePath(path).parents[:-1]}
    return dict(sorted((dict.fromkeys(parents, DIRECTORY) | contents).items()))


def main(folder, directory):
    for state in factory, used, media:
        name = state.__name__
        contents = state() | skeleton(pathlib.Path(folder, name))
        pathlib.Path(directory, name + ".tar.gz").write_bytes(pack(with_directories(contents)))


if __name__ == "__main__":
    main(*sys.argv[1:])
