#include "tests/support/command/Frames.h"

#include <array>
#include <utility>

#include "plugin/src/StowlineHelpScreen.h"

namespace command_test {
namespace {

Json frame(const std::string& key, const std::string& screen, const std::string& title) {
  return {{"key", key},
          {"screen", screen},
          {"title", title},
          {"widgets", Json::object()},
          {"rows", Json::array()},
          {"selected", 0}};
}

Json rows(const std::vector<std::array<std::string, 2>>& texts) {
  return texts;
}

Json rowsOf(const std::vector<std::string>& texts) {
  Json rows = Json::array();
  for (const std::string& text : texts) rows.push_back({text, ""});
  return rows;
}

/// Returns the paths of the pictures of these names, as the tree holds them.
Json pictures(const std::vector<std::string>& names) {
  Json paths = Json::array();
  for (const std::string& name : names) {
    paths.push_back("/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/" + name +
                    ".png");
  }
  return paths;
}

Json backupRows(const std::string& medium) {
  return rows(
      {{"Backup/restore device : " + medium, "set device for directory qor-stowline"},
       {"Backup installed plugins", "creates a list of installed plugins, skins and softcams"},
       {"Backup channel settings", "save channel and bouquet settings"},
       {"Backup configurations", "save common configurations for GUI, plugins and softcams"}});
}

Json restoreRows(const std::string& medium) {
  return rows(
      {{"Backup/restore device : " + medium, "set device for directory qor-stowline"},
       {"Restore plugins from saved list", "installs all available plugins from online feed"},
       {"Restore channel settings", "reload saved channel and bouquet settings"},
       {"Restore configurations", "restore common configurations for GUI, plugins and softcams"},
       {"Install local packages", "from " + medium + "/qor-stowline/plugins"},
       {"Run personal script", "executes your personal backup/restore scripts"}});
}

}  // namespace

Json menuFrame(const std::string& key, const std::string& flavour, int selected,
               const std::string& medium) {
  const bool backup = flavour == "backup";
  const std::string title = backup ? "QOR Stowline (Backup)" : "QOR Stowline (Restore)";
  Json result = frame(key, "Stowline", title);
  result["widgets"] = {
      {"key_green", ""}, {"key_red", "Exit"}, {"key_yellow", ""}, {"status", ""}, {"title", title}};
  result["rows"] = backup ? backupRows(medium) : restoreRows(medium);
  result["pictures"] = backup
                           ? pictures({"backuplocation", "services", "restoresettings", "filesys"})
                           : pictures({"backuplocation", "services", "restoresettings", "filesys",
                                       "targz", "exemanager"});
  result["list"] = "menu";
  result["selected"] = selected;
  return result;
}

Json listFrame(const std::string& key, const std::vector<std::string>& rows, int selected,
               const std::string& green) {
  Json result = frame(key, "StowlineRestore", "QOR Stowline");
  result["widgets"] = {{"key_green", green},
                       {"key_red", "Close"},
                       {"key_yellow", "Delete"},
                       {"title", "QOR Stowline"}};
  result["list"] = "filelist";
  result["rows"] = rowsOf(rows);
  result["selected"] = selected;
  return result;
}

Json boxFrame(const std::string& key, const std::string& type, const std::string& title,
              const std::string& text) {
  Json result = frame(key, "MessageBox", title);
  result["type"] = type;
  result["text"] = text;
  result["timeout"] = 10;
  return result;
}

Json questionFrame(const std::string& key, const std::string& title, const std::string& text) {
  Json result = frame(key, "MessageBox", title);
  result["type"] = "yesno";
  result["text"] = text;
  result["timeout"] = 0;
  result["rows"] = rowsOf({"yes", "no"});
  return result;
}

Json choiceFrame(const std::string& key, const std::vector<std::string>& rows) {
  Json result = frame(key, "ChoiceBox", "QOR Stowline");
  result["text"] = "Please select medium to use as backup location";
  result["rows"] = rowsOf(rows);
  return result;
}

Json consoleFrame(const std::string& key, const std::string& text, bool running) {
  Json result = frame(key, "Console", "QOR Stowline is running personal script ...");
  result["text"] = text;
  result["running"] = running;
  return result;
}

Json confirmationFrame(const std::string& key, const std::string& archive) {
  Json result = frame(key, "StowlineHelpScreen", "Qor Stowline");
  result["widgets"] = {
      {"key_green", "Ok"},
      {"key_red", "Exit"},
      {"messagetext", "Are you sure you want to restore\nfollowing backup:\n" + archive +
                          "\n\n\nSystem will restart after the restore!"},
      {"title", "Qor Stowline"}};
  result["skin"] = stowline::kStowlineHelpScreen.skin;
  return result;
}

Json closedFrame(const std::string& key) {
  return frame(key, "", "");
}

Json packagesFrame(const std::string& key, const std::vector<ShownPackage>& packages,
                   bool running) {
  Json result = frame(key, "Ipkg", "");
  result["packages"] = Json::array();
  for (const auto& [name, state] : packages) {
    result["packages"].push_back({{"name", name}, {"state", state}});
  }
  result["running"] = running;
  return result;
}

Json notWriteableFrame(const std::string& key) {
  return boxFrame(key, "info", "",
                  "Sorry, your backup destination is not writeable.\n\nPlease choose another one.");
}

}  // namespace command_test
