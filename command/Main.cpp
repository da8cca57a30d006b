#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/Escape.h"
#include "command/CommandLine.h"
#include "command/Commands.h"
#include "host/plain/Error.h"

namespace {

constexpr int kUsageError = 2;

/// Returns `text` on one line, for what is said of an error.
std::string oneLine(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  for (char& character : text) {
    if (character == '\n') character = ' ';
  }
  return base::escapeControls(text);
}

/// Returns the command line of the help page that an error is about.
std::string helpCommand(const CLI::App& stowline) {
  std::string line = "stowline";
  const CLI::App* app = &stowline;
  while (!app->get_subcommands().empty()) {
    app = app->get_subcommands().front();
    line += " " + app->get_name();
  }
  return line + " --help";
}

/// Returns what is wrong with a command line. The library names words that it does not know from
/// the last to the first.
std::string reasonOf(const CLI::ParseError& error, const CLI::App& stowline) {
  if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ExtrasError)) return error.what();
  std::string reason = "not understood:";
  for (const std::string& word : stowline.remaining(true)) reason += " " + word;
  return reason;
}

/// Takes the standard streams' numbers that are free, so that no other descriptor becomes one of
/// them; what is written to such a stream fails.
void occupyStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDONLY);
  }
}

/// Returns the commands' names: "one, two or three".
std::string namesOf(const std::vector<CLI::App*>& commands) {
  std::string names;
  for (const CLI::App* command : commands) {
    const bool is_last = command == commands.back();
    names += (names.empty() ? "" : is_last ? " or " : ", ") + command->get_name();
  }
  return names;
}

void requireWritten() {
  if (!std::cout.flush()) throw std::runtime_error("cannot write to standard output");
}

int run(CLI::App& stowline, int argc, char** argv) {
  try {
    stowline.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    stowline.exit(help);
  } catch (const CLI::CallForVersion& version) {
    stowline.exit(version);
  }
  requireWritten();
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
#ifdef STOWLINE_STAND_IN
  const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
  if (argc == 6 && arguments[1] == std::string_view(command::kGui)) {
    command::runGui(arguments.subspan(2));
  }
#endif
  occupyStandardStreams();
  CLI::App stowline("Backup and restore of a set-top box.", "stowline");
  stowline.set_version_flag("--version", "stowline " STOWLINE_VERSION);
  stowline.require_subcommand(0, 1);
  stowline.final_callback([&stowline] {
    if (stowline.get_subcommands().empty()) {
      throw CLI::ValidationError("name a command: " + namesOf(stowline.get_subcommands({})));
    }
  });
  command::addCommands(stowline);
  try {
    return run(stowline, argc, argv);
  } catch (const CLI::ParseError& error) {
    std::cerr << "stowline: " << oneLine(reasonOf(error, stowline)) << " (see '"
              << helpCommand(stowline) << "')\n";
    return kUsageError;
  } catch (const std::exception& error) {
    std::cout.flush();
    std::cerr << "stowline: " << oneLine(plain::reasonOf(error)) << "\n";
    return EXIT_FAILURE;
  }
}
