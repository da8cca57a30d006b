#include "host/native/OsError.h"

#include <cstring>

namespace native {

plain::Error osError(int number, const std::string& path) {
  const std::string reason = std::strerror(number);
  return {"OSError", "[Errno " + std::to_string(number) + "] " + reason + ": '" + path + "'",
          number};
}

std::string reasonOf(const plain::Error& error) {
  const std::string& message = error.message();
  if (!message.starts_with("[Errno ")) return message;
  return message.substr(message.find("] ") + 2);
}

}  // namespace native
