#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command/Commands.h"
#include "desk/drawing/PictureFiles.h"
#include "desk/gui/GuiProcess.h"
#include "desk/play/ScriptPlayer.h"
#include "desk/play/Words.h"
#include "desk/supervisor/Supervisor.h"
#include "desk/terminal/Guard.h"
#include "desk/terminal/TerminalPlayer.h"
#include "desk/terminal/TerminalState.h"
#include "desk/tree/ReceiverTree.h"
#include "desk/tree/TreeLock.h"
#include "desk/web/Assets.h"
#include "desk/web/Server.h"
#include "desk/web/WebPlayer.h"
#include "host/native/Reading.h"
#include "host/native/ShownText.h"
#include "plugin/src/Setup.h"

namespace command {
namespace {

constexpr const char* kPluginPath = "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel";

/// The themes of the terminal by name.
const std::map<std::string, desk::terminal::Theme> kThemes = {
    {"plain", desk::terminal::Theme::plain},
    {"dark", desk::terminal::Theme::dark},
    {"light", desk::terminal::Theme::light},
};

/// Reads a catalogue of translations; none where `file` is empty.
desk::Translations readTranslations(const std::filesystem::path& file) {
  if (file.empty()) return {};
  try {
    return desk::parseCatalogue(native::readFile(file));
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(file.string() + ": " + error.what());
  }
}

/// Returns the module as the stand-in runs it, opening the main menu of the flavour `menu`.
desk::Application moduleWith(const std::string& menu, desk::Translations translations) {
  return {.load = &stowline::load,
          .main_menu = "Stowline",
          .arguments = {kPluginPath, menu},
          .translations = std::move(translations)};
}

desk::Records recordsOf(const DeskOptions& options) {
  return {.log = options.log, .trace = options.trace};
}

/// Returns what runs the module in the receiver tree `tree`.
std::function<void(desk::Channel)> guiOn(const std::filesystem::path& tree,
                                         const DeskOptions& options) {
  return [tree, application = moduleWith(options.menu, readTranslations(options.translations))](
             desk::Channel channel) { desk::runGuiProcess(tree, application, std::move(channel)); };
}

void playScript(const DeskOptions& options, const std::filesystem::path& tree) {
  const std::vector<std::string> words = desk::parseWords(options.words);
  std::optional<desk::drawing::PictureFiles> pictures;
  if (!options.pictures.empty()) {
    pictures.emplace(options.pictures, tree, desk::drawing::readSkin(options.skin));
  }
  const auto draw = [&pictures](const desk::Channel::Message& frame) {
    if (pictures) pictures->write(frame);
  };
  desk::ScriptPlayer player(
      options.frames == "json" ? desk::FrameFormat::json : desk::FrameFormat::text, std::cout,
      draw);
  desk::Supervisor supervisor(guiOn(tree, options), recordsOf(options), player);
  player.play(supervisor, words);
  if (!pictures) return;
  for (const std::string& notice : pictures->notices().lines()) {
    std::cerr << "stowline: note: " << native::shownLine(notice) << "\n";
  }
}

void playOnTerminal(const DeskOptions& options, const std::filesystem::path& tree) {
  namespace terminal = desk::terminal;
  terminal::requireTerminal();
  terminal::putGuardBeforeTerminal();
  std::optional<terminal::Theme> theme;
  if (!options.theme.empty()) theme = kThemes.at(options.theme);
  int signal = 0;
  {
    terminal::TerminalPlayer player(theme, options.record);
    desk::Supervisor supervisor(guiOn(tree, options), recordsOf(options), player);
    signal = player.play(supervisor);
  }
  if (signal != 0) raise(signal);
}

void playInBrowser(const DeskOptions& options, const std::filesystem::path& tree) {
  namespace web = desk::web;
  const std::string token = web::randomToken();
  web::Pictures pictures(tree, token);
  desk::drawing::Drawing drawing(desk::drawing::readSkin(options.skin),
                                 [&](const std::string& path) { return pictures.name(path); });
  web::Board board;
  web::WebPlayer player(board, drawing);
  desk::Supervisor supervisor(guiOn(tree, options), recordsOf(options), player);
  const web::Server server(
      board, options.port, token,
      [&](const std::string& name) { return web::readFont(drawing.fontFile(name)); },
      [&](const std::string& path) { return pictures.find(path); });
  std::cout << server.address() << std::endl;
  player.play(supervisor);
}

}  // namespace

void runDesk(const DeskOptions& options) {
  desk::requireTree(options.receiver);
  const desk::TreeLock lock(options.receiver);
  const std::filesystem::path tree = std::filesystem::canonical(options.receiver);
  switch (options.front_end) {
    case FrontEnd::terminal:
      return playOnTerminal(options, tree);
    case FrontEnd::script:
      return playScript(options, tree);
    case FrontEnd::browser:
      return playInBrowser(options, tree);
  }
}

}  // namespace command
