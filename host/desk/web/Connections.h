#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <set>

namespace desk::web {

/// The connections that a server of this process has accepted on one of its ports, each by the port
/// at its other end. Every operation may be called from any thread.
class Connections {
 public:
  using Clock = std::chrono::steady_clock;

  /// `port`: the server's own.
  explicit Connections(int port) : port_(port) {}

  /// Takes note that who is at the other end of a connection may be there.
  void trust(int peer);

  /// Ends the connections that have been there for longer than `patience` without being trusted, as
  /// far as earlier calls have seen them.
  void endStrangers(std::chrono::milliseconds patience);

  /// Ends all of them.
  void endAll();

 private:
  /// The descriptor of each connection by its peer. Raises std::filesystem::filesystem_error where
  /// there is no /proc.
  std::map<int, int> open() const;

  int port_;
  std::mutex mutex_;
  std::set<int> trusted_;
  std::map<int, Clock::time_point> strangers_;  ///< since when they have been there
};

}  // namespace desk::web
