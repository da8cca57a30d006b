#include <CLI/CLI.hpp>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
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
#include "plugin/src/Stowline.h"

namespace command {
namespace {

constexpr const char* kPluginPath = "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel";

struct DeskOptions {
  std::filesystem::path receiver;
  std::string menu = "backup";
  std::string words;
  std::string frames = "text";
  desk::Records records;
  std::string theme;
  std::filesystem::path record;
  std::filesystem::path translations;
  std::filesystem::path skin;
  std::filesystem::path pictures;
  int port = 0;
};

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
  return {.load = stowline::load,
          .main_menu =
              [menu](host::Host& host) {
                return host::ScreenClass{
                    .name = "Stowline",
                    .arguments = {kPluginPath, menu},
                    .create = [&host, menu](host::ScreenPeer& peer, host::Session& session) {
                      return std::make_unique<stowline::Stowline>(host, peer, session, kPluginPath,
                                                                  menu);
                    }};
              },
          .translations = std::move(translations)};
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
  desk::Supervisor supervisor(guiOn(tree, options), options.records, player);
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
    desk::Supervisor supervisor(guiOn(tree, options), options.records, player);
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
  desk::Supervisor supervisor(guiOn(tree, options), options.records, player);
  const web::Server server(
      board, options.port, token,
      [&](const std::string& name) { return web::readFont(drawing.fontFile(name)); },
      [&](const std::string& path) { return pictures.find(path); });
  std::cout << server.address() << std::endl;
  player.play(supervisor);
}

/// Where the menu is shown.
enum class FrontEnd { terminal, script, browser };

void runDesk(const DeskOptions& options, FrontEnd front_end) {
  desk::requireTree(options.receiver);
  const desk::TreeLock lock(options.receiver);
  const std::filesystem::path tree = std::filesystem::canonical(options.receiver);
  switch (front_end) {
    case FrontEnd::terminal:
      return playOnTerminal(options, tree);
    case FrontEnd::script:
      return playScript(options, tree);
    case FrontEnd::browser:
      return playInBrowser(options, tree);
  }
}

}  // namespace

void addDesk(CLI::App& stowline) {
  const auto options = std::make_shared<DeskOptions>();
  CLI::App* desk = stowline.add_subcommand(
      "desk",
      "Open the main menu on a stand-in receiver: on this terminal, where ? shows the keys, in a\n"
      "browser, or by a script.");
  CLI::Option* receiver =
      desk->add_option("--receiver", options->receiver, "the receiver's directory")
          ->type_name("DIR");
  desk->add_option("--menu", options->menu, "the flavour of the main menu")
      ->check(CLI::IsMember({"backup", "restore"}))
      ->capture_default_str();
  CLI::Option* play =
      desk->add_option("--play", options->words, "the keys to press, in order, without a terminal")
          ->type_name("WORDS")
          ->check([](const std::string& script) {
            try {
              desk::parseWords(script);
              return std::string();
            } catch (const desk::UnknownWord& error) {
              return std::string(error.what());
            }
          });
  desk->add_option("--frames", options->frames, "how --play prints frames")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str()
      ->needs(play);
  CLI::Option* pictures =
      desk->add_option(
              "--pictures", options->pictures,
              "write every frame into this directory as the television would show it, in SVG")
          ->type_name("DIR")
          ->needs(play);
  CLI::Option* web =
      desk->add_option("--web", options->port,
                       "open the menu in a browser: print the address of a page on this port, on "
                       "any free one without PORT")
          ->type_name("[PORT]")
          ->expected(0, 1)
          ->check(CLI::Range(0, 65535))
          ->excludes(play);
  desk->add_option("--translations", options->translations,
                   "show the module's texts in another language, by a catalogue of msgfmt")
      ->type_name("FILE.mo");
  CLI::Option* skin = desk->add_option("--skin", options->skin, "the skin of --web and --pictures")
                          ->type_name("FILE");
  desk->add_option("--theme", options->theme, "the colours of the terminal")
      ->check(CLI::IsMember({"plain", "dark", "light"}))
      ->excludes(play)
      ->excludes(web);
  desk->add_option("--record", options->record,
                   "append every frame on the terminal to this file, as JSON")
      ->type_name("FILE")
      ->excludes(play)
      ->excludes(web);
  desk->add_option("--log", options->records.log, "append the module's log lines to this file")
      ->type_name("FILE");
  desk->add_option("--trace", options->records.trace, "append every shell command to this file")
      ->type_name("FILE");
  desk->callback([=] {
    require({receiver});
    if (skin->count() > 0 && web->count() + pictures->count() == 0) {
      throw CLI::RequiresError("--skin", "--web or --pictures");
    }
    runDesk(*options, play->count() > 0  ? FrontEnd::script
                      : web->count() > 0 ? FrontEnd::browser
                                         : FrontEnd::terminal);
  });
}

}  // namespace command
