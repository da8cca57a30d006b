#include "desk/tree/Packages.h"

#include <algorithm>
#include <iterator>

#include "desk/tree/Pictures.h"

namespace desk {
namespace {

enum class Origin {
  kImage,      // comes with the image
  kInstalled,  // in the feed, and installed by the user
  kFeed,       // in the feed only
  kMedium,     // kept by the user on the medium
};

struct Package {
  Origin origin;
  const char* name;
  const char* version;
  const char* depends;
  const char* description;
  const char* folder;  // where its plugin lies; none when it brings other files only
};

#define EXTENSIONS "usr/lib/enigma2/python/Plugins/Extensions/"
#define SYSTEM "usr/lib/enigma2/python/Plugins/SystemPlugins/"

constexpr Package kPackages[] = {
    {Origin::kImage, "enigma2", "3.4-r2", "", "Television GUI", nullptr},
    {Origin::kImage, "enigma2-plugin-systemplugins-qorpanel", "1.3-r0", "enigma2",
     "Control panel of the image", SYSTEM "QORPanel"},
    {Origin::kImage, "qor-image-base", "1.3-r0", "", "Base files of the image", nullptr},

    {Origin::kInstalled, "enigma2-plugin-extensions-enigmalight", "0.9-r1",
     "enigma2, libambient1 (>= 1.0)", "Coloured light behind the screen", EXTENSIONS "EnigmaLight"},
    {Origin::kInstalled, "enigma2-plugin-extensions-foreca", "2.8-r0", "enigma2",
     "Weather forecast", EXTENSIONS "Foreca"},
    {Origin::kInstalled, "enigma2-plugin-extensions-hbbtv", "1.1-r4", "enigma2",
     "Pages of the broadcasters", EXTENSIONS "HbbTV"},
    {Origin::kInstalled, "enigma2-plugin-extensions-multiquickbutton", "2.7-r3", "enigma2",
     "Functions for the buttons of the remote control", EXTENSIONS "MultiQuickButton"},
    {Origin::kInstalled, "enigma2-plugin-extensions-shoutcast", "1.5-r0", "enigma2",
     "Internet radio by genre", EXTENSIONS "SHOUTcast"},
    {Origin::kInstalled, "enigma2-plugin-extensions-webinterface", "1.7-r2", "enigma2",
     "Remote control for a browser", EXTENSIONS "WebInterface"},
    {Origin::kInstalled, "enigma2-plugin-extensions-webradiofs", "12.0-r1", "enigma2",
     "Internet radio with a screen saver", EXTENSIONS "webradioFS"},
    {Origin::kInstalled, "enigma2-plugin-settings-meridian", "20240211-r0", "",
     "Channel lists for the Meridian satellites", nullptr},
    {Origin::kInstalled, "enigma2-plugin-skin-atile", "3.2-r0", "enigma2",
     "Tiled skin in many colours", nullptr},
    {Origin::kInstalled, "enigma2-plugin-systemplugins-crashreport", "0.4-r0", "enigma2",
     "Sends crash reports", SYSTEM "CrashReport"},
    {Origin::kInstalled, "enigma2-plugin-systemplugins-pipservicerelation", "1.0-r1", "enigma2",
     "Fixed partners for picture in picture", SYSTEM "PiPServiceRelation"},
    {Origin::kInstalled, "enigma2-plugin-systemplugins-vfdskinselector", "1.2-r0", "enigma2",
     "Skins for the front display", SYSTEM "VFDSkinSelector"},
    {Origin::kInstalled, "libambient1", "1.0-r0", "", "Mean colours of a picture", nullptr},

    {Origin::kFeed, "enigma2-plugin-extensions-epgnotes", "0.3-r0", "enigma2",
     "Notes on broadcasts", EXTENSIONS "EPGNotes"},
    {Origin::kFeed, "enigma2-plugin-extensions-teletextplus", "0.2-r0",
     "enigma2, libteletext2 (>= 2.0)", "Teletext with pictures; its library is not in the feed",
     EXTENSIONS "TeletextPlus"},
    {Origin::kFeed, "enigma2-plugin-extensions-webbrowser", "4.1-r0", "enigma2", "Web browser",
     EXTENSIONS "WebBrowser"},
    {Origin::kFeed, "enigma2-plugin-extensions-xbmc", "0.8-r0", "enigma2", "Media centre",
     EXTENSIONS "XBMC"},
    {Origin::kFeed, "enigma2-plugin-systemplugins-factorytest", "1.0-r0", "enigma2",
     "Test of the receiver's parts", SYSTEM "FactoryTest"},

    {Origin::kMedium, "enigma2-plugin-extensions-hallclock", "0.7-r0", "enigma2",
     "A clock that can be read from the hall", EXTENSIONS "HallClock"},
    {Origin::kMedium, "enigma2-plugin-systemplugins-remotenotes", "1.0-r0", "enigma2",
     "Names for the buttons of the remote control", SYSTEM "RemoteNotes"},
};

/// The files that a package brings besides a plugin.
constexpr struct {
  const char* package;
  const char* path;
} kFiles[] = {
    {"enigma2", "usr/share/enigma2/skin_default/skin_display.xml"},
    {"enigma2", "usr/share/enigma2/skin_default/skin.xml"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/backuplocation.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/services.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/restoresettings.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/filesys.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/targz.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/exemanager.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/button_red.png"},
    {"enigma2-plugin-systemplugins-qorpanel", SYSTEM "QORPanel/pictures/button_green.png"},
    {"qor-image-base", "etc/image-version"},
    {"enigma2-plugin-settings-meridian", "usr/share/meridian-settings/README.txt"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/skin.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/colors_atile_Blue.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/colors_atile_Graphite.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/font_atile_Roboto.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/allScreens/skin_infobar_Clock.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/allScreens/skin_infobar_Weather.xml"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/preview/preview_infobar_Clock.png"},
    {"enigma2-plugin-skin-atile", "usr/share/enigma2/AtileHD/preview/preview_infobar_Weather.png"},
    {"enigma2-plugin-systemplugins-vfdskinselector", "usr/share/enigma2/vfd_skin/skin_vfd_Big.xml"},
    {"enigma2-plugin-systemplugins-vfdskinselector",
     "usr/share/enigma2/vfd_skin/skin_vfd_ClockOnly.xml"},
    {"libambient1", "usr/lib/libambient.so.1"},
};

std::string fileName(const Package& package) {
  return std::string(package.name) + "_" + package.version + "_all.ipk";
}

std::string pluginSource(const Package& package) {
  const std::string text = package.description;
  return "# " + text + "\nfrom Plugins.Plugin import PluginDescriptor\n\n\n" +
         "def main(session, **kwargs):\n\tprint(\"" + text + "\")\n\n\n" +
         "def Plugins(**kwargs):\n\treturn [PluginDescriptor(name=\"" + text +
         "\", where=PluginDescriptor.WHERE_PLUGINMENU, fnc=main)]\n";
}

constexpr Rgb kRed = 0xc02020;
constexpr Rgb kGreen = 0x20a020;

/// Returns the colour that the name of a button's picture says, any for other pictures.
Rgb colourOf(const std::string& path) {
  if (path.ends_with("button_red.png")) return kRed;
  if (path.ends_with("button_green.png")) return kGreen;
  Rgb colour = 0;
  for (const char c : path) colour = colour * 31 + static_cast<unsigned char>(c);
  return colour & 0xffffff;
}

std::string contentOf(const std::string& path, const Package& package) {
  if (path.ends_with(".png")) return disc(24, colourOf(path));
  if (path.ends_with("/plugin.py")) return pluginSource(package);
  if (path.ends_with("/__init__.py")) return "";
  if (path.ends_with(".xml"))
    return "<skin>\n\t<!-- " + path.substr(path.rfind('/') + 1) + " of " + package.name + " " +
           package.version + " -->\n</skin>\n";
  return std::string(package.name) + " " + package.version + ": " + package.description + "\n";
}

std::vector<std::string> pathsOf(const Package& package) {
  std::vector<std::string> paths;
  if (package.folder)
    for (const char* name : {"/__init__.py", "/plugin.py", "/plugin.png"})
      paths.push_back(std::string(package.folder) + name);
  for (const auto& file : kFiles)
    if (file.package == std::string(package.name)) paths.emplace_back(file.path);
  return paths;
}

Files dataOf(const Package& package) {
  Files files;
  for (const std::string& path : pathsOf(package))
    files.push_back({path, contentOf(path, package)});
  return files;
}

std::string control(const Package& package) {
  std::string text = "Package: " + std::string(package.name) + "\nVersion: " + package.version;
  if (*package.depends) text += "\nDepends: " + std::string(package.depends);
  return text + "\nArchitecture: all\nMaintainer: Qor feed\nSection: base\nDescription: " +
         package.description + "\n";
}

std::string ipk(const Package& package) {
  return pack({{"debian-binary", "2.0\n"},
               {"control.tar.gz", pack({{"control", control(package)}})},
               {"data.tar.gz", pack(dataOf(package))}});
}

/// What the package manager's status file says about an installed package.
std::string status(const Package& package) {
  return control(package) + "Status: install user installed\n\n";
}

std::string fileList(const Package& package) {
  std::string text;
  for (const std::string& path : pathsOf(package)) text += "/" + path + "\n";
  return text;
}

/// The package's files as they are once it is installed, and the records of it.
Files installed(const Package& package) {
  const std::string record = "var/lib/opkg/info/" + std::string(package.name);
  Files files = dataOf(package);
  files.push_back({record + ".control", control(package)});
  files.push_back({record + ".list", fileList(package)});
  return files;
}

void append(Files& files, Files more) {
  std::ranges::move(more, std::back_inserter(files));
}

}  // namespace

Files feed() {
  Files files;
  std::string index;
  for (const Package& package : kPackages) {
    if (package.origin != Origin::kInstalled && package.origin != Origin::kFeed) continue;
    files.push_back({"srv/feed/" + fileName(package), ipk(package)});
    index += control(package) + "Filename: " + fileName(package) + "\n\n";
  }
  files.push_back({"srv/feed/Packages.gz", gzip(index)});
  return files;
}

Files imagePackages() {
  Files files;
  std::string statuses;
  for (const Package& package : kPackages) {
    if (package.origin != Origin::kImage) continue;
    append(files, installed(package));
    statuses += status(package);
  }
  files.push_back({"var/lib/opkg/status", statuses});
  return files;
}

Files usedPackages() {
  Files files;
  std::string statuses;
  for (const Package& package : kPackages) {
    if (package.origin == Origin::kInstalled) append(files, installed(package));
    if (package.origin == Origin::kInstalled || package.origin == Origin::kImage)
      statuses += status(package);
  }
  files.push_back({"var/lib/opkg/status", statuses});
  return files;
}

Files localPackages() {
  Files files;
  for (const Package& package : kPackages)
    if (package.origin == Origin::kMedium)
      files.push_back({"media/hdd/qor-stowline/plugins/" + fileName(package), ipk(package)});
  return files;
}

}  // namespace desk
