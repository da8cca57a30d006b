#include "base/Walk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <optional>
#include <utility>
#include <vector>

namespace base {
namespace {

constexpr int kMostLinks = 40;  // as many as the kernel follows

/// One path being walked.
class Walk {
 public:
  Walk(int root, const std::string& path) : root_(root) { goOn(path); }

  Descriptor open(int flags) {
    while (true) {
      const std::string name = next();
      const bool is_last = names_.empty();
      if (name == "." && !is_last) continue;
      if (!is_last || (flags & O_NOFOLLOW) == 0) {
        if (const auto target = linkTarget(name)) {
          if (++links_ > kMostLinks) return failure(ELOOP);
          if (target->starts_with('/')) trail_.clear();
          goOn(*target);
          continue;
        }
      }
      const int how = is_last ? flags : O_PATH | O_DIRECTORY;
      Descriptor file(openat(here(), name.c_str(), how | O_NOFOLLOW | O_CLOEXEC));
      if (!file || is_last) return file;
      trail_.push_back(std::move(file));
    }
  }

 private:
  /// Puts the path before what is left of the way. A "/" at its end asks for a directory.
  void goOn(const std::string& path) {
    std::size_t end = path.size();
    while (end != std::string::npos) {
      const std::size_t slash = end == 0 ? std::string::npos : path.rfind('/', end - 1);
      const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
      const std::string name = path.substr(begin, end - begin);
      if (!name.empty() || end == path.size()) names_.push_back(name.empty() ? "." : name);
      end = slash;
    }
  }

  /// Takes the next name; "." for "..", once it is back in the directory above.
  std::string next() {
    std::string name = names_.back();
    names_.pop_back();
    if (name != "..") return name;
    if (!trail_.empty()) trail_.pop_back();
    return ".";
  }

  /// Returns the target of the symbolic link `name` here, none where it is no such link.
  std::optional<std::string> linkTarget(const std::string& name) const {
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlinkat(here(), name.c_str(), target.data(), target.size());
    if (length < 0) return std::nullopt;
    target.resize(static_cast<std::size_t>(length));
    return target;
  }

  int here() const { return trail_.empty() ? root_ : trail_.back().number(); }

  static Descriptor failure(int number) {
    errno = number;
    return {};
  }

  int root_;
  std::vector<std::string> names_;  ///< still to go, the next one last
  std::vector<Descriptor> trail_;   ///< the directories below the root that lead here
  int links_ = 0;
};

}  // namespace

Descriptor openBelow(int root, const std::string& path, int flags) {
  return Walk(root, path).open(flags);
}

}  // namespace base
