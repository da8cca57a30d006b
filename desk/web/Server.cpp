#include "desk/web/Server.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <utility>

#include "desk/protocol/Word.h"
#include "desk/web/Http.h"
#include "desk/web/page_css.h"
#include "desk/web/page_html.h"
#include "desk/web/page_js.h"
#include "host/native/OsError.h"

namespace desk::web {
namespace {

/// No request's body is longer, in bytes.
constexpr std::size_t kLongestBody = 64;

/// A file of the page, in which marks stand for the token and the picture.
struct PageFile {
  const char* path;
  const char* type;
  std::string_view content;
};

constexpr PageFile kPage[] = {
    {"/", "text/html; charset=utf-8", embedded::page_html},
    {"/page.css", "text/css; charset=utf-8", embedded::page_css},
    {"/page.js", "text/javascript; charset=utf-8", embedded::page_js},
};

/// What the page may do (Content Security Policy): show what this server has, and nothing else.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; font-src "
    "'self'; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

/// How often a viewer hears that the receiver is still there.
constexpr std::chrono::milliseconds kHeartbeat(1000);

/// Whether `host` names a server on `port` of this machine. Browsers leave the usual port out.
bool isOwnHost(const std::string& host, int port) {
  constexpr int kUsualPort = 80;
  const std::string behind = ":" + std::to_string(port);
  for (const std::string name : {"127.0.0.1", "localhost"}) {
    if (host == name + behind || (port == kUsualPort && host == name)) return true;
  }
  return false;
}

/// Puts a text in the place of a mark wherever that stands.
void replaceAll(std::string& text, std::string_view mark, const std::string& by) {
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
    text.replace(at, mark.size(), by);
    at += by.size();
  }
}

}  // namespace

std::string randomToken() {
  std::array<unsigned char, 16> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw native::osError(errno, "getrandom");
  }
  std::string token;
  for (const unsigned char byte : bytes) {
    for (const int digit : {byte >> 4, byte & 0x0F}) token += "0123456789abcdef"[digit];
  }
  return token;
}

std::string addressOf(const drawing::Picture& picture, const std::string& token) {
  return "/picture/" + picture.name + "?token=" + token;
}

Server::Server(Board& board, int port, std::string token, const FindAsset& find_font,
               const FindAsset& find_picture)
    : board_(board), token_(std::move(token)), http_(std::make_unique<Http>(port)) {
  http_->set_payload_max_length(kLongestBody);
  http_->set_default_headers({{"Cache-Control", "no-store"},
                              {"Content-Security-Policy", kPolicy},
                              {"Referrer-Policy", "no-referrer"},
                              {"X-Content-Type-Options", "nosniff"}});
  http_->set_pre_routing_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        return isRefused(request, response) ? httplib::Server::HandlerResponse::Handled
                                            : httplib::Server::HandlerResponse::Unhandled;
      });
  addPage();
  addAssets(R"(/font/([^/]+))", find_font);
  addAssets(R"(/picture/([^/]+))", find_picture);
  addEvents();
  addPress();
  listening_ = std::async(std::launch::async, [this] { http_->listen_after_bind(); });
  // It cannot be stopped before it runs.
  constexpr std::chrono::milliseconds kMoment(1);
  while (!http_->is_running() && listening_.wait_for(kMoment) == std::future_status::timeout) {
  }
}

Server::~Server() {
  board_.end();
  http_->close();
}

std::string Server::address() const {
  return "http://127.0.0.1:" + std::to_string(http_->port()) + "/?token=" + token_;
}

/// Refuses what does not come from the page at address().
bool Server::isRefused(const httplib::Request& request, httplib::Response& response) const {
  const std::string host = request.get_header_value("Host");
  const bool is_own =
      !request.has_header("Origin") || request.get_header_value("Origin") == "http://" + host;
  if (isOwnHost(host, http_->port()) && is_own && request.get_param_value("token") == token_) {
    return false;
  }
  response.status = 403;
  response.set_content("This is not for you: open the address that the command has printed.\n",
                       "text/plain");
  return true;
}

void Server::addPage() {
  for (const PageFile& file : kPage) {
    http_->Get(file.path, [this, file](const httplib::Request&, httplib::Response& response) {
      std::string content(file.content);
      replaceAll(content, "@TOKEN@", token_);
      replaceAll(content, "@PICTURE@", board_.svg());
      response.set_content(content, file.type);
    });
  }
}

void Server::addAssets(const char* pattern, const FindAsset& find) {
  http_->Get(pattern, [find](const httplib::Request& request, httplib::Response& response) {
    if (const auto asset = find(request.matches[1])) {
      response.set_content(asset->content, asset->type);
    } else {
      response.status = 404;
    }
  });
}

/// Sends what happens to a viewer for as long as it listens. A viewer who does not take it in time
/// is let go, and comes back when it can.
void Server::addEvents() {
  http_->Get("/events", [this](const httplib::Request&, httplib::Response& response) {
    const auto seen = std::make_shared<Board::Seen>();
    response.set_chunked_content_provider(
        "text/event-stream", [this, seen](std::size_t, httplib::DataSink& sink) {
          while (const auto events = board_.nextEvents(*seen, kHeartbeat)) {
            if (!sink.write(events->data(), events->size())) return false;
          }
          constexpr std::string_view kEnd = "event: end\ndata: null\n\n";
          sink.write(kEnd.data(), kEnd.size());
          sink.done();
          return true;
        });
  });
}

void Server::addPress() {
  http_->Post("/press", [this](const httplib::Request& request, httplib::Response& response) {
    if (!isPress(request.body)) {
      response.status = 400;
    } else {
      response.status = board_.press(request.body) ? 204 : 429;
    }
  });
}

}  // namespace desk::web
