#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "Commands.h"

namespace {

constexpr int kUsageError = 2;

/// Returns `text` on one line, for what is said of an error.
std::string oneLine(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  for (char& character : text) {
    if (character == '\n') character = ' ';
  }
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App stowline("Backup and restore of a set-top box, on a stand-in receiver.", "stowline");
  stowline.require_subcommand(0, 1);
  stowline.final_callback([&stowline] {
    if (stowline.get_subcommands().empty()) {
      throw CLI::ValidationError("name a command: receiver or desk");
    }
  });
  command::addReceiver(stowline);
  command::addDesk(stowline);
  try {
    stowline.parse(argc, argv);
    return EXIT_SUCCESS;
  } catch (const CLI::CallForHelp& help) {
    return stowline.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "stowline: " << oneLine(error.what()) << " (see 'stowline --help')\n";
    return kUsageError;
  } catch (const std::exception& error) {
    std::cerr << "stowline: " << oneLine(error.what()) << "\n";
    return EXIT_FAILURE;
  }
}
