#include "tests/plugin/flows/Expected.h"

#include "host/plain/Node.h"
#include "tests/support/Journal.h"

namespace stowline::expected {
namespace {

using support::described;
using support::quoted;

std::string call(const std::string& function, const std::string& argument) {
  return function + "(" + quoted(argument) + ")\n";
}

constexpr const char* kSetting = "config.plugins.qorpanel.stowline.backuprestorepath.value\n";

}  // namespace

std::string block(const std::string& text) {
  return text.substr(1);
}

std::string translate(const std::string& text) {
  return call("_", text);
}
std::string print(const std::string& text) {
  return call("print", text);
}
std::string system(const std::string& command) {
  return call("os.system", command);
}
std::string fileExists(const std::string& path) {
  return call("fileExists", path);
}
std::string exists(const std::string& path) {
  return call("os_path.exists", path);
}
std::string listdir(const std::string& path) {
  return call("os.listdir", path);
}

std::string widget(const std::string& key, const std::string& construction) {
  return construction + "\nself[" + quoted(key) + "] = " + construction + "\n";
}

std::string staticText(const std::string& key, const std::string& text) {
  return widget(key, "StaticText(" + quoted(text) + ")");
}

std::string label(const std::string& key, const std::string& text) {
  return translate(text) + staticText(key, text);
}

std::string backupDirectory(const std::string& path) {
  return kSetting + exists(path);
}

std::string newBackupDirectory(const std::string& path) {
  return backupDirectory(path) + call("os.makedirs", path);
}

std::string box(const std::string& text, const std::string& type) {
  return translate(text) + "session.open(MessageBox, " + quoted(text) + ", " + type +
         ", timeout=10)\n";
}

std::string setDialogTitle() {
  return translate("QOR Stowline") + "dialog.setTitle(\"QOR Stowline\")\n";
}

std::string outputRead(const std::string& command) {
  return "os.popen(" + quoted(command) + ").readlines()\n";
}

std::string packageScreen(const std::string& opening, const std::vector<std::string>& packages) {
  std::string commands;
  for (const std::string& package : packages) {
    commands += (commands.empty() ? "" : ", ") + std::string("(CMD_INSTALL, {\"package\": ") +
                quoted(package) + "})";
  }
  return opening + "Ipkg, cmdList=[" + commands + "])\n";
}

std::string restoreListBegun(const std::string& plugin_path) {
  return "Screen.__init__(session)\n"
         "self.skin_path = " +
         quoted(plugin_path) + "\n" + translate("QOR Stowline") +
         "self.title = \"QOR Stowline\"\n" + staticText("title", "QOR Stowline") +
         label("key_red", "Close") + label("key_green", "Install") + label("key_yellow", "Delete") +
         widget("actions",
                R"(NumberActionMap(["SetupActions"], {"cancel": keyCancel, "ok": KeyOk}, -1))") +
         widget("shortcuts", R"(ActionMap(["ShortcutActions"], )"
                             R"({"green": KeyOk, "red": keyCancel, "yellow": deleteFile}))") +
         widget("filelist", "MenuList([])");
}

std::string restoreListEnded() {
  return "ComConsole()\nIpkgComponent()\nipkg.addCallback(ipkgCallback)\n";
}

std::string listed(const std::vector<std::string>& shown) {
  return backupDirectory() + "HardwareInfoVu().get_device_name()\n" + listdir(kDirectory) +
         "self[\"filelist\"].l.setList(" + described(plain::listOf(shown)) + ")\n";
}

std::string confirmationOpened() {
  return "Screen.__init__(session)\n"
         "self.title = \"Qor Stowline\"\n" +
         staticText("title", "Qor Stowline") + widget("messagetext", "Label(\"\")") +
         label("key_red", "Exit") + label("key_green", "Ok") +
         widget("shortcuts",
                R"(ActionMap(["OkCancelActions", "ColorActions"], )"
                R"({"cancel": keyClose, "green": keyGo, "ok": keyGo, "red": keyClose}, -2))") +
         "onLayoutFinish.append(createMessage)\n";
}

}  // namespace stowline::expected
