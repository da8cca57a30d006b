#include "desk/web/Server.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <utility>
#include <vector>

#include "base/SystemError.h"
#include "desk/protocol/Word.h"
#include "desk/web/page_css.h"
#include "desk/web/page_html.h"
#include "desk/web/page_js.h"

namespace desk::web {
namespace {

/// A file of the page, in which a mark stands for the token.
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

/// What every answer says. The page may show what this server has, and nothing else (Content
/// Security Policy).
const std::vector<std::pair<const char*, std::string>> kHeaders = {
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; font-src "
     "'self'; connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
};

Answer answer(unsigned status, const std::string& type = "", Content content = nullptr) {
  Answer result;
  result.status = status;
  result.headers = kHeaders;
  result.content = std::move(content);
  if (!type.empty()) result.headers.emplace_back("Content-Type", type);
  return result;
}

Content contentOf(std::string text) {
  return std::make_shared<const std::string>(std::move(text));
}

/// What a viewer hears when there is nothing else.
const Content kAlive = contentOf("event: alive\ndata: null\n\n");

const std::string kFonts = "/font/";
const std::string kPictures = "/picture/";

/// Whether `host` names a server on `port` of this machine. Browsers leave the usual port out.
bool isOwnHost(const std::string& host, int port) {
  constexpr int kUsualPort = 80;
  const std::string behind = port == kUsualPort ? "" : ":" + std::to_string(port);
  return host == "127.0.0.1" + behind || host == "localhost" + behind;
}

}  // namespace

std::string randomToken() {
  std::array<unsigned char, 16> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw base::SystemError(errno, "getrandom");
  }
  std::string token;
  for (const unsigned char byte : bytes) {
    for (const int digit : {byte >> 4, byte & 0x0F}) token += "0123456789abcdef"[digit];
  }
  return token;
}

std::string addressOf(const drawing::Picture& picture, const std::string& token) {
  return kPictures + picture.name + "?token=" + token;
}

Server::Server(Board& board, const drawing::Fonts& fonts, drawing::Pictures& pictures, int port,
               std::string token, const Limits& limits)
    : board_(board),
      fonts_(fonts),
      pictures_(pictures),
      token_(std::move(token)),
      http_(port, board.news(), limits,
            [this](const Request& request) { return answerTo(request); }) {}

Server::~Server() {
  board_.end();
}

std::string Server::address() const {
  return "http://127.0.0.1:" + std::to_string(http_.port()) + "/?token=" + token_;
}

Answer Server::answerTo(const Request& request) {
  if (isRefused(request)) {
    constexpr const char* kRefusal =
        "This is not for you: open the address that the command has printed.\n";
    return answer(403, "text/plain", contentOf(kRefusal));
  }
  const bool is_press = request.path == "/press";
  const std::string method = is_press ? "POST" : "GET";
  if (request.method != method) {
    Answer refused = answer(405);
    refused.headers.emplace_back("Allow", method);
    return refused;
  }
  if (is_press) return answer(press(request.body));
  return request.path == "/events" ? events() : file(request.path);
}

/// Refuses what does not come from the page at address().
bool Server::isRefused(const Request& request) const {
  const std::string own = "http://" + request.host;
  return !isOwnHost(request.host, request.port) || request.origin.value_or(own) != own ||
         request.token != token_;
}

Answer Server::file(const std::string& path) const {
  for (const PageFile& file : kPage) {
    if (path == file.path) return answer(200, file.type, contentOf(withToken(file.content)));
  }
  if (path.starts_with(kFonts)) {
    const std::string name = path.substr(kFonts.size());
    if (name == drawing::plainName(name)) return answer(200, "font/ttf", fonts_.contentOf(name));
  }
  if (path.starts_with(kPictures)) {
    const auto picture = pictures_.named(path.substr(kPictures.size()));
    if (picture) return answer(200, picture->type, Content(picture, &picture->content));
  }
  return answer(404);
}

/// Returns a text with the token wherever a mark stands for it.
std::string Server::withToken(std::string_view text) const {
  constexpr std::string_view kMark = "@TOKEN@";
  std::string content(text);
  for (auto at = content.find(kMark); at != std::string::npos; at = content.find(kMark, at)) {
    content.replace(at, kMark.size(), token_);
  }
  return content;
}

/// Sends what happens to a viewer for as long as it listens. A viewer who does not take it in time
/// is let go, and comes back when it can.
Answer Server::events() const {
  Answer events = answer(200, "text/event-stream");
  events.idle = kAlive;
  events.next = [&board = board_, seen = Board::Seen()]() mutable -> std::optional<Content> {
    return seen.end ? std::nullopt : std::optional(board.next(seen));
  };
  return events;
}

/// Returns the status of the answer.
unsigned Server::press(const std::optional<std::string>& word) {
  if (!word) return 413;
  if (!isPress(*word)) return 400;
  return board_.press(*word) ? 204 : 429;
}

}  // namespace desk::web
