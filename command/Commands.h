#pragma once

#include <CLI/CLI.hpp>

namespace command {

/// Raises CLI::RequiredError for the first of `options` that was not given. Unlike the library's
/// own check it comes after that of unknown options, so that a mistyped one is named.
inline void require(std::initializer_list<const CLI::Option*> options) {
  for (const CLI::Option* option : options) {
    if (option->count() == 0) throw CLI::RequiredError(option->get_name());
  }
}

/// Adds `stowline receiver new` and `stowline receiver flash`.
void addReceiver(CLI::App& stowline);

/// Adds `stowline auto`.
void addAuto(CLI::App& stowline);

/// Adds `stowline completion`. The other commands are to be there first.
void addCompletion(CLI::App& stowline);

/// Adds `stowline desk`.
void addDesk(CLI::App& stowline);

/// Adds `stowline doctor`.
void addDoctor(CLI::App& stowline);

/// Adds `stowline list`.
void addList(CLI::App& stowline);

/// Adds `stowline show`.
void addShow(CLI::App& stowline);

/// Adds `stowline verify`.
void addVerify(CLI::App& stowline);

}  // namespace command
