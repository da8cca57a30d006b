#include "command/preview/Plan.h"

#include <string_view>

#include "command/backups/RestoreScreen.h"

namespace preview {
namespace {

/// Returns the argument of a command that is `program` and one word, "" for any other command.
std::string argumentOf(const std::string& command, std::string_view program) {
  if (!command.starts_with(program)) return "";
  const std::string argument = command.substr(program.size());
  const bool is_word = argument.find_first_of(" \t\n;&|<>()$`\"'") == std::string::npos;
  return is_word && argument.starts_with('/') ? argument : "";
}

void add(std::vector<std::string>& arguments, const std::string& argument) {
  if (!argument.empty()) arguments.push_back(argument);
}

}  // namespace

Plan planOf(const std::vector<std::string>& commands) {
  Plan plan{.deleted_first = {},
            .archives = {},
            .torn = {},
            .removed_again = {},
            .kept = backups::keptBy(commands)};
  bool has_unpacked = false;
  for (const std::string& command : commands) {
    const std::vector<std::string> unpacked = backups::unpackedBy({command});
    if (!unpacked.empty()) {
      has_unpacked = true;
      plan.removed_again.clear();
      for (const std::string& archive : unpacked) {
        (backups::isShellWord(archive) ? plan.archives : plan.torn).push_back(archive);
      }
    } else if (has_unpacked) {
      add(plan.removed_again, argumentOf(command, "rm -rf "));
    } else {
      add(plan.deleted_first, argumentOf(command, "rm -f "));
    }
  }
  return plan;
}

}  // namespace preview
