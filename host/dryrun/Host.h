#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/dryrun/System.h"
#include "host/native/SettingsFile.h"
#include "host/plain/Host.h"
#include "host/plain/Session.h"

namespace dryrun {

/// A receiver on which the module can be used without any effect: what its screens ask for is
/// recorded, and its dialogs stay unanswered.
class Host : public plain::Host {
 public:
  /// `system` outlives the host. `model`: the receiver's, "" for the one that its files name.
  /// `settings`: the receiver's settings file, "" for the defaults.
  Host(System& system, const std::string& model, const std::string& settings);

  System& system() const { return system_; }

  /// Returns the lines that were logged.
  const std::vector<std::string>& log() const { return log_; }

  /// A session for the module's screens.
  const host::Object& session() const { return session_; }

  /// Returns how many dialogs were opened and package commands started since this was last asked.
  std::size_t takeRequests() { return std::exchange(requests_, 0); }

 private:
  System& system_;
  native::SettingsFile settings_;
  host::Object session_;
  std::vector<std::string> log_;
  std::size_t requests_ = 0;
};

}  // namespace dryrun
