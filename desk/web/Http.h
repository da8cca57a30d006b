#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

struct MHD_Connection;
struct MHD_Daemon;

namespace desk::web {

/// What a server takes upon itself, whoever is at the other end of its connections.
struct Limits {
  unsigned connections = 1200;               ///< at a time; more wait in the system's queue
  std::size_t memory = 8192;                 ///< bytes for each: its request without the body
  std::size_t body = 64;                     ///< bytes of a request's body
  std::chrono::milliseconds request{4000};   ///< for a request to come
  std::chrono::milliseconds answer{5000};    ///< for each part of an answer to go
  std::chrono::milliseconds farewell{1000};  ///< for all answers to go when the server ends
  std::chrono::milliseconds tick{1000};      ///< how often the times above are looked at
};

struct Request {
  int port;  ///< of the server
  std::string method;
  std::string path;   ///< decoded, without the query
  std::string token;  ///< that of the query, "" for none
  std::string host;
  std::optional<std::string> origin;
  std::optional<std::string> body;  ///< nothing for one that is too long
};

/// Bytes that several answers share.
using Content = std::shared_ptr<const std::string>;

struct Answer {
  unsigned status = 200;
  std::vector<std::pair<const char*, std::string>> headers;
  Content content;  ///< may be null
  /// What follows, where that is not known yet: the next part; null when there is none now, nothing
  /// when there will be none.
  std::function<std::optional<Content>()> next;
  Content idle;  ///< stands for a part when there has been none for a tick
};

/// An HTTP server on the loopback interface with one request a connection and a thread of its own,
/// which takes no signals.
class Http {
 public:
  /// Called by the server's thread.
  using Handler = std::function<Answer(const Request&)>;

  /// Listens on `port`, on any free one for 0. An answer that has no part now is asked again when
  /// `news`, an eventfd(2), becomes readable, and every tick; `news` outlives the server, and
  /// nobody else reads it. Raises std::runtime_error, with the reason, when it cannot listen, and
  /// base::SystemError.
  Http(int port, int news, const Limits& limits, Handler handler);

  /// Ends every connection: one that is not being answered at once, one that is when the answer has
  /// gone or the farewell's time is over. An answer that waits for its next part ends there.
  ~Http();
  Http(const Http&) = delete;
  Http& operator=(const Http&) = delete;

  int port() const { return port_; }

 private:
  using Time = std::chrono::steady_clock::time_point;

  /// A connection, from its beginning to its end.
  struct Visit {
    std::optional<Time> until;             ///< by then it has to get on
    std::optional<std::string> body = "";  ///< of the request, as far as it has come
    bool has_begun = false;                ///< whether the request's headers have come
    bool is_answered = false;
  };

  struct Sending;
  struct Calls;

  void run() noexcept;
  void step(std::chrono::milliseconds patience);
  void wakeWaiting();
  void letGo() const;
  Request requestOf(MHD_Connection* connection, const char* path, const char* method) const;
  bool answer(MHD_Connection* connection, Answer answer);

  const Limits limits_;
  const Handler handler_;
  const int news_;
  int error_ = 0;  ///< the errno of the library's last complaint
  MHD_Daemon* daemon_;
  int port_;
  std::map<MHD_Connection*, Visit> visits_;
  std::vector<MHD_Connection*> waiting_;  ///< whose answers have no part now
  Time tick_;
  std::atomic<bool> is_closing_ = false;
  std::thread thread_;
};

}  // namespace desk::web
