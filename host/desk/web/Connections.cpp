#include "Connections.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <filesystem>
#include <string>

namespace desk::web {
namespace {

/// Returns the port of one end of a connection, 0 for what is no connection of the Internet.
int portOf(int descriptor, decltype(getsockname) end) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  const bool is_known = end(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  return is_known && address.sin_family == AF_INET ? ntohs(address.sin_port) : 0;
}

}  // namespace

std::map<int, int> Connections::open() const {
  std::map<int, int> connections;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const int descriptor = std::stoi(entry.path().filename());
    const int peer = portOf(descriptor, getpeername);
    if (peer != 0 && portOf(descriptor, getsockname) == port_) connections[peer] = descriptor;
  }
  return connections;
}

void Connections::trust(int peer) {
  const std::lock_guard lock(mutex_);
  trusted_.insert(peer);
}

void Connections::endStrangers(std::chrono::milliseconds patience) {
  const std::lock_guard lock(mutex_);
  const std::map<int, int> connections = open();
  std::erase_if(trusted_, [&](int peer) { return !connections.contains(peer); });
  std::erase_if(strangers_, [&](const auto& stranger) {
    return !connections.contains(stranger.first) || trusted_.contains(stranger.first);
  });
  const auto now = Clock::now();
  for (const auto& [peer, descriptor] : connections) {
    if (trusted_.contains(peer)) continue;
    const auto since = strangers_.try_emplace(peer, now).first->second;
    if (now - since > patience) shutdown(descriptor, SHUT_RDWR);
  }
}

void Connections::endAll() {
  for (const auto& [peer, descriptor] : open()) shutdown(descriptor, SHUT_RDWR);
}

}  // namespace desk::web
