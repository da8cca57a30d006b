#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/look/Host.h"
#include "plugin/src/StowlineRestore.h"

namespace backups {

/// The module's own restore list, used where nothing happens: what it lists, what it takes and what
/// it would run is the module's decision.
class RestoreScreen {
 public:
  /// What pressing OK on a row comes to.
  struct Outcome {
    bool is_taken = false;              ///< whether anything comes of it
    std::vector<std::string> commands;  ///< the shell commands that run at once, in order
  };

  /// `host` outlives the screen; `restoretype` as of StowlineRestore. Raises what listing raises.
  RestoreScreen(look::Host& host, const std::string& restoretype);

  /// Returns the names that are listed, in the list's order.
  const std::vector<std::string>& rows() const { return screen_.flist; }

  /// Presses OK on a row, the first being 0. Questions stay unanswered.
  Outcome pressOk(std::size_t row);

 private:
  look::Host& host_;
  look::System& system_;
  look::Peer peer_;
  stowline::StowlineRestore screen_;
};

/// Returns the shell commands of the confirmed restore of the configuration archive `path`, in
/// order.
std::vector<std::string> configurationRestore(look::Host& host, const std::string& path);

/// Returns the files that a restore by `commands` keeps as the receiver has them: those that a
/// command puts back from a copy ("cat COPY > FILE ; rm COPY"), in order.
std::vector<std::string> keptBy(const std::vector<std::string>& commands);

/// Whether a shell takes `text` as one word that means itself: a restore does nothing with a backup
/// whose path is none.
bool isShellWord(std::string_view text);

/// Returns the archives that `commands` unpack, in order.
std::vector<std::string> unpackedBy(const std::vector<std::string>& commands);

}  // namespace backups
