#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "base/Root.h"

namespace desk::drawing {

/// A picture as it was when it was read.
struct Picture {
  std::string name;  ///< a number that no picture with another content has
  std::string content;
  std::string type;  ///< "image/png", "image/jpeg" or "image/gif"
};

/// The receiver's pictures that a screen shows. A file is read once for a screen, whether it is
/// there or not, as a receiver loads it when the screen opens; so a screen that opens after a
/// restore shows what that has brought back. Every operation may be called from any thread.
class Pictures {
 public:
  /// Keeps at most `most` bytes of a screen: what is beyond counts as missing. Raises
  /// base::SystemError where there is no receiver.
  explicit Pictures(const std::filesystem::path& receiver, std::size_t most = 8 * 1024 * 1024)
      : receiver_(receiver), most_(most) {}

  /// Returns the picture at `path`; null where there is none.
  std::shared_ptr<const Picture> at(const std::string& path);

  /// Returns the picture of a name, if this screen or the one before it shows it: a viewer may be
  /// late. Null for any other.
  std::shared_ptr<const Picture> named(const std::string& name);

  /// Says that another screen is shown from now on.
  void changeScreen();

 private:
  using ByPath = std::map<std::string, std::shared_ptr<const Picture>>;

  std::shared_ptr<const Picture> read(const std::string& path);

  base::Root receiver_;
  std::size_t most_;
  std::mutex mutex_;
  ByPath shown_;
  ByPath shown_before_;
  std::size_t size_ = 0;  ///< bytes of what is shown, with the paths
  int last_number_ = 0;
};

/// Returns a picture as a data URL (RFC 2397).
std::string dataUrlOf(const Picture& picture);

}  // namespace desk::drawing
