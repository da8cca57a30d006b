#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <string>

#include "command/Commands.h"
#include "desk/tree/ReceiverTree.h"

namespace command {
namespace {

struct ReceiverOptions {
  std::filesystem::path dir;
  std::string model = "solo2";
};

}  // namespace

void addReceiver(CLI::App& stowline) {
  const auto options = std::make_shared<ReceiverOptions>();
  CLI::App* receiver = stowline.add_subcommand("receiver", "Lay out or flash a receiver tree.");
  receiver->require_subcommand(0, 1);
  receiver->callback([receiver] {
    if (receiver->get_subcommands().empty()) {
      throw CLI::ValidationError("name a command: receiver new or receiver flash");
    }
  });

  CLI::App* lay_out = receiver->add_subcommand(
      "new", "Lay out a receiver that has been in use, in a new or empty directory.");
  CLI::Option* new_dir = lay_out->add_option("DIR", options->dir, "the directory");
  lay_out->add_option("--model", options->model, "the receiver's model")
      ->check(CLI::IsMember(desk::models()))
      ->capture_default_str();
  lay_out->callback([=] {
    require({new_dir});
    desk::layOut(options->dir, options->model);
  });

  CLI::App* flash = receiver->add_subcommand(
      "flash", "Put the receiver back to factory state; what is below /media stays.");
  CLI::Option* flash_dir = flash->add_option("DIR", options->dir, "the receiver's directory");
  flash->callback([=] {
    require({flash_dir});
    desk::flash(options->dir);
  });
}

}  // namespace command
