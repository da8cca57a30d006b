#include "desk/gui/Channel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <nlohmann/json.hpp>

namespace desk {

void Channel::send(const Message& message) {
  const std::string line = message.dump() + "\n";
  for (std::size_t sent = 0; sent < line.size();) {
    const ssize_t count =
        ::send(socket_.number(), line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno != EINTR) return;
    if (count > 0) sent += static_cast<std::size_t>(count);
  }
}

std::optional<Channel::Message> Channel::receive() {
  for (;;) {
    if (auto message = receiveRead()) return message;
    if (!readMore()) return std::nullopt;
  }
}

std::optional<Channel::Message> Channel::receiveRead() {
  const std::size_t end = unread_.find('\n');
  if (end == std::string::npos) return std::nullopt;
  Message message = Message::parse(unread_.substr(0, end));
  unread_.erase(0, end + 1);
  return message;
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
