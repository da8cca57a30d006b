#pragma once

namespace CLI {
class App;
}

namespace command {

/// Adds `stowline receiver new` and `stowline receiver flash`.
void addReceiver(CLI::App& stowline);

/// Adds `stowline desk`.
void addDesk(CLI::App& stowline);

}  // namespace command
