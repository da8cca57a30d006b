#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "desk/drawing/Fonts.h"
#include "desk/drawing/Pictures.h"
#include "desk/web/Board.h"
#include "desk/web/Http.h"

namespace desk::web {

/// Returns 128 random bits in hexadecimal digits. Raises base::SystemError.
std::string randomToken();

/// Returns where a server with this token has a picture.
std::string addressOf(const drawing::Picture& picture, const std::string& token);

/// Serves the page to viewers on this machine, who know the address that only its user has been
/// told: every request has to carry the token, to name this server as its host, and to come from
/// this server's own page.
class Server {
 public:
  /// Listens on `port` of the loopback interface, on any free one for 0. The board, the skin's
  /// fonts and the pictures outlive the server. Raises std::runtime_error, with the reason, when it
  /// cannot.
  Server(Board& board, const drawing::Fonts& fonts, drawing::Pictures& pictures, int port,
         std::string token, const Limits& limits = {});

  /// Tells every viewer of the end, and lets them go; those who do not listen when the farewell's
  /// time is over.
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Returns the page's address with the token.
  std::string address() const;

 private:
  Answer answerTo(const Request& request);
  bool isRefused(const Request& request) const;
  Answer file(const std::string& path) const;
  std::string withToken(std::string_view text) const;
  Answer events() const;
  unsigned press(const std::optional<std::string>& word);

  Board& board_;
  const drawing::Fonts& fonts_;
  drawing::Pictures& pictures_;
  std::string token_;
  Http http_;
};

}  // namespace desk::web
