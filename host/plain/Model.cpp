#include "host/plain/Model.h"

namespace plain {

std::string readModel(System& system) {
  const std::vector<std::string> lines = system.open(kModelFile);
  if (lines.empty()) return "";
  return lines.front().substr(0, lines.front().find_last_not_of('\n') + 1);
}

bool isModel(const std::string& name) {
  constexpr const char* kCharacters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-+";
  return !name.empty() && name.find_first_not_of(kCharacters) == std::string::npos;
}

}  // namespace plain
