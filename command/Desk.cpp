#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "Commands.h"
#include "Setup.h"
#include "Stowline.h"
#include "gui/GuiProcess.h"
#include "play/ScriptPlayer.h"
#include "play/Words.h"
#include "supervisor/Supervisor.h"
#include "tree/ReceiverTree.h"

namespace command {
namespace {

constexpr const char* kPluginPath = "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel";

struct Options {
  std::filesystem::path receiver;
  std::string menu = "backup";
  std::string words;
  std::string frames = "text";
  desk::Records records;
};

/// Returns the module as the stand-in runs it, opening the main menu of the flavour `menu`.
desk::Application moduleWith(const std::string& menu) {
  return {.load = stowline::load, .main_menu = [menu](host::Host& host) {
            return host::ScreenClass{
                .name = "Stowline",
                .arguments = {kPluginPath, menu},
                .create = [&host, menu](host::ScreenPeer& peer, host::Session& session) {
                  return std::make_unique<stowline::Stowline>(host, peer, session, kPluginPath,
                                                              menu);
                }};
          }};
}

void runDesk(const Options& options) {
  const std::vector<std::string> words = desk::parseWords(options.words);
  desk::requireTree(options.receiver);
  const std::filesystem::path tree = std::filesystem::canonical(options.receiver);

  desk::ScriptPlayer player(
      options.frames == "json" ? desk::FrameFormat::json : desk::FrameFormat::text, std::cout);
  desk::Supervisor supervisor(
      [&](desk::Channel channel) {
        desk::runGuiProcess(tree, moduleWith(options.menu), std::move(channel));
      },
      options.records, player);
  player.play(supervisor, words);
}

}  // namespace

void addDesk(CLI::App& stowline) {
  const auto options = std::make_shared<Options>();
  CLI::App* desk = stowline.add_subcommand("desk", "Open the main menu on a stand-in receiver.");
  CLI::Option* receiver =
      desk->add_option("--receiver", options->receiver, "the receiver's directory")
          ->type_name("DIR");
  desk->add_option("--menu", options->menu, "the flavour of the main menu")
      ->check(CLI::IsMember({"backup", "restore"}))
      ->capture_default_str();
  CLI::Option* play = desk->add_option("--play", options->words, "the keys to press, in order")
                          ->type_name("WORDS")
                          ->check([](const std::string& script) {
                            try {
                              desk::parseWords(script);
                              return std::string();
                            } catch (const desk::UnknownWord& error) {
                              return std::string(error.what());
                            }
                          });
  desk->add_option("--frames", options->frames, "how frames are printed")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str();
  desk->add_option("--log", options->records.log, "append the module's log lines to this file")
      ->type_name("FILE");
  desk->add_option("--trace", options->records.trace, "append every shell command to this file")
      ->type_name("FILE");
  desk->callback([=] {
    require({receiver, play});
    runDesk(*options);
  });
}

}  // namespace command
