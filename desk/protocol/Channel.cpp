#include "desk/protocol/Channel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace desk {

void Channel::send(const std::string& line) {
  const std::string bytes = line + "\n";
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count =
        ::send(socket_.number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno != EINTR) return;
    if (count > 0) sent += static_cast<std::size_t>(count);
  }
}

std::optional<std::string> Channel::receive() {
  for (;;) {
    if (auto line = receiveRead()) return line;
    if (!readMore()) return std::nullopt;
  }
}

std::optional<std::string> Channel::receiveRead() {
  const std::size_t end = unread_.find('\n');
  if (end == std::string::npos) return std::nullopt;
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end + 1);
  return line;
}

bool Channel::readMore() {
  std::array<char, 65536> buffer{};
  ssize_t count = 0;
  do {
    count = read(socket_.number(), buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  if (count <= 0) return false;
  unread_.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

}  // namespace desk
