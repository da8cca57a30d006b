#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "base/Root.h"
#include "desk/web/Server.h"

namespace desk::web {

/// The receiver's pictures, as far as a drawing has named them. Every operation may be called from
/// any thread.
class Pictures {
 public:
  /// `token`: the server's. Raises base::SystemError where there is no receiver.
  Pictures(const std::filesystem::path& receiver, std::string token)
      : receiver_(receiver), token_(std::move(token)) {}

  /// Returns the server's path, with the token, of a picture that a drawing names; nothing where
  /// there is none.
  std::optional<std::string> name(const std::string& path);

  /// Returns a picture that has been named.
  std::optional<Asset> find(const std::string& path);

 private:
  base::Root receiver_;
  std::string token_;
  std::mutex mutex_;
  std::set<std::string> named_;
};

/// Returns a font's file.
std::optional<Asset> readFont(const std::filesystem::path& file);

}  // namespace desk::web
