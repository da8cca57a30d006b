#include "command/backups/RestoreScreen.h"

namespace backups {

using host::operator""_t;

RestoreScreen::RestoreScreen(dryrun::Host& host, const std::string& restoretype)
    : host_(host),
      screen_(host.module()["StowlineRestore"_t]({host.session(), restoretype, ""_t})) {}

std::vector<std::string> RestoreScreen::rows() const {
  return plain::textsOf(screen_.object().get("flist"_t));
}

RestoreScreen::Outcome RestoreScreen::pressOk(std::size_t row) {
  screen_.widget<plain::ListWidget>("filelist").cursor = row;
  screen_.press("ok");
  return {.is_taken = host_.takeRequests() > 0, .commands = host_.system().takeCommands()};
}

std::vector<std::string> configurationRestore(dryrun::Host& host, const std::string& path) {
  const std::string name = path.substr(path.rfind('/') + 1);
  const plain::OpenScreen screen(
      host.module()["StowlineHelpScreen"_t]({host.session(), name, path}));
  screen.object().call("keyGo"_t, {});
  return host.system().takeCommands();
}

bool isShellWord(std::string_view text) {
  return !text.empty() && !text.starts_with('~') &&
         text.find_first_of(" \t\r\n;&|<>()$`\"'\\*?[#!{}") == std::string_view::npos;
}

}  // namespace backups
