#include "host/native/Model.h"

namespace native {

std::string readModel(host::OperatingSystem& os) {
  const std::vector<std::string> lines = os.open(kModelFile);
  if (lines.empty()) return "";
  return lines.front().substr(0, lines.front().find_last_not_of('\n') + 1);
}

bool isModel(const std::string& name) {
  constexpr const char* kCharacters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-+";
  return !name.empty() && name.find_first_not_of(kCharacters) == std::string::npos;
}

}  // namespace native
