#include "plugin/src/StowlineHelpScreen.h"

#include <string>
#include <vector>

#include "plugin/src/Framework.h"
#include "plugin/src/Places.h"

namespace stowline {
namespace {

/// A file that a restore keeps as the receiver has it: what saves it before and what puts it back
/// afterwards.
struct KeptFile {
  Text file;
  Text save;
  Text put_back;
};

constexpr KeptFile kSamba = {
    "/etc/samba/smb.conf"_t, "cat /etc/samba/smb.conf > /etc/samba/smb_backup"_t,
    "cat /etc/samba/smb_backup > /etc/samba/smb.conf ; rm /etc/samba/smb_backup"_t};

/// The third row removes the backup of passwd once more and leaves that of shadow: the commands
/// stay as every restore so far has run them.
constexpr KeptFile kSystemFiles[] = {
    {"/etc/fstab"_t, "cat /etc/fstab > /etc/fstab_backup"_t,
     "cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup"_t},
    {"/etc/passwd"_t, "cat /etc/passwd > /etc/passwd_backup"_t,
     "cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup"_t},
    {"/etc/shadow"_t, "cat /etc/shadow > /etc/shadow_backup"_t,
     "cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup"_t},
};

/// Is made not executable where the system files are kept.
constexpr Text kAutoNetwork = "/etc/auto.network"_t;

/// The spinner's pictures are moved aside, so that the archive cannot replace them ...
constexpr Text kMoveSpinnerAside[] = {
    "mkdir -p /usr/share/enigma2/skin_default/spinner/tmp"_t,
    "mv /usr/share/enigma2/skin_default/spinner/*.png "
    "/usr/share/enigma2/skin_default/spinner/tmp"_t,
};

/// Writes what is unpacked to the disk. The spinner's pictures come back if the archive brought
/// none.
constexpr Text kTidyUp[] = {
    "echo \"[Qor Stowline] syncing ...\" ;  /bin/sync ; sleep 1"_t,
    "if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  "
    "mv /usr/share/enigma2/skin_default/spinner/tmp/*.png "
    "/usr/share/enigma2/skin_default/spinner ; fi ; "
    "rm -rf /usr/share/enigma2/skin_default/spinner/tmp"_t,
};

/// A plain resolver file becomes a link again.
constexpr Text kLinkResolver =
    "if [ ! -L \"/etc/resolv.conf\" ] ; then rm /var/run/resolv.conf ; "
    "mv /etc/resolv.conf /var/run/resolv.conf ; "
    "ln -s /var/run/resolv.conf /etc/resolv.conf ; fi"_t;

constexpr Text kFullScreenVideo[] = {
    "echo 00000000 > /proc/stb/vmpeg/0/dst_height"_t,
    "echo 00000000 > /proc/stb/vmpeg/0/dst_left"_t,
    "echo 00000000 > /proc/stb/vmpeg/0/dst_top"_t,
    "echo 00000000 > /proc/stb/vmpeg/0/dst_width"_t,
};

constexpr Text kRestartAll =
    "/etc/init.d/networking stop ; /etc/init.d/networking start ; "
    "/etc/init.d/current_cam.sh start ; killall -9 enigma2"_t;

/// The ranks of the configuration trees that an archive may come from.
enum ConfVer { UNKNOWN_TREE = 0, QOR_OE_16 = 16, QOR_OE_21 = 21, QOR_OE_30 = 30, QOR_13 = 40 };

struct VersionTag {
  Text tag;
  ConfVer conf_ver;
};

constexpr VersionTag kVersionTags[] = {
    {"configuration_ver_a"_t, QOR_OE_21},
    {"configuration_ver_b"_t, QOR_OE_30},
    {"configuration_ver_c"_t, QOR_13},
};

/// Returns the rank of the first tag found anywhere in `path`, directories included.
ConfVer confVerOf(const Object& path) {
  for (const VersionTag& known : kVersionTags) {
    if (Object(known.tag).isIn(path)) return known.conf_ver;
  }
  return UNKNOWN_TREE;
}

bool keepsSystemFiles(ConfVer conf_ver) {
  return conf_ver < QOR_OE_30;
}

bool keepsSamba(const Module& module, ConfVer conf_ver) {
  return conf_ver != QOR_13 && exists(module, kSamba.file);
}

using Commands = std::vector<Object>;

template <class Table>
void append(Commands& cmdlist, const Table& commands) {
  cmdlist.insert(cmdlist.end(), std::begin(commands), std::end(commands));
}

Object unpack(const Object& archive) {
  return "tar -xzf %s -C /"_t % archive;
}

constexpr const char* kSkin = R"(
	<screen name="StowlineHelpScreen" position="center,center" size="650,250">
		<widget name="messagetext" position="10,10" size="630,210" font="Regular;20" halign="center" valign="center" transparent="1" />
		<widget source="key_red" render="Label" position="40,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<widget source="key_green" render="Label" position="225,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_red.png" position="10,220" size="25,25" alphatest="on" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_green.png" position="195,220" size="25,25" alphatest="on" />
	</screen>)";

Object construct(const Call& call) {
  const auto& [module, self, given] = call;
  module["Screen"_t]["__init__"_t]({self, given[0]});
  self["session"_t] = given[0];
  self["restorefile"_t] = given[1];
  self["fullrestorepath"_t] = given[2];
  // The one text that is not translated: it is a name.
  self["title"_t] = "Qor Stowline"_t;
  addTitle(call);
  self.setItem("messagetext"_t, module["Label"_t]({""_t}));
  addLabel(call, "key_red"_t, "Exit"_t);
  addLabel(call, "key_green"_t, "Ok"_t);
  addKeys(call, "shortcuts"_t, "ActionMap"_t, {"OkCancelActions"_t, "ColorActions"_t},
          {{"red"_t, "keyClose"_t},
           {"green"_t, "keyGo"_t},
           {"ok"_t, "keyGo"_t},
           {"cancel"_t, "keyClose"_t}},
          -2);
  self["onLayoutFinish"_t]["append"_t]({self["createMessage"_t]});
  return {};
}

Object createMessage(const Call& call) {
  const auto& [module, self, given] = call;
  const Object setText = self.item("messagetext"_t).get("setText"_t);
  Object message = translated(module, "Are you sure you want to restore\nfollowing backup:\n"_t);
  message = message + self["restorefile"_t] + "\n\n"_t;
  setText({message + translated(module, "\nSystem will restart after the restore!"_t)});
  return {};
}

/// Both tests for the samba configuration look for the file, none for its backup: they are made
/// before any command runs.
Object keyGo(const Call& call) {
  const auto& [module, self, given] = call;
  const ConfVer conf_ver = confVerOf(self["fullrestorepath"_t]);
  Commands cmdlist;
  if (keepsSystemFiles(conf_ver)) {
    print(module, "[Qor Stowline] do not restore old OE tree configuration files"_t);
    for (const KeptFile& kept : kSystemFiles) cmdlist.push_back(kept.save);
  }
  if (keepsSamba(module, conf_ver)) {
    print(module, "[Qor Stowline] do not restore old samba configuration"_t);
    cmdlist.push_back(kSamba.save);
  }
  append(cmdlist, kMoveSpinnerAside);
  cmdlist.push_back("/etc/init.d/current_cam.sh stop ; "_t + unpack(self["fullrestorepath"_t]));
  for (const char* suffix : kCompanions) {
    const Object companion = self.get("fullrestorepath"_t) + std::string_view(suffix);
    if (fileExists(module, companion)) cmdlist.push_back(unpack(companion));
  }
  append(cmdlist, kTidyUp);
  cmdlist.push_back(std::string("rm -rf ") + kRemovedAfterRestore);
  cmdlist.push_back(kLinkResolver);
  if (keepsSamba(module, conf_ver)) {
    print(module, "[Qor Stowline] restore installed smb.conf"_t);
    cmdlist.push_back(kSamba.put_back);
  }
  if (keepsSystemFiles(conf_ver)) {
    for (const KeptFile& kept : kSystemFiles) cmdlist.push_back(kept.put_back);
    cmdlist.push_back("chmod -x "_t + Object(kAutoNetwork));
  }
  if (fileExists(module, "/proc/stb/vmpeg/0/dst_width"_t)) append(cmdlist, kFullScreenVideo);
  cmdlist.push_back(kRestartAll);
  for (const Object& cmd : cmdlist) system(module, cmd);
  return {};
}

Object keyClose(const Call& call) {
  call.self["close"_t]();
  return {};
}

constexpr host::Operation kOperations[] = {
    {"__init__",
     &construct,
     {{"session"}, {"restorefile"}, {"fullrestorepath"}},
     "Confirms the restore of an archive: its name to be shown, and its path."},
    {"createMessage", &createMessage, {}, "Shows which backup will be restored."},
    {"keyGo", &keyGo, {}, "Runs the restore, whose last command ends the GUI."},
    {"keyClose", &keyClose, {}, "Closes the screen with nothing done."},
};

}  // namespace

std::vector<Text> keptFiles(const Module& module, const Object& path) {
  const ConfVer conf_ver = confVerOf(path);
  std::vector<Text> files;
  if (keepsSamba(module, conf_ver)) files.push_back(kSamba.file);
  if (keepsSystemFiles(conf_ver)) {
    for (const KeptFile& kept : kSystemFiles) files.push_back(kept.file);
  }
  return files;
}

OwnFiles ownFilesOfRestores() {
  OwnFiles files;
  files.linked.push_back("/etc/resolv.conf"_t);
  files.reserved.push_back("/etc/samba/smb_backup"_t);
  files.written = files.linked;
  files.written.push_back(kSamba.file);
  files.written.push_back(kAutoNetwork);
  for (const KeptFile& kept : kSystemFiles) files.written.push_back(kept.file);
  return files;
}

constexpr host::Class kStowlineHelpScreen = {
    "StowlineHelpScreen", "Screen"_t, kOperations,
    "Confirms the restore of a configuration and carries it out.", kSkin};

}  // namespace stowline
