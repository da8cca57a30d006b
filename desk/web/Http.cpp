#include "desk/web/Http.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/SystemError.h"

namespace desk::web {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr std::ptrdiff_t kMostConnections = 256;

/// No request is longer, in bytes, with its headers and its body.
constexpr std::size_t kLongestRequest = 8192;

/// How long a request may take to come, and a part of an answer to go; and that when the server
/// closes.
constexpr Milliseconds kRequest(4000);
constexpr Milliseconds kAnswer(5000);
constexpr Milliseconds kFarewell(1000);

/// Waits until one of the descriptors is ready. Returns whether one is.
template <std::size_t count>
bool waitFor(std::array<pollfd, count>& watched, Milliseconds patience) {
  int ready = 0;
  do {
    ready = poll(watched.data(), watched.size(), static_cast<int>(patience.count()));
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

/// A connection, for one request, as the library reads and writes it.
class Connection : public httplib::Stream {
 public:
  /// `closing` is readable when the server closes.
  Connection(base::Descriptor socket, int closing)
      : socket_(std::move(socket)), closing_(closing) {}

  /// Says that there is no more to come, and lets the other end close first: what it has sent and
  /// nobody has read would take the answer with it.
  void finish() {
    shutdown(socket_.number(), SHUT_WR);
    std::array<char, 256> rest{};
    while (read(rest.data(), rest.size()) > 0) {
    }
  }

  bool is_readable() const override { return !unread_.empty() || isReadableWithin({}); }
  socket_t socket() const override { return socket_.number(); }

  bool is_writable() const override {
    std::array<pollfd, 2> watched = {
        pollfd{.fd = socket_.number(), .events = POLLOUT, .revents = 0},
        pollfd{.fd = closing_, .events = POLLIN, .revents = 0}};
    if (!waitFor(watched, kAnswer)) return false;
    if (watched[0].revents != 0) return true;
    std::array<pollfd, 1> last = {watched[0]};
    return waitFor(last, kFarewell);
  }

  // Nobody asks who it is: whoever is here is on this machine.
  void get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
  void get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}

  ssize_t read(char* bytes, std::size_t size) override {
    if (left_ == 0 || (unread_.empty() && !fill())) return -1;
    const std::size_t count = std::min({size, unread_.size(), left_});
    std::ranges::copy(unread_.substr(0, count), bytes);
    unread_.remove_prefix(count);
    left_ -= count;
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* bytes, std::size_t size) override {
    if (!is_writable()) return -1;
    return send(socket_.number(), bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
  }

 private:
  bool isReadableWithin(Milliseconds patience) const {
    std::array<pollfd, 2> watched = {pollfd{.fd = socket_.number(), .events = POLLIN, .revents = 0},
                                     pollfd{.fd = closing_, .events = POLLIN, .revents = 0}};
    return waitFor(watched, patience) && watched[1].revents == 0;
  }

  bool fill() {
    // What is there already is taken, however late this thread has come to it.
    const auto left = std::chrono::duration_cast<Milliseconds>(until_ - Clock::now());
    if (!isReadableWithin(std::max(left, Milliseconds(0)))) return false;
    const ssize_t count = recv(socket_.number(), buffer_.data(), buffer_.size(), MSG_DONTWAIT);
    if (count <= 0) return false;
    unread_ = {buffer_.data(), static_cast<std::size_t>(count)};
    return true;
  }

  base::Descriptor socket_;
  int closing_;
  std::array<char, 4096> buffer_{};
  std::string_view unread_;             ///< what the buffer has beyond what has been read
  std::size_t left_ = kLongestRequest;  ///< so much more of the request may come
  Clock::time_point until_ = Clock::now() + kRequest;  ///< until when
};

/// A thread for each connection that there may be; the next one is accepted when one of them ends.
class Workers : public httplib::ThreadPool {
 public:
  Workers() : ThreadPool(kMostConnections) {}

  void enqueue(std::function<void()> task) override {
    free_.acquire();
    ThreadPool::enqueue([this, task = std::move(task)] {
      task();
      free_.release();
    });
  }

 private:
  std::counting_semaphore<kMostConnections> free_{kMostConnections};
};

/// Takes from a request what the library would do by itself: parts of an answer as often as one
/// likes, and packing and unpacking.
void makePlain(httplib::Request& request) {
  request.ranges.clear();
  for (const char* header : {"Accept-Encoding", "Content-Encoding"}) request.headers.erase(header);
}

/// A port that another server has is taken: without the library's own SO_REUSEPORT.
void setOptions(socket_t socket) {
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

}  // namespace

Http::Http(int port) : closing_(eventfd(0, EFD_CLOEXEC)) {
  constexpr const char* kLoopback = "127.0.0.1";
  if (!closing_) throw base::SystemError(errno, "eventfd");
  new_task_queue = [] { return new Workers; };
  set_socket_options(setOptions);
  set_tcp_nodelay(true);
  port_ = port == 0 ? bind_to_any_port(kLoopback) : (bind_to_port(kLoopback, port) ? port : -1);
  // The library's own queue holds five connections. The system drops what comes beyond, and a
  // client tries again after one second, three, seven.
  if (port_ <= 0 || ::listen(svr_sock_, SOMAXCONN) != 0) {
    throw std::runtime_error("cannot listen on port " + std::to_string(port));
  }
}

void Http::close() {
  eventfd_write(closing_.number(), 1);
  stop();
}

bool Http::process_and_close_socket(socket_t socket) {
  Connection connection(base::Descriptor(socket), closing_.number());
  bool is_closed = false;
  const bool is_read = process_request(connection, true, is_closed, makePlain);
  connection.finish();
  return is_read;
}

}  // namespace desk::web
