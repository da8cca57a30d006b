#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
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

#include "base/Descriptor.h"
#include "base/Escape.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "command/Commands.h"
#include "command/OnReceiver.h"
#include "desk/drawing/PictureFiles.h"
#include "desk/frontend/Player.h"
#include "desk/gui/GuiProcess.h"
#include "desk/script/ScriptFrontEnd.h"
#include "desk/supervisor/GuiStart.h"
#include "desk/supervisor/Supervisor.h"
#include "desk/terminal/Guard.h"
#include "desk/terminal/TerminalFrontEnd.h"
#include "desk/terminal/TerminalState.h"
#include "desk/tree/ReceiverTree.h"
#include "desk/tree/TreeLock.h"
#include "desk/web/Server.h"
#include "desk/web/WebFrontEnd.h"
#include "plugin/src/Setup.h"

namespace command {
namespace {

constexpr const char* kEnclosed = "enclosed";
constexpr const char* kNotEnclosed = "not-enclosed";
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
  return desk::parseCatalogue(base::readFile(file));
}

/// Returns a copy of a catalogue, for every GUI to come: its file may be gone by then.
base::Descriptor copyTranslations(const std::filesystem::path& file) {
  try {
    const std::string content = base::readFile(file);
    desk::parseCatalogue(content);
    base::Descriptor copy(memfd_create("translations", MFD_CLOEXEC));
    if (!copy) throw base::SystemError(errno, "memfd_create");
    base::writeAll(copy.number(), content, file);
    return copy;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(file.string() + ": " + error.what());
  }
}

/// A receiver tree that is this command's alone.
struct Tree {
  desk::TreeLock lock;
  std::filesystem::path dir;
};

/// Returns what runs the module in the tree.
std::function<void(desk::Channel)> guiOn(const Tree& tree, const DeskOptions& options) {
  const std::string walls = options.receiver.no_enclosure ? kNotEnclosed : kEnclosed;
  std::vector<std::string> arguments = {"stowline", kGui, tree.dir, walls, options.menu, ""};
  std::shared_ptr<base::Descriptor> translations;
  std::vector<int> descriptors = {tree.lock.descriptor()};
  if (!options.translations.empty()) {
    translations = std::make_shared<base::Descriptor>(copyTranslations(options.translations));
    descriptors.push_back(translations->number());
    arguments.back() = "/proc/self/fd/" + std::to_string(desk::kFirstDescriptor + 1);
  }
  return [arguments, descriptors, translations](desk::Channel channel) {
    desk::executeGui(arguments, std::move(channel), descriptors);
  };
}

/// Plays the module in the tree to a front end. Returns as Player::play().
int play(const DeskOptions& options, const Tree& tree, desk::FrontEnd& front_end,
         desk::Signals* signals) {
  desk::Player player(front_end, signals);
  desk::Supervisor supervisor(guiOn(tree, options), {.log = options.log, .trace = options.trace},
                              player);
  return player.play(supervisor);
}

void playScript(const DeskOptions& options, const Tree& tree) {
  std::optional<desk::drawing::PictureFiles> pictures;
  if (!options.pictures.empty()) {
    pictures.emplace(options.pictures, tree.dir, desk::drawing::readSkin(options.skin));
  }
  desk::ScriptFrontEnd front_end(
      options.frames == "json" ? desk::FrameFormat::json : desk::FrameFormat::text,
      desk::parseWords(options.words), std::cout, [&pictures](const desk::Frame& frame) {
        if (pictures) pictures->write(frame);
      });
  play(options, tree, front_end, nullptr);
  if (!pictures) return;
  for (const std::string& notice : pictures->notices().lines()) {
    std::cerr << "stowline: note: " << base::escapeControls(notice) << "\n";
  }
}

void playOnTerminal(const DeskOptions& options, const Tree& tree) {
  namespace terminal = desk::terminal;
  terminal::requireTerminal();
  terminal::putGuardBeforeTerminal();
  std::optional<terminal::Theme> theme;
  if (!options.theme.empty()) theme = kThemes.at(options.theme);
  int signal = 0;
  {
    desk::Signals signals;
    terminal::TerminalFrontEnd front_end(theme, options.record);
    signal = play(options, tree, front_end, &signals);
  }
  if (signal != 0) raise(signal);
}

void playInBrowser(const DeskOptions& options, const Tree& tree) {
  namespace web = desk::web;
  int signal = 0;
  {
    desk::Signals signals;
    const std::string token = web::randomToken();
    desk::drawing::Pictures pictures(tree.dir);
    desk::drawing::Drawing drawing(
        desk::drawing::readSkin(options.skin),
        [&](const std::string& path) -> std::optional<std::string> {
          const auto picture = pictures.at(path);
          return picture ? std::optional(web::addressOf(*picture, token)) : std::nullopt;
        },
        [&] { pictures.changeScreen(); });
    web::Board board;
    web::WebFrontEnd front_end(board, drawing);
    const web::Server server(board, drawing.fonts(), pictures, options.port, token);
    std::cout << server.address() << std::endl;
    signal = play(options, tree, front_end, &signals);
  }
  if (signal != 0) raise(signal);
}

}  // namespace

void runDesk(const DeskOptions& options) {
  desk::requireTree(options.receiver.dir);
  const Tree tree = {.lock = desk::TreeLock(options.receiver.dir),
                     .dir = std::filesystem::canonical(options.receiver.dir)};
  warnIfNotEnclosed(options.receiver);
  switch (options.front_end) {
    case FrontEnd::terminal:
      return playOnTerminal(options, tree);
    case FrontEnd::script:
      return playScript(options, tree);
    case FrontEnd::browser:
      return playInBrowser(options, tree);
  }
}

void runGui(std::span<char*> arguments) {
  const std::filesystem::path tree = arguments[0];
  const bool is_enclosed = arguments[1] == std::string_view(kEnclosed);
  const std::string menu = arguments[2];
  desk::runGuiProcess(tree, is_enclosed,
                      {.load = &stowline::load,
                       .main_menu = "Stowline",
                       .arguments = {kPluginPath, menu},
                       .translations = readTranslations(arguments[3])});
}

}  // namespace command
