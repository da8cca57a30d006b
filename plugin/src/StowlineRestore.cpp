#include "plugin/src/StowlineRestore.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <unordered_set>
#include <utility>

#include "plugin/src/BoxTypes.h"
#include "plugin/src/Packages.h"
#include "plugin/src/Places.h"
#include "plugin/src/Setup.h"
#include "plugin/src/StowlineHelpScreen.h"

namespace stowline {
namespace {

/// What a restore type lists: names that begin and end so.
struct ListedKind {
  const char* restoretype;
  const char* prefix;
  const char* suffix;
};

constexpr ListedKind kListedKinds[] = {
    {"plugininstall", "pluginlist", ".lst"},       {"settingrestore", "settings", ".tar.gz"},
    {"configrestore", "configuration", ".tar.gz"}, {"personalscript", "backup", ".sh"},
    {"personalscript", "restore", ".sh"},
};

/// Archives below this size, in bytes, are deliberately ignored without a word: they are not worth
/// restoring.
constexpr long long kSmallestArchive = 10000;

/// Packages that are never installed from a list, and how the names of others like them begin.
constexpr const char* kExcludedPlugins[] = {
    "enigma2-plugin-extensions-webbrowser",
    "enigma2-plugin-systemplugins-factorytest",
    "enigma2-plugin-extensions-webinterface",
    "enigma2-plugin-extensions-xbmc",
};
constexpr const char* kExcludedPrefix = "enigma2-plugin-settings";

/// Whether a backup named `name` is for a receiver of type `own`. The first tag found decides; the
/// dot after it keeps "_solo." from being found in "_solo2.". Names without a tag are for all.
bool isForBox(const std::string& name, const std::string& own) {
  for (const std::string box : kBoxTypes) {
    if (name.find("_" + box + ".") != std::string::npos) return box == own;
  }
  return true;
}

bool isOfKind(const std::string& name, const std::string& restoretype) {
  return std::ranges::any_of(kListedKinds, [&](const ListedKind& kind) {
    return name.starts_with(kind.prefix) && name.ends_with(kind.suffix) &&
           restoretype == kind.restoretype;
  });
}

}  // namespace

StowlineRestore::StowlineRestore(host::Host& host, host::ScreenPeer& peer, host::Session& session,
                                 std::string restoretype_, std::string plugin_path)
    : TitledScreen(host, peer, session),
      skin_path(std::move(plugin_path)),
      restoretype(std::move(restoretype_)) {
  peer.init(session);
  peer.setAttribute("skin_path", skin_path);
  setTitleAttribute(translated("QOR Stowline"));
  setTitleWidget();
  setKeyLabel("key_red", "Close");
  // "Install" whatever is listed, deliberately; only a listed script makes it "Start".
  setKeyLabel("key_green", "Install");
  setKeyLabel("key_yellow", "Delete");
  const host::Action ok{this, "KeyOk", [this] { KeyOk(); }};
  const host::Action cancel{this, "keyCancel", [this] { keyCancel(); }};
  const host::Action del{this, "deleteFile", [this] { deleteFile(); }};
  peer.setItem("actions",
               host.components().makeNumberActionMap({.contexts = {"SetupActions"},
                                                      .bindings = {{"ok", ok}, {"cancel", cancel}},
                                                      .priority = -1}));
  peer.setItem("shortcuts", host.components().makeActionMap(
                                {.contexts = {"ShortcutActions"},
                                 .bindings = {{"red", cancel}, {"green", ok}, {"yellow", del}}}));
  peer.setItem("filelist", host.components().makeMenuList(flist));
  if (!peer.callOverride("fill_list", {})) fill_list();
  Console = host.components().makeComConsole();
  ipkg = host.components().makeIpkgComponent();
  ipkg->addCallback({this, "ipkgCallback", [this](host::IpkgEvent event, const host::Value& param) {
                       ipkgCallback(event, param);
                     }});
}

/// Never takes `entry` back: once something was listed, the keys stay enabled, deliberately.
void StowlineRestore::fill_list() {
  std::vector<std::string> names;
  flist.clear();
  path = getBackupRestorePath(host());
  const std::string own = host().deviceName();
  if (!path) return;
  for (const std::string& name : host().os().listdir(*path)) {
    if (!isOfKind(name, restoretype) || !isForBox(name, own)) continue;
    names.push_back(name);
    entry = true;
    if (restoretype == "personalscript") setKeyLabel("key_green", "Start");
  }
  std::ranges::sort(names, std::greater());
  flist = names;
  peer().menuList("filelist")->setList(names);
}

/// Takes the row under the cursor as the selected file. Returns false when there is nothing to act
/// on: an action is under way, nothing was ever listed, or the list or the medium is gone.
bool StowlineRestore::select() {
  if (exe || !entry) return false;
  const host::Value current = peer().menuList("filelist")->getCurrent();
  if (!current.text() || !path) return false;
  const std::string file = *path + "/" + *current.text();
  sel = current;
  val = file;
  return true;
}

bool StowlineRestore::hasSelection() const {
  return sel.text() && path;
}

void StowlineRestore::KeyOk() {
  if (!select() || !host().os().exists(val.str())) return;
  const long long f_size = host().os().fileSize(val.str());
  if (restoretype == "plugininstall") {
    const auto component = ipkg;
    component->startCmd(host::IpkgCommand::CMD_UPDATE);
  } else if (restoretype == "settingrestore") {
    if (f_size >= kSmallestArchive) restoreSettingsAndReport();
  } else if (restoretype == "configrestore") {
    if (f_size >= kSmallestArchive) openHelpScreen();
  } else if (restoretype == "personalscript") {
    askToRunScript();
  }
}

void StowlineRestore::restoreSettingsAndReport() {
  const auto overridden = peer().callOverride("restoreSettings", {});
  if (overridden ? overridden->equalsTrue() : restoreSettings()) {
    session->openWithCallback(
        closeCallback(),
        host::MessageBox{.text = translated("Restoring settings finished successfully"),
                         .type = host::MessageBox::TYPE_INFO,
                         .timeout = kBoxSeconds});
  } else {
    session->open(host::MessageBox{.text = translated("Restoring settings failed"),
                                   .type = host::MessageBox::TYPE_ERROR,
                                   .timeout = kBoxSeconds});
  }
}

/// Removes the channel files before it unpacks the archive, deliberately: what the archive does not
/// hold shall not stay.
bool StowlineRestore::restoreSettings() {
  for (const char* file : kChannelFiles) host().os().system(std::string("rm -f ") + file);
  host().os().system("tar xzf " + val.str() + " -C /");
  try {
    reloadChannels();
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

void StowlineRestore::reloadChannels() {
  host::ChannelDatabase& channels = host().channels();
  channels.readTransponders();
  channels.reloadServicelist();
  channels.reloadBouquets();
  const auto servicelist = channels.infoBarServicelist();
  if (!servicelist) return;
  const host::ObjectRef root = servicelist->getRoot();
  const host::ObjectRef currentref = servicelist->getCurrentSelection();
  servicelist->setRoot(root);
  servicelist->setCurrentSelection(currentref);
}

void StowlineRestore::openHelpScreen() {
  host::ScreenClass screen_class = {
      .name = "StowlineHelpScreen",
      .arguments = {sel, val},
      .create = [&gui = host(), restorefile = sel.str(), fullrestorepath = val.str()](
                    host::ScreenPeer& its_peer, host::Session& its_session) {
        return std::make_unique<StowlineHelpScreen>(gui, its_peer, its_session, restorefile,
                                                    fullrestorepath);
      }};
  screen_class.skin = StowlineHelpScreen::skin;
  session->open(std::move(screen_class));
}

void StowlineRestore::startRestore(const host::Value& ret) {
  if (!ret.equalsTrue() || !hasSelection()) return;
  const std::string unpack = "tar -xzf " + *path + "/" + sel.str() + " -C /";
  exe = true;
  session->open(host::Console{.title = translated("Restore running"),
                              .cmdlist = {unpack, "killall -9 enigma2"}});
}

void StowlineRestore::askToRunScript() {
  const auto box = session->openWithCallback(
      {this, "runScript", [this](const host::Value& ret) { runScript(ret); }},
      host::MessageBox{.text = translated("Are you sure you want to run\nfollowing script:\n") +
                               sel.str()});
  box->setTitle(translated("QOR Stowline"));
}

void StowlineRestore::runScript(const host::Value& ret) {
  if (!ret.equalsTrue() || !hasSelection()) return;
  const std::string command = *path + "/./" + sel.str();
  host().os().chmod(val.str(), 0755);
  cmdlist = {command};
  session->openWithCallback(
      closeCallback(),
      host::Console{.title = translated("QOR Stowline is running personal script ..."),
                    .cmdlist = {command}});
}

/// Joins the name to the text before the translation is looked up, deliberately.
void StowlineRestore::deleteFile() {
  if (!select()) return;
  session->openWithCallback(
      {this, "startDelete", [this](const host::Value& ret) { startDelete(ret); }},
      host::MessageBox{
          .text = translated("Are you sure you want to delete\nfollowing backup:\n" + sel.str())});
}

/// When the removal fails, `exe` stays true and the keys stay disabled, deliberately.
void StowlineRestore::startDelete(const host::Value& ret) {
  if (!ret.equalsTrue() || !val.text()) return;
  exe = true;
  if (host().os().exists(val.str())) host().os().remove(val.str());
  exe = false;
  if (!peer().callOverride("fill_list", {})) fill_list();
}

void StowlineRestore::keyCancel(const host::Value& /*ret*/) {
  peer().close({});
}

host::Answer StowlineRestore::closeCallback() {
  return {this, "keyCancel", [this](const host::Value& ret) { keyCancel(ret); }};
}

void StowlineRestore::ipkgCallback(host::IpkgEvent event, const host::Value& /*param*/) {
  if (event == host::IpkgEvent::EVENT_ERROR) {
    // No screen of ours defines setStatus, deliberately: the host reports the error.
    peer().callOperation("setStatus", "error");
  } else if (event == host::IpkgEvent::EVENT_DONE && restoretype == "plugininstall") {
    restoretype.clear();
    if (!peer().callOverride("installPlugins", {})) installPlugins();
  }
}

/// Only newlines are stripped, deliberately: a carriage return or a blank makes another name, and
/// an empty line an empty one.
void StowlineRestore::installPlugins() {
  plugins.clear();
  cmdList.clear();
  pluginsinstalled.clear();
  pluginsinstalledclean.clear();
  pluginsinstalled = host().os().popen(kInstalledPlugins);
  pluginsinstalledclean = withoutNewlines(pluginsinstalled);
  plugins = host().os().popen("cat " + val.str());
  excludedplugins.assign(std::begin(kExcludedPlugins), std::end(kExcludedPlugins));

  const std::unordered_set<std::string> installed(pluginsinstalledclean.begin(),
                                                  pluginsinstalledclean.end());
  for (const std::string& package : withoutNewlines(plugins)) {
    if (installed.contains(package)) {
      host().print("[QOR-Stowline] Plugin " + package + " is already installed");
    } else if (package.starts_with(kExcludedPrefix) ||
               std::ranges::count(excludedplugins, package) > 0) {
      host().print("[QOR-Stowline] do not restore excluded package: " + package);
    } else {
      cmdList.push_back({host::IpkgCommand::CMD_INSTALL, package});
    }
  }
  session->openWithCallback(closeCallback(), host::Ipkg{cmdList});
}

}  // namespace stowline
