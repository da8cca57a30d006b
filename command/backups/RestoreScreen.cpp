#include "command/backups/RestoreScreen.h"

#include <memory>
#include <string_view>

#include "plugin/src/StowlineHelpScreen.h"

namespace backups {
namespace {

/// Returns what stands between `begin` and the `end` that follows it, "" when they do not.
std::string between(const std::string& text, std::string_view begin, std::string_view end) {
  const std::size_t start = text.find(begin);
  if (start == std::string::npos) return "";
  const std::size_t from = start + begin.size();
  const std::size_t to = text.find(end, from);
  return to == std::string::npos ? "" : text.substr(from, to - from);
}

}  // namespace

RestoreScreen::RestoreScreen(look::Host& host, const std::string& restoretype)
    : host_(host), system_(host.system()), screen_(host, peer_, host, restoretype, "") {}

RestoreScreen::Outcome RestoreScreen::pressOk(std::size_t row) {
  std::static_pointer_cast<look::MenuList>(peer_.menuList("filelist"))->select(row);
  peer_.press("ok");
  const bool has_dialog = !host_.takeDialogs().empty();
  const bool has_package_command = host_.takePackageCommand();
  return {.is_taken = has_dialog || has_package_command, .commands = system_.takeCommands()};
}

std::vector<std::string> configurationRestore(look::Host& host, const std::string& path) {
  look::Peer peer;
  stowline::StowlineHelpScreen screen(host, peer, host, path.substr(path.rfind('/') + 1), path);
  screen.keyGo();
  return host.system().takeCommands();
}

std::vector<std::string> keptBy(const std::vector<std::string>& commands) {
  std::vector<std::string> files;
  for (const std::string& command : commands) {
    const std::string file = command.starts_with("cat ") ? between(command, " > ", " ; rm ") : "";
    if (!file.empty()) files.push_back(file);
  }
  return files;
}

bool isShellWord(std::string_view text) {
  return !text.empty() && !text.starts_with('~') &&
         text.find_first_of(" \t\r\n;&|<>()$`\"'\\*?[#!{}") == std::string_view::npos;
}

std::vector<std::string> unpackedBy(const std::vector<std::string>& commands) {
  std::vector<std::string> archives;
  for (const std::string& command : commands) {
    for (const char* unpack : {"tar -xzf ", "tar xzf "}) {
      const std::string archive = between(command, unpack, " -C /");
      if (!archive.empty()) archives.push_back(archive);
    }
  }
  return archives;
}

}  // namespace backups
