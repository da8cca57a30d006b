#pragma once

#include <CLI/CLI.hpp>

namespace command {

/// Adds the commands that this build has, each with its options.
void addCommands(CLI::App& stowline);

/// Prints to standard output what completes the words of `stowline` in `shell`, "bash" or "zsh".
void printCompletion(CLI::App& stowline, const std::string& shell);

}  // namespace command
