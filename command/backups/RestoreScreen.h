#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/dryrun/Host.h"
#include "host/plain/Screen.h"

namespace backups {

/// The module's own restore list in a dry run: what it lists, what it takes and what it would run
/// is the module's decision.
class RestoreScreen {
 public:
  /// What pressing OK on a row comes to.
  struct Outcome {
    bool is_taken = false;              ///< whether anything comes of it
    std::vector<std::string> commands;  ///< the shell commands that run at once, in order
  };

  /// `host` outlives the screen; `restoretype` as of the class StowlineRestore. Raises what listing
  /// raises.
  RestoreScreen(dryrun::Host& host, const std::string& restoretype);

  /// Returns the names that are listed, in the list's order.
  std::vector<std::string> rows() const;

  /// Presses OK on a row, the first being 0. Questions stay unanswered.
  Outcome pressOk(std::size_t row);

 private:
  dryrun::Host& host_;
  plain::OpenScreen screen_;
};

/// Returns the shell commands of the confirmed restore of the configuration archive `path`, in
/// order.
std::vector<std::string> configurationRestore(dryrun::Host& host, const std::string& path);

/// Whether a shell takes `text` as one word that means itself: a restore does nothing with a backup
/// whose path is none.
bool isShellWord(std::string_view text);

}  // namespace backups
