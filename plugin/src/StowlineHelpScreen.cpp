#include "plugin/src/StowlineHelpScreen.h"

#include <iterator>
#include <utility>
#include <vector>

namespace stowline {
namespace {

constexpr const char* kSmbConf = "/etc/samba/smb.conf";
constexpr const char* kSmbBackup = "/etc/samba/smb_backup";

constexpr const char* kKeepSystemFiles[] = {
    "cat /etc/fstab > /etc/fstab_backup",
    "cat /etc/passwd > /etc/passwd_backup",
    "cat /etc/shadow > /etc/shadow_backup",
};

/// The third command removes the backup of passwd once more and leaves that of shadow. This is
/// deliberate: the commands stay as every restore so far has run them.
constexpr const char* kPutBackSystemFiles[] = {
    "cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup",
    "cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup",
    "cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup",
    "chmod -x /etc/auto.network",
};

/// The spinner's pictures are moved aside, so that the archive cannot replace them ...
constexpr const char* kMoveSpinnerAside[] = {
    "mkdir -p /usr/share/enigma2/skin_default/spinner/tmp",
    "mv /usr/share/enigma2/skin_default/spinner/*.png "
    "/usr/share/enigma2/skin_default/spinner/tmp",
};

/// ... and come back only if it brought none; a plain resolver file becomes a link again.
constexpr const char* kTidyUp[] = {
    "echo \"[Qor Stowline] syncing ...\" ;  /bin/sync ; sleep 1",
    "if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  "
    "mv /usr/share/enigma2/skin_default/spinner/tmp/*.png "
    "/usr/share/enigma2/skin_default/spinner ; fi ; "
    "rm -rf /usr/share/enigma2/skin_default/spinner/tmp",
    "rm -rf /.qws",
    "if [ ! -L \"/etc/resolv.conf\" ] ; then rm /var/run/resolv.conf ; "
    "mv /etc/resolv.conf /var/run/resolv.conf ; "
    "ln -s /var/run/resolv.conf /etc/resolv.conf ; fi",
};

constexpr const char* kFullScreenVideo[] = {
    "echo 00000000 > /proc/stb/vmpeg/0/dst_height",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_left",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_top",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_width",
};

constexpr const char* kRestartAll =
    "/etc/init.d/networking stop ; /etc/init.d/networking start ; "
    "/etc/init.d/current_cam.sh start ; killall -9 enigma2";

/// The ranks of the configuration trees that an archive may come from.
enum ConfVer {
  UNKNOWN_TREE = 0,
  QOR_OE_16 = 16,  ///< never written into a name
  QOR_OE_21 = 21,
  QOR_OE_30 = 30,
  QOR_13 = 40,
};

struct VersionTag {
  const char* tag;
  ConfVer conf_ver;
};

constexpr VersionTag kVersionTags[] = {
    {"configuration_ver_a", QOR_OE_21},
    {"configuration_ver_b", QOR_OE_30},
    {"configuration_ver_c", QOR_13},
};

/// Returns the rank of the first tag found anywhere in `path`, directories included.
ConfVer confVerOf(const std::string& path) {
  for (const VersionTag& known : kVersionTags) {
    if (path.find(known.tag) != std::string::npos) return known.conf_ver;
  }
  return UNKNOWN_TREE;
}

template <class Commands>
void append(std::vector<std::string>& cmdlist, const Commands& commands) {
  cmdlist.insert(cmdlist.end(), std::begin(commands), std::end(commands));
}

std::string unpack(const std::string& archive) {
  return "tar -xzf " + archive + " -C /";
}

}  // namespace

const std::string_view StowlineHelpScreen::skin = R"(
	<screen name="StowlineHelpScreen" position="center,center" size="650,250">
		<widget name="messagetext" position="10,10" size="630,210" font="Regular;20" halign="center" valign="center" transparent="1" />
		<widget source="key_red" render="Label" position="40,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<widget source="key_green" render="Label" position="225,213" zPosition="1" size="150,40" font="Regular;20" halign="left" valign="center" transparent="1" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_red.png" position="10,220" size="25,25" alphatest="on" />
		<ePixmap pixmap="/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_green.png" position="195,220" size="25,25" alphatest="on" />
	</screen>)";

StowlineHelpScreen::StowlineHelpScreen(host::Host& host, host::ScreenPeer& peer,
                                       host::Session& session, std::string restorefile_,
                                       std::string fullrestorepath_)
    : TitledScreen(host, peer, session),
      restorefile(std::move(restorefile_)),
      fullrestorepath(std::move(fullrestorepath_)) {
  peer.init(session);
  // The one text that is deliberately not translated.
  setTitleAttribute("Qor Stowline");
  setTitleWidget();
  peer.setItem("messagetext", host.components().makeLabel(""));
  setKeyLabel("key_red", "Exit");
  setKeyLabel("key_green", "Ok");
  const host::Action go{this, "keyGo", [this] { keyGo(); }};
  const host::Action close{this, "keyClose", [this] { keyClose(); }};
  peer.setItem("shortcuts",
               host.components().makeActionMap(
                   {.contexts = {"OkCancelActions", "ColorActions"},
                    .bindings = {{"red", close}, {"green", go}, {"ok", go}, {"cancel", close}},
                    .priority = -2}));
  peer.appendOnLayoutFinish({this, "createMessage", [this] { createMessage(); }});
}

void StowlineHelpScreen::createMessage() {
  const std::string question = translated("Are you sure you want to restore\nfollowing backup:\n");
  const std::string warning = translated("\nSystem will restart after the restore!");
  peer().label("messagetext")->setText(question + restorefile + "\n\n" + warning);
}

void StowlineHelpScreen::keyGo() {
  std::vector<std::string> cmdlist;
  const ConfVer conf_ver = confVerOf(fullrestorepath);

  if (conf_ver < QOR_OE_30) {
    host().print("[Qor Stowline] do not restore old OE tree configuration files");
    append(cmdlist, kKeepSystemFiles);
  }
  if (conf_ver != QOR_13 && host().os().exists(kSmbConf)) {
    host().print("[Qor Stowline] do not restore old samba configuration");
    cmdlist.push_back(std::string("cat ") + kSmbConf + " > " + kSmbBackup);
  }
  append(cmdlist, kMoveSpinnerAside);
  cmdlist.push_back("/etc/init.d/current_cam.sh stop ; " + unpack(fullrestorepath));
  for (const char* suffix : {"_atile_hd", "_user_files"}) {
    const std::string companion = fullrestorepath + suffix;
    if (host().fileExists(companion)) cmdlist.push_back(unpack(companion));
  }
  append(cmdlist, kTidyUp);
  // Asks for the samba configuration, not for its backup. This is deliberate: it is asked before
  // any command runs, so both tests agree unless the file goes in between.
  if (conf_ver != QOR_13 && host().os().exists(kSmbConf)) {
    host().print("[Qor Stowline] restore installed smb.conf");
    cmdlist.push_back(std::string("cat ") + kSmbBackup + " > " + kSmbConf + " ; rm " + kSmbBackup);
  }
  if (conf_ver < QOR_OE_30) append(cmdlist, kPutBackSystemFiles);
  if (host().fileExists("/proc/stb/vmpeg/0/dst_width")) append(cmdlist, kFullScreenVideo);
  cmdlist.emplace_back(kRestartAll);

  for (const std::string& cmd : cmdlist) host().os().system(cmd);
}

void StowlineHelpScreen::keyClose() {
  peer().close({});
}

}  // namespace stowline
