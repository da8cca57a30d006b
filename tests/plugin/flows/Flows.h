#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/plugin/Receiver.h"

namespace stowline {

/// A flow on a receiver that was prepared for it.
struct Prepared {
  std::function<void()> go;
  std::function<std::string()> state;  ///< what of the module's state the flow changes
};

/// An error of `operation` ends inside the module, and then these operations follow.
struct Caught {
  std::string operation;
  std::string then;
};

/// An error of `operation`, or of a later one, leaves this state.
struct StateFrom {
  std::string operation;
  std::string state;
};

/// One use of the module, what it does on the host, and where the errors of that end. An error that
/// is not among the caught ones reaches the caller as it was raised, and nothing follows it.
struct Flow {
  std::string name;
  std::function<Prepared(Receiver&)> prepare;
  std::string operations;
  std::vector<Caught> caught = {};
  std::vector<StateFrom> states = {};
  std::optional<std::string> completed = {};  ///< the state at the end, if not the last of `states`

  /// The state at the end, where the flow tells any.
  std::optional<std::string> endState() const {
    if (completed || states.empty()) return completed;
    return states.back().state;
  }
};

inline void PrintTo(const Flow& flow, std::ostream* out) {
  *out << flow.name;
}

std::vector<Flow> engineFlows();
std::vector<Flow> menuFlows();
std::vector<Flow> restoreFlows();

/// All of them.
std::vector<Flow> allFlows();

/// Defines the operation that an error of a feed update goes to, which no screen of the module has.
void defineStatus(Receiver& receiver, const Opened& screen);

/// The backup directory is not there to be had, or is not there: either way there is no path, and
/// these operations follow.
std::vector<Caught> withoutDirectory(const std::string& then);
std::vector<Caught> withoutNewDirectory(const std::string& then);

/// A skin without a title: a line in the log, then the opening goes on. `operations` are those of
/// the whole opening.
std::vector<Caught> withoutTitle(const std::string& title, const std::string& operations);

/// Puts the lists one after the other.
std::vector<Caught> both(std::vector<Caught> first, const std::vector<Caught>& second);

}  // namespace stowline
