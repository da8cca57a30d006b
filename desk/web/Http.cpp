#include "desk/web/Http.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <stdexcept>
#include <system_error>

#include "base/Descriptor.h"
#include "base/SystemError.h"

namespace desk::web {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// How much of an answer whose size is known goes at once, in bytes; any other goes through its
/// connection's own memory.
constexpr std::size_t kPart = 2048;

/// Raises the process's limit of descriptors as far as it may, so that there are so many beside
/// those for its other work. Returns for how many there is room, at most `count`.
unsigned makeRoomFor(unsigned count) {
  constexpr rlim_t kOther = 64;
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) throw base::SystemError(errno, "getrlimit");
  if (limit.rlim_cur < count + kOther) {
    limit.rlim_cur = std::min(count + kOther, limit.rlim_max);
    if (setrlimit(RLIMIT_NOFILE, &limit) != 0) throw base::SystemError(errno, "setrlimit");
  }
  return static_cast<unsigned>(std::clamp(limit.rlim_cur, kOther + 1, count + kOther) - kOther);
}

}  // namespace

/// An answer on its way.
struct Http::Sending {
  /// Copies what comes next, as far as there is any. Returns its size.
  std::size_t take(char* bytes, std::size_t size) {
    std::size_t count = 0;
    while (count < size && (sent < answer.content->size() || goOn())) {
      const std::size_t copied = answer.content->copy(bytes + count, size - count, sent);
      sent += copied;
      count += copied;
    }
    return count;
  }

  /// Goes on to the next part. Returns whether there is one now.
  bool goOn() {
    if (!answer.next) return false;
    auto part = answer.next();
    if (!part) answer.next = nullptr;
    if (part && !*part && has_waited) part = answer.idle;
    if (!part || !*part) return false;
    answer.content = std::move(*part);
    sent = 0;
    has_waited = false;
    return true;
  }

  Http& http;
  MHD_Connection* connection = nullptr;
  Answer answer;
  std::size_t sent = 0;     ///< bytes of its content
  bool has_waited = false;  ///< since its last part
};

/// What the library calls, `self` being the server or an answer on its way.
struct Http::Calls {
  /// Takes note of the library's complaint. At the start it is of the system.
  static void complain(void* self, const char* /*format*/, va_list /*arguments*/) {
    static_cast<Http*>(self)->error_ = errno;
  }

  /// Says that a connection begins or ends.
  static void notify(void* self, MHD_Connection* connection, void** /*context*/,
                     MHD_ConnectionNotificationCode what) noexcept {
    Http& http = *static_cast<Http*>(self);
    if (what == MHD_CONNECTION_NOTIFY_STARTED) {
      http.visits_[connection].until = Clock::now() + http.limits_.request;
    } else {
      http.visits_.erase(connection);
    }
  }

  /// Takes a part of a request: its headers, then parts of its body, then an empty one at its end.
  /// All of it is read before it is answered: an answer is lost when the connection closes before
  /// what has come is read.
  static MHD_Result take(void* self, MHD_Connection* connection, const char* path,
                         const char* method, const char* /*version*/, const char* bytes,
                         std::size_t* size, void** /*context*/) noexcept {
    Http& http = *static_cast<Http*>(self);
    Visit& visit = http.visits_.at(connection);
    const std::string_view part(bytes, std::exchange(*size, 0));
    if (std::exchange(visit.has_begun, true) && part.empty()) {
      visit.is_answered = true;
      Answer answer = http.handler_(http.requestOf(connection, path, method));
      return http.answer(connection, std::move(answer)) ? MHD_YES : MHD_NO;
    }
    const bool is_too_long = !visit.body || visit.body->size() + part.size() > http.limits_.body;
    visit.body = is_too_long ? std::nullopt : std::optional(*visit.body + std::string(part));
    return MHD_YES;
  }

  /// Puts the next bytes of an answer where there is room for so many. Returns how many they are;
  /// an answer that has none now waits.
  static ssize_t send(void* self, std::uint64_t /*position*/, char* bytes,
                      std::size_t size) noexcept {
    auto& sending = *static_cast<Sending*>(self);
    Http& http = sending.http;
    Visit& visit = http.visits_.at(sending.connection);
    const std::size_t count = sending.take(bytes, size);
    visit.until = Clock::now() + http.limits_.answer;
    if (count > 0) return static_cast<ssize_t>(count);
    if (!sending.answer.next || http.is_closing_) return MHD_CONTENT_READER_END_OF_STREAM;
    sending.has_waited = true;
    visit.until.reset();
    http.waiting_.push_back(sending.connection);
    MHD_suspend_connection(sending.connection);
    return 0;
  }

  /// Says that an answer is not needed any more.
  static void end(void* self) noexcept { delete static_cast<Sending*>(self); }
};

Http::Http(int port, int news, const Limits& limits, Handler handler)
    : limits_(limits), handler_(std::move(handler)), news_(news) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  daemon_ = MHD_start_daemon(MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME | MHD_USE_ERROR_LOG, 0,
                             nullptr, nullptr, Calls::take, this, MHD_OPTION_EXTERNAL_LOGGER,
                             Calls::complain, this, MHD_OPTION_SOCK_ADDR, &address,
                             MHD_OPTION_CONNECTION_LIMIT, makeRoomFor(limits.connections),
                             MHD_OPTION_CONNECTION_MEMORY_LIMIT, limits.memory,
                             MHD_OPTION_NOTIFY_CONNECTION, Calls::notify, this, MHD_OPTION_END);
  if (daemon_ == nullptr) {
    const std::string reason = error_ == 0 ? "" : ": " + std::generic_category().message(error_);
    throw std::runtime_error("cannot listen on port " + std::to_string(port) + reason);
  }
  port_ = MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_BIND_PORT)->port;
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  thread_ = std::thread([this] { run(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Http::~Http() {
  is_closing_ = true;
  eventfd_write(news_, 1);
  thread_.join();
}

void Http::run() noexcept {
  while (!is_closing_) step(limits_.tick);
  const base::Descriptor listening(MHD_quiesce_daemon(daemon_));
  wakeWaiting();
  const Time until = Clock::now() + limits_.farewell;
  const auto is_answered = [](const auto& visit) { return visit.second.is_answered; };
  while (Clock::now() < until && std::ranges::any_of(visits_, is_answered)) {
    step(std::chrono::ceil<Milliseconds>(until - Clock::now()));
  }
  MHD_stop_daemon(daemon_);
}

/// Waits for something to do, at most so long, and does it.
void Http::step(Milliseconds patience) {
  unsigned long long due = 0;
  if (MHD_get_timeout(daemon_, &due) == MHD_YES) patience = std::min(patience, Milliseconds(due));
  const int visitors = MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
  std::array<pollfd, 2> watched = {pollfd{.fd = visitors, .events = POLLIN, .revents = 0},
                                   pollfd{.fd = news_, .events = POLLIN, .revents = 0}};
  poll(watched.data(), watched.size(), static_cast<int>(patience.count()));
  eventfd_t count = 0;
  const bool has_news = watched[1].revents != 0 && eventfd_read(news_, &count) == 0;
  const bool is_tick = Clock::now() >= tick_;
  if (has_news || is_tick) wakeWaiting();
  MHD_run(daemon_);
  if (!is_tick) return;
  letGo();
  tick_ = Clock::now() + limits_.tick;
}

void Http::wakeWaiting() {
  for (MHD_Connection* connection : waiting_) MHD_resume_connection(connection);
  waiting_.clear();
}

/// Ends the connections that have not got on in time.
void Http::letGo() const {
  const Time now = Clock::now();
  for (const auto& [connection, visit] : visits_) {
    if (!visit.until || *visit.until > now) continue;
    const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    shutdown(info->connect_fd, SHUT_RDWR);
  }
}

Request Http::requestOf(MHD_Connection* connection, const char* path, const char* method) const {
  const auto valueOf = [&](MHD_ValueKind kind, const char* name) {
    const char* value = MHD_lookup_connection_value(connection, kind, name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  };
  return {.port = port_,
          .method = method,
          .path = path,
          .token = valueOf(MHD_GET_ARGUMENT_KIND, "token").value_or(""),
          .host = valueOf(MHD_HEADER_KIND, "Host").value_or(""),
          .origin = valueOf(MHD_HEADER_KIND, "Origin"),
          .body = visits_.at(connection).body};
}

/// Begins to send an answer. Returns whether that is possible.
bool Http::answer(MHD_Connection* connection, Answer answer) {
  if (!answer.content) answer.content = std::make_shared<const std::string>();
  const auto size = answer.next ? MHD_SIZE_UNKNOWN : answer.content->size();
  auto* sending = new Sending{*this, connection, std::move(answer)};
  MHD_Response* response =
      MHD_create_response_from_callback(size, kPart, Calls::send, sending, Calls::end);
  for (const auto& [name, value] : sending->answer.headers) {
    MHD_add_response_header(response, name, value.c_str());
  }
  MHD_add_response_header(response, "Connection", "close");
  const MHD_Result result = MHD_queue_response(connection, sending->answer.status, response);
  MHD_destroy_response(response);
  return result == MHD_YES;
}

}  // namespace desk::web
