#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "desk/drawing/Pictures.h"
#include "desk/web/Board.h"

namespace httplib {
struct Request;
struct Response;
}  // namespace httplib

namespace desk::web {

class Http;

/// A file that the page asks for.
struct Asset {
  std::string content;
  std::string type;  ///< of the Internet (RFC 6838)
};

/// Returns 128 random bits in hexadecimal digits. Raises plain::Error ("OSError").
std::string randomToken();

/// Returns where a server with this token has a picture.
std::string addressOf(const drawing::Picture& picture, const std::string& token);

/// Serves the page to viewers on this machine, who know the address that only its user has been
/// told: every request has to carry the token, to name this server as its host, and to come from
/// this server's own page.
class Server {
 public:
  /// Finds the font of a skin by its name, or a picture by its own.
  using FindAsset = std::function<std::optional<Asset>(const std::string& name)>;

  /// Listens on `port` of the loopback interface, on any free one for 0. `board` outlives the
  /// server. Raises std::runtime_error when it cannot.
  Server(Board& board, int port, std::string token, const FindAsset& find_font,
         const FindAsset& find_picture);

  /// Tells every viewer of the end, and lets them go; one that does not listen after a second.
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Returns the page's address with the token.
  std::string address() const;

 private:
  bool isRefused(const httplib::Request& request, httplib::Response& response) const;
  void addPage();
  void addAssets(const char* pattern, const FindAsset& find);
  void addEvents();
  void addPress();

  Board& board_;
  std::string token_;
  std::unique_ptr<Http> http_;
  std::future<void> listening_;
};

}  // namespace desk::web
