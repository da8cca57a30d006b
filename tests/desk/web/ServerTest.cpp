#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "desk/web/Server.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk::web {
namespace {

using std::chrono::milliseconds;

using Clock = std::chrono::steady_clock;

constexpr milliseconds kLong(10000);
constexpr const char* kHeaders =
    "Connection: close\r\n"
    "Cache-Control: no-store\r\n"
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self' data:; font-src 'self'; connect-src 'self'; base-uri 'none'; form-action "
    "'none'; frame-ancestors 'none'\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "X-Content-Type-Options: nosniff\r\n";

/// A connection to a server, which takes little that it does not read.
class Client {
 public:
  explicit Client(const std::string& port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    const int size = 4096;
    setsockopt(socket_.number(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(std::stoi(port)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* general = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(connect(socket_.number(), general, sizeof address), 0);
  }

  void send(const std::string& text) const {
    EXPECT_EQ(::send(socket_.number(), text.data(), text.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(text.size()));
  }

  /// Whether something comes in this time, or the end.
  bool hears(milliseconds patience) const {
    pollfd watched = {.fd = socket_.number(), .events = POLLIN, .revents = 0};
    return poll(&watched, 1, static_cast<int>(patience.count())) == 1;
  }

  /// Takes what comes next, or nothing in a long time. Returns whether there is more to come.
  bool take(std::string& text) const {
    std::array<char, 4096> bytes{};
    if (!hears(kLong)) return false;
    const ssize_t count = recv(socket_.number(), bytes.data(), bytes.size(), 0);
    if (count > 0) text.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
  }

  /// Returns what comes until the end; "..." at the end when that does not come.
  std::string all() const {
    const auto until = Clock::now() + kLong;
    std::string text;
    while (Clock::now() < until && take(text)) {
    }
    return Clock::now() < until ? text : text + "...";
  }

 private:
  base::Descriptor socket_;
};

struct ServerTest : testing::Test {
  void serve(const Limits& limits = {}) {
    server.emplace(board, fonts, pictures, 0, "secret", limits);
    const std::string address = server->address();
    const std::size_t begin = address.rfind(':') + 1;
    port = address.substr(begin, address.find('/', begin) - begin);
  }

  Client ask(const std::string& method, const std::string& path) const {
    Client client(port);
    client.send(method + " " + path + "?token=secret HTTP/1.1\r\nHost: localhost:" + port +
                "\r\n\r\n");
    return client;
  }

  /// Returns an answer without its date.
  std::string answer(const std::string& method, const std::string& path) const {
    std::string text = ask(method, path).all();
    const std::size_t date = text.find("Date: ");
    if (date != std::string::npos) text.erase(date, text.find('\n', date) + 1 - date);
    return text;
  }

  /// Returns an answer without content.
  static std::string empty(const std::string& status, const std::string& header = "") {
    return "HTTP/1.1 " + status + "\r\n" + kHeaders + header + "Content-Length: 0\r\n\r\n";
  }

  support::TemporaryDirectory receiver;
  Notices notices;
  drawing::Fonts fonts{{}, "", notices};
  drawing::Pictures pictures{receiver.path()};
  Board board;
  std::optional<Server> server;
  std::string port;
};

TEST_F(ServerTest, EveryAnswerSaysWhatThePageMayDo) {
  serve();
  EXPECT_EQ(answer("GET", "/other"), empty("404 Not Found"));
  EXPECT_EQ(answer("POST", "/press"), empty("400 Bad Request"));
}

TEST_F(ServerTest, OtherMethodsAreRefused) {
  serve();
  for (const char* method : {"HEAD", "POST", "PUT", "DELETE", "OPTIONS", "TRACE", "get", "X"}) {
    for (const char* path : {"/", "/events"}) {
      EXPECT_EQ(answer(method, path), empty("405 Method Not Allowed", "Allow: GET\r\n"));
    }
  }
  for (const char* method : {"HEAD", "GET", "PUT"}) {
    EXPECT_EQ(answer(method, "/press"), empty("405 Method Not Allowed", "Allow: POST\r\n"));
  }
}

TEST_F(ServerTest, ConnectionsBeyondTheMostWaitUntilOthersAreLetGo) {
  serve({.connections = 2, .request = milliseconds(2000), .tick = milliseconds(50)});
  const std::array<Client, 2> silent = {Client(port), Client(port)};
  const Client third = ask("GET", "/other");
  EXPECT_FALSE(third.hears(milliseconds(200)));
  for (const Client& client : silent) EXPECT_EQ(client.all(), "");
  EXPECT_TRUE(third.all().starts_with("HTTP/1.1 404 "));
}

/// Returns the content of an answer in chunks (RFC 9112, section 7.1), as far as it has come.
std::string contentOf(const std::string& answer) {
  std::string content;
  std::size_t at = answer.find("\r\n\r\n") + 4;
  for (std::size_t size = 1; at < answer.size() && size > 0;) {
    size = std::stoul(answer.substr(at), nullptr, 16);
    at = answer.find("\r\n", at) + 2;
    content += answer.substr(at, size);
    at += size + 2;
  }
  return content;
}

TEST_F(ServerTest, ViewerHearsWhatHappensAtOnce) {
  serve();
  const Client viewer = ask("GET", "/events");
  std::string heard;
  ASSERT_TRUE(viewer.take(heard));
  const auto begin = Clock::now();
  for (int line = 10; line < 20; ++line) {
    board.addLine(std::to_string(line));
    while (heard.find(std::to_string(line) + "\n") == std::string::npos) {
      ASSERT_TRUE(viewer.take(heard));
    }
  }
  EXPECT_LT(Clock::now() - begin, milliseconds(3000));
}

TEST_F(ServerTest, ViewerHearsThatTheReceiverIsThereAndAllThatThereIsBeforeTheEnd) {
  serve({.tick = milliseconds(50)});
  const std::array<Client, 2> viewers = {ask("GET", "/events"), ask("GET", "/events")};
  for (const Client& viewer : viewers) ASSERT_TRUE(viewer.hears(kLong));
  std::this_thread::sleep_for(milliseconds(200));
  board.addLine("last");
  server.reset();
  const std::string alive = "event: alive\ndata: null\n\n";
  for (const Client& viewer : viewers) {
    std::string heard = contentOf(viewer.all());
    EXPECT_TRUE(heard.starts_with(alive)) << heard;
    while (heard.starts_with(alive)) heard.erase(0, alive.size());
    EXPECT_EQ(heard, "event: log\ndata: last\n\nevent: end\ndata: null\n\n");
  }
}

TEST_F(ServerTest, ViewerWhoDoesNotReadIsLetGo) {
  serve({.answer = milliseconds(100), .tick = milliseconds(50)});
  board.showPicture(std::string(10'000'000, 'x'));
  const Client viewer = ask("GET", "/events");
  std::this_thread::sleep_for(milliseconds(2000));
  EXPECT_LT(viewer.all().size(), 10'000'000U);
}

TEST_F(ServerTest, ViewerWhoDoesNotReadHoldsTheEndUpForAMomentAlone) {
  serve();
  board.showPicture(std::string(10'000'000, 'x'));
  const Client viewer = ask("GET", "/events");
  ASSERT_TRUE(viewer.hears(kLong));
  const auto begin = Clock::now();
  server.reset();
  EXPECT_LT(Clock::now() - begin, milliseconds(3000));
}

TEST_F(ServerTest, PortOfAnotherServerIsRefused) {
  serve();
  try {
    const Server second(board, fonts, pictures, std::stoi(port), "secret");
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "cannot listen on port " + port + ": Address already in use");
  }
}

}  // namespace
}  // namespace desk::web
